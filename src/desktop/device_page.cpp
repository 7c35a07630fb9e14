#include "desktop/device_page.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/clock_panel.h"
#include "desktop/device_texts.h"
#include "desktop/obstacles.h"
#include "desktop/site_picker.h"
#include "environment/names.h"
#include "requests/device_requests.h"
#include "siterules/firmware_rules.h"
#include "ui/attempt.h"
#include "ui/elements.h"
#include "ui/reading_text.h"

namespace qvrcom::desktop {
namespace {

namespace operation = session::operation;
using requests::RequestResult;

constexpr const char* kTextFiles = "Text Files (*.txt)|*.txt";

}  // namespace

// A file of the user's that goes to the device.
struct DevicePage::Sending {
  const char* operation;
  const char* what;
  const char* act;
  const char* filter;
};

const DevicePage::Sending DevicePage::kFirmware{operation::kSendFirmware, "firmware", "Send Firmware",
                                                "Firmware Files (*)|*"};
const DevicePage::Sending DevicePage::kCannedMessages{operation::kSendCannedMessages, "canned messages",
                                                      "Send Messages", "Canned Messages (*)|*"};

DevicePage::DevicePage(const DevicePageParts& parts, QWidget* parent)
    : QWidget(parent),
      parts_(parts),
      picker_(new SitePicker(parts.sites, SitePicker::Asks::kSiteAndPartition, this)),
      clock_(new ClockPanel(parts.request.rules.clock, this)),
      text_(ui::reading_text("txtAnswer", QStringLiteral("Answer of the device:"), this)),
      lblAnswer_(ui::label_for(text_, "lblAnswer", {}, this)),
      lblState_(ui::named(new QLabel(this), "lblDeviceState", QStringLiteral("State of the last command"))),
      cmdSave_(ui::captioned<QPushButton>("cmdSaveAnswer", QStringLiteral("Sa&ve Answer..."), this)) {
  setObjectName(QStringLiteral("devicePage"));
  lay_out();
  connect(picker_, &SitePicker::chosen, this, &DevicePage::site_changed);
  connect(clock_, &ClockPanel::read_wanted, this, &DevicePage::read_clock);
  connect(clock_, &ClockPanel::set_wanted, this, &DevicePage::set_clock);
  connect(cmdSave_, &QPushButton::clicked, this, &DevicePage::save_answer);
  site_changed(true);
}

void DevicePage::lay_out() {
  lblState_->setTextFormat(Qt::PlainText);
  lblState_->setWordWrap(true);
  cmdSave_->setAutoDefault(true);
  auto* top = new QHBoxLayout;
  top->addWidget(clock_);
  top->addWidget(make_commands(), 1);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(lblState_, 1);
  bottom->addWidget(cmdSave_);
  auto* all = new QVBoxLayout(this);
  all->addWidget(picker_);
  all->addLayout(top);
  all->addWidget(lblAnswer_);
  all->addWidget(text_, 1);
  all->addLayout(bottom);
  setFocusProxy(picker_);
}

QWidget* DevicePage::make_commands() {
  struct Row {
    const char* name;
    const char* caption;
    void (DevicePage::*action)();
  };
  static constexpr Row kRows[] = {
      {"cmdInformation", "System In&formation", &DevicePage::get_information},
      {"cmdPartition", "Pa&rtition Information", &DevicePage::get_partition},
      {"cmdGetLog", "Fetch &Log", &DevicePage::get_log},
      {"cmdGetAndResetLog", "F&etch and Reset Log...", &DevicePage::get_and_reset_log},
      {"cmdResetLog", "Reset L&og...", &DevicePage::reset_log},
      {"cmdSendFirmware", "Send Firm&ware...", &DevicePage::send_firmware},
      {"cmdSendCannedMessages", "Se&nd Canned Messages...", &DevicePage::send_canned_messages},
      {"cmdAllPartitions", "Retrieve and Reset &All Statistics...", &DevicePage::reset_all_partitions},
  };
  auto* frame = ui::captioned<QGroupBox>("fraCommands", QStringLiteral("Commands"), this);
  auto* grid = new QGridLayout(frame);
  for (const Row& row : kRows) {
    auto* button = ui::captioned<QPushButton>(row.name, QString::fromLatin1(row.caption), frame);
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, row.action);
    const int place = static_cast<int>(commands_.size());
    grid->addWidget(button, place / 2, place % 2);
    commands_.push_back(button);
  }
  cmdAllPartitions_ = commands_.back();
  lblAllPartitions_ = new QLabel(frame);
  lblAllPartitions_->setObjectName(QStringLiteral("lblAllPartitions"));
  lblAllPartitions_->setTextFormat(Qt::PlainText);
  lblAllPartitions_->setWordWrap(true);
  grid->addWidget(lblAllPartitions_, grid->rowCount(), 0, 1, 2);
  return frame;
}

