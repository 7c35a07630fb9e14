#include "desktop/session_logs.h"

#include "desktop/text_window.h"
#include "protocol/job_log.h"
#include "protocol/job_name.h"
#include "ui/attempt.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {
namespace {

// More than anybody reads; the end tells how the session ended.
constexpr std::size_t kShownBytes = std::size_t{4} << 20U;

std::string end_of(const std::string& text) {
  if (text.size() <= kShownBytes) return text;
  const std::size_t line = text.find('\n', text.size() - kShownBytes);
  return "...\n" + text.substr(line == std::string::npos ? text.size() - kShownBytes : line + 1);
}

}  // namespace

std::string SessionLogs::read(const std::string& path) const {
  if (!files_.file_exists(path)) {
    throw base::Fault("The scheduler has written no log for this job.",
                      "There is no file \"" + files_.native(path) + "\".");
  }
  return end_of(files_.read(path));
}

void SessionLogs::show(const std::string& job_name, QWidget* parent) const {
  ui::attempt(ui_, "The log of job " + job_name + " cannot be shown.", [&] {
    if (!protocol::is_job_name(job_name)) throw base::Fault("This is no name of a job.");
    const std::string path = protocol::log_path(folders_.GetLogsFolder(), job_name);
    const QString text = ui::qt_text(read(path));
    TextWindow window(QStringLiteral("Session Log - ") + ui::qt_text(files_.native(path)), text, parent);
    window.show_end();
    window.exec();
  });
}

}  // namespace qvrcom::desktop
