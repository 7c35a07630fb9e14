#include "adapters/plugin_component.h"

#include <optional>
#include <vector>

#include "base/text.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;

constexpr std::size_t kLargestAnswer = std::size_t{16} << 20;
constexpr std::size_t kLargestReason = 4096;
constexpr const char* kPluginFailed = "Plug-in failed";
constexpr const char* kException = "Plug-in ended with an exception";
constexpr const char* kUnusableAnswer = "Plug-in gave an unusable answer";

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

}  // namespace

std::unique_ptr<platform::Component> make_plugin_component(const qvrcom_component& offer,
                                                           const std::string& library) {
  return std::make_unique<PluginComponent>(offer, library);
}

}  // namespace qvrcom::adapters
