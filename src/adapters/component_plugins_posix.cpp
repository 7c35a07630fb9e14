#include <dlfcn.h>
#include <qvrcom/component_plugin.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <map>
#include <optional>

#include "adapters/component_plugins.h"
#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;

constexpr std::size_t kLargestAnswer = std::size_t{16} << 20;
constexpr std::size_t kLargestReason = 4096;
constexpr const char* kPluginFailed = "Plug-in failed";
constexpr const char* kException = "Plug-in ended with an exception";
constexpr const char* kUnusableAnswer = "Plug-in gave an unusable answer";
constexpr const char* kEntry = "qvrcom_offer_components";
constexpr std::uint32_t kMostComponents = 256;

using Offer = const qvrcom_component_plugin*;

// Runs a piece of a plug-in: an exception that leaves it becomes the Fault `description` with `where` and the
// exception's own text as detail. Nothing that a plug-in throws goes any further.
template <class Body>
auto guard_plugin(const std::string& description, const std::string& where, Body body) {
  try {
    return body();
  } catch (const std::exception& error) {
    throw Fault(description, where + ": " + error.what());
  } catch (...) {
    throw Fault(description, where + ": an exception of its own kind.");
  }
}

// What a plug-in answers with during one call.
struct Answer {
  std::optional<std::string> text;
  bool too_long = false;
  bool out_of_memory = false;
};

// Stands below the plug-in's frames, which may be C: nothing may be thrown through them.
void take_answer(void* receiver, const char* text, std::size_t length) noexcept {
  Answer& answer = *static_cast<Answer*>(receiver);
  answer = {};
  if (text == nullptr) return;
  if (length > kLargestAnswer) {
    answer.too_long = true;
    return;
  }
  try {
    answer.text.emplace(text, length);
  } catch (const std::bad_alloc&) {
    answer.out_of_memory = true;
  }
}

// The plug-in's reason when it can be shown to a person.
std::string reason_of(const Answer& answer) {
  const bool usable = answer.text && !answer.text->empty() && answer.text->size() <= kLargestReason &&
                      base::is_utf8(*answer.text);
  return usable ? *answer.text : kPluginFailed;
}

std::optional<std::string> text_of(Answer answer, const std::string& where) {
  if (answer.too_long)
    throw Fault(kUnusableAnswer, where + ": it is longer than " + std::to_string(kLargestAnswer) + " bytes.");
  if (answer.out_of_memory) throw Fault("Out of memory", where + ": its answer does not fit.");
  if (answer.text && !base::is_utf8(*answer.text)) throw Fault(kUnusableAnswer, where + ": it is not UTF-8.");
  return std::move(answer.text);
}

// A component of a plug-in library as one of the suite's. `library` is the file name that faults tell. Fault
// when the plug-in cannot make one; a call's Fault when it fails, has no such operation, lets an exception
// out, or answers with more than 16 MiB or with something else than UTF-8.
class PluginComponent : public platform::Component {
 public:
  PluginComponent(const qvrcom_component& offer, const std::string& library)
      : offer_(offer), where_("\"" + std::string(offer.name) + "\" of the plug-in \"" + library + "\"") {
    if (offer_.create == nullptr) return;
    Answer answer;
    const int code = guard_plugin(kException, where_ + ", while it was made",
                                  [&] { return offer_.create(&self_, take_answer, &answer); });
    if (code != QVRCOM_DONE)
      throw Fault(reason_of(answer), where_ + " could not be made (code " + std::to_string(code) + ").");
  }

  ~PluginComponent() override {
    if (offer_.destroy == nullptr) return;
    try {
      offer_.destroy(self_);
    } catch (...) {  // NOLINT(bugprone-empty-catch): its answers stand, and a destructor has nobody to tell
    }
  }

  PluginComponent(const PluginComponent&) = delete;
  PluginComponent& operator=(const PluginComponent&) = delete;

  std::optional<std::string> call(std::string_view operation,
                                  std::span<const std::string> arguments) override {
    const std::string name(operation);
    std::vector<qvrcom_text> texts;
    for (const std::string& argument : arguments)
      texts.push_back({argument.c_str(), argument.size()});
    Answer answer;
    const std::string where = name + " of " + where_;
    const int code = guard_plugin(kException, where, [&] {
      return offer_.call(self_, name.c_str(), texts.empty() ? nullptr : texts.data(), texts.size(),
                         take_answer, &answer);
    });
    if (code == QVRCOM_NO_SUCH_OPERATION)
      throw Fault("Object doesn't support this operation", where_ + " has no operation \"" + name + "\".");
    if (code != QVRCOM_DONE)
      throw Fault(reason_of(answer), where + " ended with code " + std::to_string(code) + ".");
    return text_of(std::move(answer), where);
  }

 private:
  const qvrcom_component& offer_;
  std::string where_;
  void* self_ = nullptr;
};

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
  if (library == nullptr) throw Fault("It is not a library that can be loaded", ::dlerror());
  const auto entry = reinterpret_cast<decltype(&qvrcom_offer_components)>(::dlsym(library, kEntry));
  if (entry == nullptr)
    throw Fault("It is no component plug-in", std::string("It has no symbol \"") + kEntry + "\".");
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
                                    return std::make_unique<PluginComponent>(component, library);
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