// Why the statistics of all partitions cannot be had of this site; "" when they can.
QString DevicePage::all_partitions_obstacle() const {
  const platform::Trap trap(parts_.request.rules.ui);
  const std::string firmware = picker_->site()->firmware.value_or("");
  const std::string form = siterules::FirmwareRules(trap).Check_Firmware_Version(firmware);
  if (form == environment::kOldStats) return {};
  if (form == siterules::kNoFirmwareVersion)
    return QStringLiteral("not while the site book does not tell the site's firmware version");
  return QStringLiteral("not with firmware %1, which does not keep its statistics in the older form")
      .arg(ui::qt_text(firmware));
}

void DevicePage::show_all_partitions(bool usable) {
  show_obstacles(*lblAllPartitions_, {{cmdAllPartitions_, usable ? all_partitions_obstacle() : QString()}});
  if (!usable) cmdAllPartitions_->setEnabled(false);  // the picker's line tells
  lblAllPartitions_->setVisible(!lblAllPartitions_->text().isEmpty());
}

void DevicePage::reload_sites() {
  picker_->reload();
}

// An answer belongs to the site that gave it.
void DevicePage::site_changed(bool another) {
  const bool usable = picker_->usable();
  for (QPushButton* button : commands_)
    button->setEnabled(usable);
  show_all_partitions(usable);
  clock_->enable_buttons(usable);
  if (!another) return;
  clock_->forget_device();
  lblState_->clear();
  show_answer("", {}, {}, "");
}

// For the site that is chosen now: what a question was about is what is done, whatever the line shows then.
requests::SystemOrder DevicePage::order() const {
  requests::SystemOrder order;
  order.site = picker_->row();
  return order;
}

requests::SystemAnswer DevicePage::command(const char* operation, requests::SystemOrder order) {
  order.operation = operation;
  const requests::SystemAnswer answer = requests::SystemRequest(parts_.request).run(order);
  lblState_->setText(outcome_line(operation, answer));
  return answer;
}

void DevicePage::read_clock() {
  const requests::SystemAnswer answer = command(operation::kGetDateAndTime, order());
  if (answer.result == RequestResult::kDone) return clock_->show_device(answer.clock, answer.arrived);
  if (answer.record.empty()) return;
  clock_->forget_device();
  show_text(operation::kGetDateAndTime, unread_text(answer.record), "clock.txt");
}

void DevicePage::set_clock() {
  requests::SystemOrder wanted = order();
  if (!ui::agreed(parts_.request.rules.ui,
                  "Set the clock of " + picker_->title() + " to the PC's date and time?", "Set Clock"))
    return;
  wanted.clock = parts_.request.rules.clock.now();
  command(operation::kSetDateAndTime, wanted);
  clock_->forget_device();  // what was read is no longer true
}

void DevicePage::get_information() {
  const requests::SystemAnswer answer = command(operation::kGetSystemInformation, order());
  if (answer.record.empty()) return;
  const bool known = answer.result == RequestResult::kDone;
  const QString text = known ? information_text(answer.information) : unread_text(answer.record);
  show_text(operation::kGetSystemInformation, text, "information.txt");
}

void DevicePage::get_partition() {
  const int partition = picker_->partition();
  requests::SystemOrder wanted = order();
  wanted.partition = std::to_string(partition);
  const requests::SystemAnswer answer = command(operation::kRetrieveMessageIndex, wanted);
  if (answer.result != RequestResult::kDone) return;
  show_text(operation::kRetrieveMessageIndex, partition_text(partition, answer.partition_times),
            "partition.txt");
}

void DevicePage::get_log() {
  const requests::SystemAnswer answer = command(operation::kGetLog, order());
  if (answer.result == RequestResult::kDone) show_log(operation::kGetLog, answer.log);
}

