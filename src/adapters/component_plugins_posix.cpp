#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>

#include "adapters/component_plugins.h"
#include "adapters/plugin_component.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

constexpr const char* kEntry = "qvrcom_offer_components";
constexpr std::uint32_t kMostComponents = 256;

using Offer = const qvrcom_component_plugin*;

// Why a file or folder is not trusted, or nothing.
std::optional<std::string> distrust(const std::string& path, mode_t kind, const char* kind_name) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return std::string(std::strerror(errno)) + ".";
  if ((status.st_mode & S_IFMT) != kind) return std::string("It is not ") + kind_name + ".";
  if (status.st_uid != 0 && status.st_uid != ::geteuid())
    return std::string("It belongs to another user. Have it owned by you or by root.");
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
    return std::string("Others may write to it. Take that away with \"chmod go-w\".");
  return std::nullopt;
}

// Loads the library and asks it what it offers; Fault when it does not say.
Offer load(const std::string& path) {
  void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw base::Fault("It is not a library that can be loaded", ::dlerror());
  const auto entry = reinterpret_cast<decltype(&qvrcom_offer_components)>(::dlsym(library, kEntry));
  if (entry == nullptr)
    throw base::Fault("It is no component plug-in", std::string("It has no symbol \"") + kEntry + "\".");
  return guard_plugin("It ended with an exception", "On saying what it offers", [&] { return entry(); });
}

// Why what a library offers cannot be used, or nothing.
std::optional<std::string> flaw_of(Offer offer) {
  if (offer == nullptr) return "It does not say what it offers.";
  if (offer->version != QVRCOM_COMPONENT_PLUGIN_VERSION) {
    return "It is made for version " + std::to_string(offer->version) +
           " of the plug-in interface; this program has version " +
           std::to_string(QVRCOM_COMPONENT_PLUGIN_VERSION) + ".";
  }
  if (offer->components == nullptr || offer->count == 0) return "It offers no component.";
  if (offer->count > kMostComponents)
    return "It offers " + std::to_string(offer->count) + " components, more than " +
           std::to_string(kMostComponents) + ".";
  for (std::uint32_t place = 0; place < offer->count; ++place) {
    const qvrcom_component& component = offer->components[place];
    const std::string number = std::to_string(place + 1);
    const std::string name = component.name == nullptr ? "" : component.name;
    if (name.empty()) return "Its component " + number + " has no name.";
    if (!base::is_utf8(name) || base::has_control_character(name))
      return "The name of its component " + number + " is not a text.";
    if (component.call == nullptr) return "Its component \"" + name + "\" cannot be called.";
  }
  return std::nullopt;
}

// The libraries of a folder by file name; a problem where the folder cannot be read or trusted.
std::vector<std::filesystem::path> libraries_in(const std::string& folder,
                                                std::vector<std::string>& problems) {
  std::vector<std::filesystem::path> found;
  std::error_code error;
  if (!std::filesystem::exists(std::filesystem::symlink_status(folder, error))) return found;
  if (const auto why = distrust(folder, S_IFDIR, "a folder")) {
    problems.push_back("The folder of plug-ins \"" + folder + "\" is not used. " + *why);
    return found;
  }
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
    if (entry->path().extension() == ".so") found.push_back(entry->path());
  if (error)
    problems.push_back("The folder of plug-ins \"" + folder + "\" cannot be read. " + error.message() + ".");
  std::sort(found.begin(), found.end());
  return found;
}

void add_components(ComponentPlugins& plugins, const std::filesystem::path& path) {
  const std::string library = path.filename().string();
  const auto refuse = [&](const std::string& why) {
    plugins.problems.push_back("The plug-in \"" + library + "\" is not used. " + why);
  };
  if (const auto why = distrust(path.string(), S_IFREG, "a plain file")) return refuse(*why);
  Offer offer = nullptr;
  if (const auto fault = base::fault_of([&] { offer = load(path.string()); }))
    return refuse(fault->description() + ". " + fault->detail());
  if (const auto why = flaw_of(offer)) return refuse(*why);
  for (std::uint32_t place = 0; place < offer->count; ++place) {
    const qvrcom_component& component = offer->components[place];
    plugins.components.push_back({component.name, library, [&component, library] {
                                    return make_plugin_component(component, library);
                                  }});
  }
}

// Which of two is right cannot be told: none of them is used.
void drop_duplicates(ComponentPlugins& plugins) {
  std::map<std::string, std::vector<std::string>> libraries;
  for (const OfferedComponent& offered : plugins.components)
    libraries[offered.name].push_back(offered.library);
  std::erase_if(libraries, [](const auto& entry) { return entry.second.size() == 1; });
  for (const auto& [name, several] : libraries) {
    std::string problem = "The component \"" + name + "\" is offered more than once";
    const char* separator = " (\"";
    for (const std::string& library : several) {
      problem += separator + library + "\"";
      separator = ", \"";
    }
    plugins.problems.push_back(problem + "). None of these is used. Keep one.");
  }
  std::erase_if(plugins.components,
                [&](const OfferedComponent& offered) { return libraries.contains(offered.name); });
}

}  // namespace

ComponentPlugins load_component_plugins(const std::string& folder) {
  ComponentPlugins plugins;
  for (const std::filesystem::path& path : libraries_in(folder, plugins.problems))
    add_components(plugins, path);
  drop_duplicates(plugins);
  return plugins;
}

}  // namespace qvrcom::adapters
