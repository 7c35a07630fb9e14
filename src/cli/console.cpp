#include "cli/console.h"

#include <fcntl.h>
#include <unistd.h>

#include <ostream>

#include "base/text.h"
#include "cli/printable.h"

namespace qvrcom::cli {
namespace {

constexpr std::size_t kStatusWidth = 79;  // a longer line would wrap and could not be rewritten
constexpr const char* kHostName = "qvrcomctl";

}  // namespace

void take_standard_descriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) < 0)
      ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

void Console::print(std::string_view text) {
  erase_status();
  out_ << printable(text) << '\n';
}

void Console::print_path(const std::string& path) {
  print(path);
  if (!flush()) tell("The file is there, but standard output did not take its name.", path);
}

void Console::report(const platform::Message& message) {
  const std::string status = status_;
  erase_status();
  err_ << printable(message.title.empty() ? kHostName : message.title) << ": ";
  const char* separator = "";
  for (const std::string_view line : base::lines_of(message.text)) {
    err_ << separator << printable(line);
    separator = "\n";
  }
  err_ << '\n';
  for (const std::string_view line : base::lines_of(message.detail))
    err_ << "  " << printable(line) << '\n';
  err_.flush();
  set_status(status);
}

void Console::tell(const std::string& text, const std::string& detail) {
  platform::Message message;
  message.text = text;
  message.title = platform::kSuiteTitle;
  message.detail = detail;
  report(message);
}

void Console::prompt(std::string_view text) {
  erase_status();
  err_ << text << std::flush;
}

void Console::pass(std::string_view bytes) {
  erase_status();
  out_.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
}

void Console::show_status(bool shown) {
  erase_status();
  status_shown_ = shown;
}

void Console::set_status(const std::string& text) {
  if (!has_status()) return;
  const std::string shown(clipped(printable(text), kStatusWidth));
  if (shown == status_) return;
  const std::size_t old_width = width_of(status_);
  const std::size_t width = width_of(shown);
  err_ << '\r' << shown;
  if (width < old_width) {
    err_ << std::string(old_width - width, ' ') << '\r' << shown;
  }
  err_.flush();
  status_ = shown;
}

void Console::erase_status() {
  if (status_.empty()) return;
  set_status({});
}

bool Console::flush() {
  out_.flush();
  return out_.good();
}

bool Console::deliver() {
  if (flush()) return true;
  tell("Cannot write", "Standard output did not take all of the data.");
  return false;
}

}  // namespace qvrcom::cli
