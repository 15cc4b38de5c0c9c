// The supported data model as documents that others read.
#pragma once

#include "kovactl/request.hpp"

#include <string>

namespace kova::ctl {

// What the Broadband Forum calls a data model (DM) instance document: of what the standard does not have.
std::string data_model_document();

// What it calls a device type (DT) document: of all that the device has, by reference to that and the standard.
std::string device_type_document();

// The reference page.
std::string markdown_page();

// The accessors as a C source that compiles against the installed headers.
std::string accessor_table();

// Objects and parameters of a device, with the values that were read of everything; one that could not be
// read is empty.
std::string csv_table(const Reading &everything);

} // namespace kova::ctl
