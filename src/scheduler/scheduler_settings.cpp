#include "scheduler/scheduler_settings.h"

#include <charconv>
#include <optional>

#include "environment/names.h"

namespace qvrcom::scheduler {
namespace {

constexpr const char* kSection = "JobPilot";

std::optional<int> number_within(const std::string& text, int highest) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool good = error == std::errc{} && end == text.data() + text.size() && number >= 1;
  return good && number <= highest ? std::optional(number) : std::nullopt;
}

class Reader {
 public:
  explicit Reader(const platform::Machine& machine) : machine_(machine) {}

  std::string text(const char* key) const {
    return machine_.setting(environment::kSettingsApplication, kSection, key).value_or("");
  }

  // `unit` times the setting; `value` stays when the setting is absent or no good.
  template <class Value>
  void number(const char* key, int highest, Value unit, Value& value) {
    const std::string given = text(key);
    if (given.empty()) return;
    if (const auto number = number_within(given, highest)) {
      value = unit * static_cast<unsigned>(*number);
      return;
    }
    complaints.push_back(std::string("The setting ") + key + " of section " + kSection +
                         " is not a whole number from 1 to " + std::to_string(highest) +
                         "; its default is used.");
  }

  std::vector<std::string> complaints;

 private:
  const platform::Machine& machine_;
};

}  // namespace

SettingsReading read_settings(const platform::Machine& machine) {
  using std::chrono::milliseconds;
  SettingsReading reading;
  SchedulerSettings& settings = reading.settings;
  Reader reader(machine);
  reader.number("LargestFileMiB", 4096, std::uint64_t{1} << 20U, settings.limits.largest_file);
  reader.number("ConnectSeconds", 3600, milliseconds(1000), settings.limits.connect);
  reader.number("IdleSeconds", 3600, milliseconds(1000), settings.limits.idle);
  reader.number("SessionMinutes", 1440, milliseconds(60000), settings.limits.session);
  reader.number("DialSeconds", 3600, milliseconds(1000), settings.dial);
  reader.number("AttachSeconds", 3600, milliseconds(1000), settings.attach);
  reader.number("TerminalIdleSeconds", 86400, milliseconds(1000), settings.terminal_idle);
  settings.dial_command = reader.text("DialCommand");
  reading.complaints = std::move(reader.complaints);
  return reading;
}

}  // namespace qvrcom::scheduler
