// What the library, and the commands that it runs, print on standard output.
#pragma once

namespace kova::request {

// Goes to standard error while this exists, for a program whose own standard output carries results and
// nothing else.
class LibraryOutputAside {
public:
  LibraryOutputAside();
  ~LibraryOutputAside();
  LibraryOutputAside(const LibraryOutputAside &) = delete;
  LibraryOutputAside &operator=(const LibraryOutputAside &) = delete;

private:
  int results_;
};

} // namespace kova::request
