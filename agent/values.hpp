// Values as the wire has them.
#pragma once

#include "model/model.hpp"

#include <ctime>
#include <string>
#include <string_view>

namespace kova::agent {

constexpr const char *unknown_time = "0001-01-01T00:00:00Z";

// "xsd:string", "xsd:boolean", ...
std::string wire_type(model::Type type);
// What the type can hold as it is; else the type's unknown value, which a strict ACS can read.
std::string wire_value(model::Type type, const std::string &text);
bool is_true(std::string_view text);

// With U+FFFD in place of what XML 1.0 cannot carry.
std::string xml_text(std::string_view text);
// At most so many bytes, and no part of a character.
std::string cut(std::string text, std::size_t longest);

// A dateTime with the local zone's offset: "2026-11-21T04:16:16+01:00".
std::string local_time(std::time_t time);
// UTC, "2026-11-21T03:16:16Z".
std::string utc_time(std::time_t time);

// Whether the parameter is a secret, which no log may have.
bool is_secret(std::string_view path);

} // namespace kova::agent
