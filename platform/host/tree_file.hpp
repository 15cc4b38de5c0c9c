// The configuration tree of a device as it lies on disk: an XML file whose leaves are texts, replaced as a whole by
// every change. Failures throw std::runtime_error with a text for a person.
#pragma once

#include <pugixml.hpp>

#include <filesystem>
#include <string>
#include <string_view>

namespace kova::host {

std::filesystem::path tree_file(); // of the device that this process has chosen now

// Parses so that every leaf keeps its text exactly. Whoever wrote the text: `origin` names it in a complaint.
void parse_tree(pugi::xml_document &tree, std::string_view xml, const std::string &origin);
// A file that does not exist is an empty tree.
void load_tree(pugi::xml_document &tree, const std::filesystem::path &file);
// Call it with the lock held. At no instant does the file hold anything but the old or the new tree.
void save_tree(const pugi::xml_document &tree, const std::filesystem::path &file);

// Held while a change is read, made and saved, so that no other process's change is lost in between.
class TreeLock {
public:
  // Creates the directory as far as it is missing.
  explicit TreeLock(const std::filesystem::path &file);
  ~TreeLock();
  TreeLock(const TreeLock &) = delete;
  TreeLock &operator=(const TreeLock &) = delete;

private:
  int fd_;
};

// Paths are names joined by "/"; one in front changes nothing.
std::string_view without_leading_slash(std::string_view path);
pugi::xml_node find_node(const pugi::xml_document &tree,
                         std::string_view path); // a null node when there is none
bool has_children(const pugi::xml_node &node);   // elements, that is: no leaf
std::string leaf_text(const pugi::xml_node &leaf);
// Creates what is missing on the way. Throws when a name cannot be an XML name, the node is no leaf, or a leaf with a
// text or another root is in the way.
void put_leaf(pugi::xml_document &tree, std::string_view path, const std::string &text);

} // namespace kova::host
