#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "requests/system_request.h"
#include "sitebook/site_book.h"
#include "ui/file_chooser.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace qvrcom::desktop {

class ClockPanel;
class SitePicker;

struct DevicePageParts {
  requests::SessionRequestParts request;
  sitebook::SiteBook& sites;
  ui::FileChooserQt& chooser;
};

// What can be asked of one device as a whole, and told to it. What it answers stands in one text, which can
// be saved. Whatever changes the device asks first.
class DevicePage : public QWidget {
 public:
  explicit DevicePage(const DevicePageParts& parts, QWidget* parent = nullptr);

  void reload_sites();

 private:
  struct Sending;
  static const Sending kFirmware;
  static const Sending kCannedMessages;

  void lay_out();
  QWidget* make_commands();
  void site_changed(bool another);
  QString all_partitions_obstacle() const;
  void show_all_partitions(bool usable);

  requests::SystemOrder order() const;
  requests::SystemAnswer command(const char* operation, requests::SystemOrder order);
  void read_clock();
  void set_clock();
  void get_information();
  void get_partition();
  void get_log();
  void get_and_reset_log();
  void reset_log();
  void send_firmware();
  void send_canned_messages();
  void send(const Sending& what);
  void reset_all_partitions();

  void show_log(const char* operation, const std::string& log);
  void show_text(const char* operation, const QString& text, const char* file_name);
  void show_answer(const char* operation, const QString& text, const std::string& bytes,
                   const char* file_name);
  void save_answer();

  DevicePageParts parts_;
  SitePicker* picker_;
  ClockPanel* clock_;
  std::vector<QPushButton*> commands_;
  QPushButton* cmdAllPartitions_ = nullptr;
  QLabel* lblAllPartitions_ = nullptr;  // why it cannot be pressed
  QPlainTextEdit* text_;
  QLabel* lblAnswer_;
  QLabel* lblState_;
  QPushButton* cmdSave_;
  std::string answer_;       // what would be saved
  std::string answer_name_;  // and the file name that is proposed for it
};

}  // namespace qvrcom::desktop
