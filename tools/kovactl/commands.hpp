// The commands of kovactl.
#pragma once

namespace kova::ctl {

class Commands;

void add_get(Commands &commands);
void add_set(Commands &commands);
void add_rows(Commands &commands); // add, delete
void add_list(Commands &commands);
void add_find(Commands &commands);
void add_watch(Commands &commands);
void add_export(Commands &commands);
void add_model(Commands &commands);
void add_settings(Commands &commands);
void add_device(Commands &commands);
void add_fleet(Commands &commands);
void add_inform(Commands &commands);
void add_log(Commands &commands);
void add_nvram(Commands &commands);
void add_tree(Commands &commands);
void add_login(Commands &commands);
void add_completion(Commands &commands);
void add_help(Commands &commands);

} // namespace kova::ctl
