#include "kovactl/model_objects.hpp"

#include "kovactl/request.hpp"

#include <algorithm>
#include <cctype>
#include <map>

namespace kova::ctl {
namespace {

constexpr std::string_view placeholder = "{i}";

bool is_number(std::string_view name) {
  return name == placeholder ||
         std::ranges::all_of(name, [](unsigned char c) { return std::isdigit(c) != 0; });
}

struct Draft {
  ModelObject object;
  std::vector<std::vector<std::string_view>> owners; // of each parameter: the instances that have it
};
using Drafts = std::map<std::string, Draft>;

// Up to the next ".".
std::string_view first_name(std::string_view path) {
  return path.substr(0, path.find('.'));
}

// Notes the objects on the way to a parameter, and returns the one in which it is.
Draft &object_of(Drafts &drafts, const Listed &listed) {
  std::string path;
  size_t end = 0;
  for (size_t dot = 0; (dot = listed.path.find('.', end)) != std::string_view::npos; end = dot + 1) {
    const std::string_view name = listed.path.substr(end, dot - end);
    path.append(is_number(name) ? placeholder : name).append(".");
    if (is_number(first_name(listed.path.substr(dot + 1)))) continue; // the instances are the object
    ModelObject &object = drafts[path].object;
    object.path = path;
    object.instances.insert(listed.path.substr(0, dot + 1));
    if (name == placeholder) {
      object.is_list = true;
      object.rows_writable = listed.writable();
    }
  }
  return drafts[path];
}

void note(Drafts &drafts, const Listed &listed) {
  Draft &draft = object_of(drafts, listed);
  const size_t end = listed.path.rfind('.') + 1;
  const std::string_view instance = listed.path.substr(0, end), name = listed.path.substr(end);
  auto &parameters = draft.object.parameters;
  const auto present = std::ranges::find(parameters, name, &ModelParameter::name);
  if (present != parameters.end()) {
    draft.owners[static_cast<size_t>(present - parameters.begin())].push_back(instance);
    return;
  }
  parameters.push_back(
      {name, listed.type, listed.access, listed.unit, std::string(listed.meaning), model::find(listed.path)});
  draft.owners.push_back({instance});
}

ModelObject finished(Draft &draft) {
  ModelObject object = std::move(draft.object);
  for (size_t i = 0; i < object.parameters.size(); ++i) {
    if (draft.owners[i].size() == object.instances.size()) continue;
    std::string where;
    for (const std::string_view owner : draft.owners[i])
      where.append(where.empty() ? "; only in " : ", ").append(owner.substr(0, owner.size() - 1));
    object.parameters[i].meaning += where;
  }
  std::ranges::sort(object.parameters, {}, &ModelParameter::name);
  return object;
}

} // namespace

size_t ModelObject::entries() const {
  std::set<std::string_view> names;
  for (std::string_view instance : instances) {
    instance.remove_suffix(1);
    names.insert(instance.substr(instance.rfind('.') + 1));
  }
  return names.size();
}

std::vector<ModelObject> model_objects() {
  Drafts drafts;
  for (const Listed &listed : starting_with(""))
    note(drafts, listed);
  std::vector<ModelObject> objects;
  for (auto &[path, draft] : drafts)
    objects.push_back(finished(draft));
  return objects;
}

} // namespace kova::ctl
