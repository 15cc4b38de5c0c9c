// The device's files and directories. What is made here is for the device's user alone, whatever the umask;
// what goes wrong is a std::runtime_error with a text for a person.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kova::device {

bool is_there(const std::filesystem::path &path);
// "" when it cannot be read.
std::string text_of(const std::filesystem::path &path);
// In place of what is there, at once: a reader sees the old text or the new one.
void write_file(const std::filesystem::path &path, std::string_view text);
// With those above it. Something else in its place, a link to a directory too, is refused: behind it lies
// what is not the device's.
void make_directories(const std::filesystem::path &path);
// Follows no link. What is not there is no error.
void remove_tree(const std::filesystem::path &path);
// In place of what is there, unless that is a directory. Where `like` is the same link it becomes another name of that:
// the file system need not make one.
void make_link(const std::filesystem::path &target, const std::filesystem::path &path,
               const std::filesystem::path &like = {});
// False when the path names another file than the open one, or none.
bool is_at(const std::filesystem::path &path, int fd);

} // namespace kova::device
