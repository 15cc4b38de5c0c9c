// How results reach the person or the program that asked: aligned text, or JSON. Results go to standard
// output, notes and failures to standard error; with --json everything is one JSON value on standard output.
#pragma once

#include <nlohmann/json.hpp>

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace kova::ctl {

using Json = nlohmann::ordered_json;

enum ExitStatus : int { Success = 0, Failure = 1, BadUsage = 2, NotRunning = 3 };

enum class Style { Plain, Faint, Bold, Alarm };

struct Cell {
  std::string text;
  Style style = Style::Plain;
};
using Row = std::vector<Cell>;
using Table = std::vector<Row>;
// The names of columns.
Row heading(const std::vector<std::string> &names);

class Output {
public:
  // colour: "always", "never", or "auto": on a terminal, and not with NO_COLOR in the environment.
  explicit Output(bool json, std::string_view colour = "auto");

  bool json() const { return json_; }
  // A whole result.
  void print(const Json &value) const;
  // One of a stream of results, on one line.
  void print_line(const Json &value) const;
  void print(const Table &table) const;
  // Where a terminal is too narrow for a row, its first cell stands alone and the others below it.
  void print_wide(const Table &table) const;
  // A document, as it is.
  void print_document(std::string_view text) const;
  // For a person, who must not take it for a result.
  void complain(const Table &table) const;
  void note(std::string_view text) const;
  // A failure that is not a CWMP fault. Returns the status.
  ExitStatus failure(std::string_view text, ExitStatus status = Failure) const;

  bool on_terminal() const { return results_.columns > 0 && !json_; }
  // On a terminal: in the place of the table that was printed so before.
  void print_again(const Table &table) const;
  // On a terminal, for as long as something lasts: each text takes the place of the one before, "" clears it.
  void progress(std::string_view text) const;
  // False when the results could not be written; says so.
  bool complete() const;

private:
  struct Stream {
    std::ostream &out;
    bool colour, escaped;
    size_t columns; // 0: not a terminal
  };
  static Stream open(int descriptor, std::ostream &out, std::string_view colour);
  static void write(const Stream &stream, const Table &table, bool foldable = false);

  bool json_;
  Stream results_, messages_;
  mutable size_t lines_again_ = 0;
};

} // namespace kova::ctl
