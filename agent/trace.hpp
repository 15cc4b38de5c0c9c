// Every message of the sessions in a file, for a person: secrets are masked.
#pragma once

#include <pugixml.hpp>

#include <fstream>
#include <string>
#include <string_view>

namespace kova::agent {

class Trace {
public:
  // "" keeps nothing. Throws std::runtime_error.
  explicit Trace(const std::string &file);
  void sent(const pugi::xml_document &message) { keep("to the ACS", masked(message)); }
  void received(const pugi::xml_document &message) { keep("from the ACS", masked(message)); }
  void note(std::string_view text) { keep(text, ""); } // of what is no message

  static std::string masked(const pugi::xml_document &message);

private:
  void keep(std::string_view what, const std::string &message);
  std::ofstream file_;
};

} // namespace kova::agent
