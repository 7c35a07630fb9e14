#include "desktop/device_texts.h"

#include <QLocale>
#include <chrono>
#include <utility>

#include "protocol/job_lists.h"
#include "ui/reading_text.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {
namespace {

constexpr std::uint32_t kSamplesASecond = 8000;
constexpr qsizetype kNameWidth = 24;
constexpr std::size_t kBytesOnALine = 16;

QString line(const char* name, const QString& value) {
  return (QLatin1String(name) + QLatin1Char(':')).leftJustified(kNameWidth) + value;
}

QString number(std::uint32_t value) {
  return QLocale().toString(value);
}

// "1 day 02:03:04"
QString duration(std::uint32_t seconds) {
  constexpr std::uint32_t kDay = 86'400;
  const auto two = [](std::uint32_t value) {
    return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
  };
  const std::uint32_t days = seconds / kDay;
  const std::uint32_t rest = seconds % kDay;
  QString text;
  if (days > 0) text = number(days) + QLatin1String(days == 1 ? " day " : " days ");
  return text + two(rest / 3600) + QLatin1Char(':') + two(rest / 60 % 60) + QLatin1Char(':') + two(rest % 60);
}

QString recorded(std::uint32_t samples) {
  return duration(samples / kSamplesASecond) + QStringLiteral(" (%1 samples)").arg(number(samples));
}

QString minutes(const base::TimeRecord& time) {
  return ui::qt_text(time.minutes) + QStringLiteral(" min ") + ui::qt_text(time.seconds) +
         QStringLiteral(" s");
}

}  // namespace

QString information_text(const devicefiles::SystemInformation& information) {
  return QStringList{
      line("Firmware", ui::qt_text(information.firmware)),
      line("Serial number", ui::qt_text(information.serial_number)),
      line("Model", ui::qt_text(information.model)),
      line("Machine type", number(information.machine_type)),
      line("Telephone lines", number(information.lines)),
      line("Partitions", number(information.partitions)),
      line("Message memory", recorded(information.memory)),
      line("Message memory in use", recorded(information.memory_used)),
      line("Running for", duration(information.uptime)),
      line("Clock", ui::moment_text(information.moment)),
  }
      .join(QLatin1Char('\n'));
}

QString partition_text(int partition, const std::array<base::TimeRecord, 2>& times) {
  return QStringList{
      line("Partition", QString::number(partition)),
      line("Recorded", minutes(times[0])),
      line("Room for recordings", minutes(times[1])),
  }
      .join(QLatin1Char('\n'));
}

QString files_text(const std::vector<session::PartitionFile>& files) {
  QStringList lines{QStringLiteral("Statistics files: %1").arg(files.size())};
  for (const session::PartitionFile& file : files)
    lines += QStringLiteral("Partition %1: ").arg(file.partition, 2) + ui::qt_text(file.file);
  return lines.join(QLatin1Char('\n'));
}

QString unread_text(const std::string& bytes) {
  QStringList lines{QStringLiteral("The device answered in a form that is not known here. Its %1:")
                        .arg(ui::byte_count(bytes.size()))};
  const auto view = QByteArray::fromStdString(bytes);
  for (std::size_t at = 0; at < bytes.size(); at += kBytesOnALine) {
    const auto place = QStringLiteral("%1  ").arg(at, 4, 16, QLatin1Char('0'));
    lines += place + QLatin1String(view.mid(static_cast<qsizetype>(at), kBytesOnALine).toHex(' '));
  }
  return lines.join(QLatin1Char('\n'));
}

QString outcome_line(const std::string& operation, const requests::SystemAnswer& answer) {
  QString text = outcome_line(operation, answer.result, answer.status);
  if (!answer.shortfall.empty()) text += QLatin1String(". ") + ui::qt_text(answer.shortfall);
  return text;
}

QString outcome_line(const std::string& operation, requests::RequestResult result,
                     const std::string& status) {
  const QString name = ui::qt_text(operation).trimmed() + QLatin1String(": ");
  switch (result) {
    case requests::RequestResult::kDone:
      return name + QStringLiteral("Completed");
    case requests::RequestResult::kBusy:
      return name + QStringLiteral("not done, another program has the session");
    case requests::RequestResult::kNotDone:
      break;
  }
  if (status == protocol::kCompletedStatus) return name + QStringLiteral("no result");
  return name + QStringLiteral("not done") +
         (status.empty() ? QString() : QStringLiteral(" (%1)").arg(ui::qt_text(status)));
}

}  // namespace qvrcom::desktop
