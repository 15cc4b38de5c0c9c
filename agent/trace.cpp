#include "agent/trace.hpp"

#include "agent/soap.hpp"
#include "agent/values.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <sstream>
#include <stdexcept>

namespace kova::agent {
namespace {

constexpr const char *mask = "********";

// A password stands in the value of a parameter whose name tells it, in an argument of its own, or within a
// URL.
class Masking : public pugi::xml_tree_walker {
public:
  bool for_each(pugi::xml_node &node) override {
    const std::string_view name = local_name(node);
    const std::string_view text = node.text().get();
    if (name == "Name" && is_secret(text)) {
      for (pugi::xml_node beside : node.parent().children())
        if (local_name(beside) == "Value") beside.text().set(mask);
    } else if ((name == "Password" && !text.empty()) ||
               (text.find("://") != std::string_view::npos && text.find('@') != std::string_view::npos))
      node.text().set(mask);
    return true;
  }
};

} // namespace

Trace::Trace(const std::string &file) {
  if (file.empty()) return;
  // Whoever may read the device's directory need not read what the ACS says.
  const int created = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (created < 0) throw std::runtime_error("cannot write " + file + ": " + std::strerror(errno));
  close(created);
  file_.open(file, std::ios::app);
}

std::string Trace::masked(const pugi::xml_document &message) {
  pugi::xml_document copy;
  copy.reset(message);
  Masking masking;
  copy.traverse(masking);
  std::ostringstream text;
  copy.save(text, "  ", pugi::format_indent | pugi::format_no_declaration);
  return std::move(text).str();
}

void Trace::keep(std::string_view what, const std::string &message) {
  if (file_.is_open())
    file_ << "<!-- " << utc_time(std::time(nullptr)) << ' ' << what << " -->\n" << message << std::flush;
}

} // namespace kova::agent
