#include "request/request_text.hpp"

#include "request/shortened.hpp"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>

namespace kova::request {
namespace {

using Json = nlohmann::json;

constexpr std::string_view blanks = " \t\r\n";

class Place {
public:
  explicit Place(const std::string &source) : source_(source) {}
  void pass(char c) {
    if (after_newline_) ++line_;
    after_newline_ = c == '\n';
  }
  [[noreturn]] void refuse(const std::string &reason) const {
    throw UsageError(source_ + ":" + std::to_string(line_) + ": " + reason);
  }

private:
  const std::string &source_;
  size_t line_ = 1;
  bool after_newline_ = false; // the newline still belongs to its line
};

// The accessors take C strings.
void check_text(const std::string &what, std::string_view text, const Place &place) {
  if (text.find('\0') != std::string_view::npos) place.refuse("the " + what + " holds a NUL character");
}

std::vector<Assignment> parse_lines(std::string_view text, const std::string &source) {
  std::vector<Assignment> request;
  Place place(source);
  while (!text.empty()) {
    std::string line(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    place.pass('\n');
    if (line.ends_with('\r')) line.pop_back();
    if (line.starts_with('#') || line.find_first_not_of(blanks) == std::string::npos) continue;
    check_text("line", line, place);
    if (const std::string fault = assignment_rule(line); !fault.empty()) place.refuse(fault);
    request.push_back(as_assignment(line));
  }
  return request;
}

// Characters on their way to the JSON parser, which itself tells places only of what it does not understand.
struct CharacterIterator {
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char *;
  using reference = const char &;

  pointer at;
  Place *place;

  reference operator*() const { return *at; }
  CharacterIterator &operator++() {
    place->pass(*at++);
    return *this;
  }
  bool operator==(const CharacterIterator &other) const { return at == other.at; }
  bool operator!=(const CharacterIterator &other) const { return at != other.at; }
};

// {"PATH": "VALUE", ...} or [{"path": "PATH", "value": "VALUE"}, ...], also as the "parameters" of an
// answer, whose "faults" are passed over. Read as it comes, so that numbers keep their digits, repeated names their places, and errors have
// a line.
class JsonRequest : public nlohmann::json_sax<Json> {
public:
  explicit JsonRequest(Place &place) : place_(place) {}
  std::vector<Assignment> take() { return std::move(request_); }

  bool null() override { return refuse_value(); }
  bool boolean(bool value) override { return scalar(value ? "true" : "false"); }
  bool number_integer(Json::number_integer_t value) override { return scalar(std::to_string(value)); }
  bool number_unsigned(Json::number_unsigned_t value) override { return scalar(std::to_string(value)); }
  bool number_float(Json::number_float_t, const std::string &text) override { return scalar(text); }
  bool string(std::string &value) override { return scalar(value); }
  bool binary(Json::binary_t &) override { return refuse_value(); }

  bool start_array(std::size_t) override {
    const bool is_faults = depth_ == 1 && name_ == "faults" && (request_.empty() || outside_ == 1);
    if (skipped_ > 0 || is_faults) return skip(1);
    const bool is_answer = depth_ == 1 && !is_array_ && request_.empty() && name_ == "parameters";
    if (depth_ > 0 && !is_answer) refuse_value();
    is_array_ = true;
    outside_ = is_answer ? 1 : 0;
    ++depth_;
    return true;
  }
  bool start_object(std::size_t) override {
    if (skipped_ > 0) return skip(1);
    if (depth_ > (is_array_ ? outside_ + 1 : 0)) refuse_value();
    path_.reset();
    value_.reset();
    ++depth_;
    return true;
  }
  bool key(std::string &name) override {
    name_ = name;
    return true;
  }
  bool end_object() override {
    if (skipped_ > 0) return skip(-1);
    if (is_array_ && depth_ == outside_ + 2) add(path_, value_);
    --depth_;
    return true;
  }
  bool end_array() override {
    if (skipped_ > 0) return skip(-1);
    --depth_;
    return true;
  }
  bool parse_error(std::size_t, const std::string &, const Json::exception &error) override {
    const std::string text = error.what();
    const size_t reason = text.find("syntax error");
    place_.refuse(reason == std::string::npos ? text : text.substr(reason));
  }

private:
  bool refuse_value() const {
    if (is_array_ && depth_ == outside_ + 1)
      place_.refuse(R"(an object with "path" and "value" is expected)");
    place_.refuse("the value of \"" + name_ + "\" is neither a text, a number nor a boolean");
  }
  bool skip(int levels) {
    skipped_ += levels;
    return true;
  }
  bool scalar(const std::string &text) {
    if (skipped_ > 0) return true;
    if (!is_array_)
      add(name_, text);
    else if (depth_ <= outside_ + 1)
      refuse_value();
    else if (name_ == "path")
      path_ = text;
    else if (name_ == "value")
      value_ = text;
    return true; // an item may say more, such as its type
  }
  void add(const std::optional<std::string> &path, const std::optional<std::string> &value) {
    if (!path || path->empty()) place_.refuse("a path is missing");
    if (!value) place_.refuse("\"" + *path + "\" has no value");
    check_text("path", *path, place_);
    check_text("value", *value, place_);
    request_.push_back({*path, *value});
  }

  Place &place_;
  bool is_array_ = false;
  int depth_ = 0, outside_ = 0; // how deep this is, and the array itself
  int skipped_ = 0;             // how deep this is in what is passed over
  std::string name_;
  std::optional<std::string> path_, value_;
  std::vector<Assignment> request_;
};

std::vector<Assignment> parse_json(std::string_view text, const std::string &source) {
  Place place(source);
  JsonRequest request(place);
  Json::sax_parse(CharacterIterator{text.data(), &place},
                  CharacterIterator{text.data() + text.size(), &place}, &request);
  return request.take();
}

std::string whole_text(FILE *file, const std::string &source) {
  std::string text;
  char buffer[65536];
  for (size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
    text.append(buffer, count);
  if (std::ferror(file) != 0) throw UsageError("cannot read " + source + ": " + std::strerror(errno));
  return text;
}

} // namespace

std::string assignment_rule(const std::string &text) {
  const size_t equals = text.find('=');
  if (equals == 0) return "\"" + shortened(text) + "\" has nothing before its \"=\"";
  return equals == std::string::npos ? "\"" + shortened(text) + "\" has no \"=\"" : "";
}

Assignment as_assignment(std::string_view text) {
  const size_t equals = text.find('=');
  return {std::string(text.substr(0, equals)), std::string(text.substr(equals + 1))};
}

std::vector<Assignment> parse_request(std::string_view text, const std::string &source) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (text.starts_with(byte_order_mark)) text.remove_prefix(byte_order_mark.size());
  const size_t first = text.find_first_not_of(blanks);
  const bool json = first != std::string_view::npos && (text[first] == '{' || text[first] == '[');
  return json ? parse_json(text, source) : parse_lines(text, source);
}

std::vector<Assignment> read_request(const std::string &file) {
  if (file == "-") return parse_request(whole_text(stdin, "standard input"), "standard input");
  const std::unique_ptr<FILE, int (*)(FILE *)> opened(std::fopen(file.c_str(), "re"), std::fclose);
  if (!opened) throw UsageError("cannot read " + file + ": " + std::strerror(errno));
  return parse_request(whole_text(opened.get(), file), file);
}

} // namespace kova::request
