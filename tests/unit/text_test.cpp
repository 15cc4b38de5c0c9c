// Texts, shell output and the system log.
#include "fake/fake.hpp"

#include <algorithm>

using fake::platform;

namespace {

class Text : public fake::Test {};

TEST_F(Text, OnlyNewlinesAreTrimmed) {
  for (auto [text, trimmed] : std::initializer_list<std::pair<std::string, const char *>>{
           {"\n\nabc\n\n", "abc"}, {"a\r\n", "a\r"}, {"\n\n\n", ""}, {"", ""}, {" a\nb ", " a\nb "}}) {
    EXPECT_EQ(trim_string_newline(text.data()), text.data());
    EXPECT_STREQ(text.c_str(), trimmed);
  }
}

TEST_F(Text, MarkupAndShellQuotingIsRefused) {
  for (const char *text : {"\"",  "'",   "(",   ")",   "<",   ">",   "|",   "\\",   "%22",    "%26",
                           "%27", "%28", "%29", "%3b", "%3B", "%3c", "%3C", "%3e",  "%3E",    "%7c",
                           "%7C", "%5c", "%5C", "a(b", "a)",  "<a",  "%%3", "%%3c", "%C2%A9", "%C2%AE"})
    EXPECT_EQ(checkXSSattack(text), std::string(text) == "%%3" ? 0 : -1) << text;
  for (const char *text : {"", ";", "&", "a;b&c", "%3", "%2a", "%c2%a9", "%C2%a9", "%", "$`*[]{}"})
    EXPECT_EQ(checkXSSattack(text), 0) << text;
  EXPECT_EQ(checkXSSattack(nullptr), 0);
}

TEST_F(Text, FieldsAreCountedWithoutEmptyOnes) {
  for (auto *pick : {getparametersInfo, getnetparametersInfo}) {
    const auto field = [&](std::string text, int index) {
      const char *found = pick(text.data(), index);
      return std::string(found == nullptr ? "(none)" : found);
    };
    EXPECT_EQ(field("a,,b", 0), "a");
    EXPECT_EQ(field("a,,b", 1), "b");
    EXPECT_EQ(field("a,,b", 2), "(none)");
    EXPECT_EQ(field(",a b,", 0), "a b");
    EXPECT_EQ(field("a", -1), "(none)");
  }
}

TEST_F(Text, HostOfAUrl) {
  char out[300];
  for (const auto &[url, host] : std::initializer_list<std::pair<std::string, std::string>>{
           {"http://acs.example:7547/path", "acs.example"},
           {"//host/a:b", "host"},
           {"http:///path", ""},
           {"http://" + std::string(300, 'h'), std::string(255, 'h')}}) {
    EXPECT_EQ(get_hostname_from_http_url(url.c_str(), out, sizeof out), 0) << url;
    EXPECT_EQ(out, host);
  }
  char small[] = "########";
  for (const char *url : {static_cast<const char *>(nullptr), "", "acs.example/path", "http:/x"})
    EXPECT_EQ(get_hostname_from_http_url(url, small, sizeof small), -1);
  EXPECT_EQ(get_hostname_from_http_url("http://a", small, 0), -1);
  EXPECT_STREQ(small, "########");
  EXPECT_EQ(get_hostname_from_http_url("http://abcdef", small, 4), 0);
  EXPECT_STREQ(small, "abcd####"); // no terminator

  for (const auto &[host, type] : std::initializer_list<std::pair<const char *, int>>{
           {nullptr, -1}, {"", -1}, {"10.0.0.1", 2}, {"...", 2}, {"10.0.0.a", 1}, {"::1", 1}})
    EXPECT_EQ(hostname_type(host), type);
}

TEST_F(Text, ShellOutputIsCutAtAWholePiece) {
  const std::string piece(255, 'x');
  const struct {
    std::string output;
    int outlen;
    std::string collected;
  } cases[] = {{"sixsix\nseven\n", 10, "sixsix\n"},
               {"sixsix\nseven\n", 14, "sixsix\nseven\n"},
               {"sixsix\nseven\n", 13, "sixsix\n"},
               {"sixsix\n", 7, ""},
               {"long line\nb\n", 5, ""}, // what follows a dropped piece is dropped too
               {"a", 0, "before"},
               {"a", -1, "before"},
               {"", 10, "before"}, // a command that prints nothing leaves the buffer alone
               {piece + "more\n", 261, piece + "more\n"},
               {piece + "more\n", 260, piece}};
  for (const auto &[output, outlen, collected] : cases) {
    platform.output["command"] = output;
    std::string out = "before" + std::string(1, '\0') + std::string(500, '#');
    EXPECT_EQ(shell_cmd("command", out.data(), outlen), out.data());
    EXPECT_STREQ(out.c_str(), collected.c_str()) << output << outlen;
    const auto room = static_cast<std::size_t>(std::max(outlen, 7));
    EXPECT_EQ(out.substr(room), std::string(out.size() - room, '#'));
  }
  char out[] = "before";
  EXPECT_EQ(shell_cmd("cannot be started", out, sizeof out), nullptr);
  EXPECT_STREQ(out, "before");
}

} // namespace