// The device will have no log any more: where it is kept is settled before it is fetched.
void DevicePage::get_and_reset_log() {
  requests::SystemOrder wanted = order();
  const auto path = parts_.chooser.save_file(kTextFiles, "log.txt");
  if (!path) return;
  wanted.save_log_as = parts_.request.rules.files.from_native(*path);
  const requests::SystemAnswer answer = command(operation::kGetAndResetLog, wanted);
  const bool done = answer.result == RequestResult::kDone;
  if (done || !answer.log.empty()) show_log(operation::kGetAndResetLog, answer.log);
  if (done) lblState_->setText(lblState_->text() + QStringLiteral(". Saved in ") + ui::qt_text(*path));
}

void DevicePage::reset_log() {
  const requests::SystemOrder wanted = order();
  if (ui::agreed(parts_.request.rules.ui, "Reset the log of " + picker_->title() + "? What it holds is lost.",
                 "Reset Log", "Fetch the log to keep it."))
    command(operation::kResetLog, wanted);
}

void DevicePage::send_firmware() {
  send(kFirmware);
}

void DevicePage::send_canned_messages() {
  send(kCannedMessages);
}

void DevicePage::send(const Sending& what) {
  requests::SystemOrder wanted = order();
  const std::string title = picker_->title();
  const auto path =
      parts_.chooser.open_file({.filter = what.filter, .flags = control::FileChoice::kFileMustExist});
  if (!path) return;
  wanted.file = parts_.request.rules.files.from_native(*path);
  std::uint64_t length = 0;
  const std::string refused = std::string("The ") + what.what + " cannot be sent.";
  const bool fit = ui::attempt(parts_.request.rules.ui, refused, [&] {
    length = parts_.request.rules.files.length(wanted.file);
    if (length == 0) throw base::Fault("The file is empty.", *path);
  });
  if (!fit) return;
  const std::string question = std::string("Send the ") + what.what + " to " + title + "?\n" + *path + " (" +
                               ui::utf8(ui::byte_count(length)) + ")";
  if (!ui::agreed(parts_.request.rules.ui, question, what.act)) return;
  command(what.operation, wanted);
}

void DevicePage::reset_all_partitions() {
  const sitebook::SiteRecord site = picker_->row();
  if (!ui::agreed(parts_.request.rules.ui,
                  "Retrieve the statistics of all partitions of " + picker_->title() +
                      " and reset them on the device?",
                  "Retrieve and Reset", "The device starts its counters anew."))
    return;
  const auto answer = requests::AllPartitionsRequest(parts_.request).run(site);
  lblState_->setText(outcome_line(operation::kRetrieveResetAllStatistics, answer.result, {}));
  if (answer.files.empty()) return;
  std::vector<session::PartitionFile> files = answer.files;
  for (session::PartitionFile& file : files)
    file.file = parts_.request.rules.files.native(file.file);
  show_text(operation::kRetrieveResetAllStatistics, files_text(files), "statistics.txt");
}

void DevicePage::show_log(const char* operation, const std::string& log) {
  show_answer(operation, ui::text_of_bytes(log), log, "log.txt");
  if (log.empty()) lblState_->setText(lblState_->text() + QStringLiteral(". The log is empty"));
}

void DevicePage::show_text(const char* operation, const QString& text, const char* file_name) {
  show_answer(operation, text, ui::utf8(text), file_name);
}

// A later command that fails or answers nothing leaves the text, so the caption tells what it is.
void DevicePage::show_answer(const char* operation, const QString& text, const std::string& bytes,
                             const char* file_name) {
  const QString asked = QLatin1String(operation).trimmed();
  const QString caption = QStringLiteral("Answer of t&he device") +
                          (asked.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(asked)) +
                          QLatin1Char(':');
  lblAnswer_->setText(caption);
  text_->setAccessibleName(ui::shown_caption(caption));
  text_->setPlainText(text);
  answer_ = bytes;
  answer_name_ = file_name;
  cmdSave_->setEnabled(!answer_.empty());
}

void DevicePage::save_answer() {
  const auto path = parts_.chooser.save_file(kTextFiles, answer_name_);
  if (!path) return;
  ui::attempt(parts_.request.rules.ui, "The answer cannot be saved.", [&] {
    platform::Files& files = parts_.request.rules.files;
    files.save(files.from_native(*path), answer_, platform::Readers::kEverybody);
    lblState_->setText(QStringLiteral("Saved in ") + ui::qt_text(*path));
  });
}

}  // namespace qvrcom::desktop
