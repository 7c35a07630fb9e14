#pragma once

#include <QWidget>

#include "desktop/same_logs.h"
#include "requests/device_requests.h"
#include "sitebook/site_book.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTableView;

namespace qvrcom::desktop {

class SitePicker;
class ValueSort;
class ValueTableModel;

struct SameLogsPageParts {
  requests::SessionRequestParts request;
  sitebook::SiteBook& sites;
  const platform::Files& files;
  const environment::FilesAndFolders& folders;
};

// The SAME logs of the devices: retrieved, listed, read, searched.
class SameLogsPage : public QWidget {
 public:
  explicit SameLogsPage(const SameLogsPageParts& parts, QWidget* parent = nullptr);

  void reload_sites();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  enum class Direction { kForward, kBackward };

  void lay_out();
  QWidget* make_search();
  QPushButton* make_button(const char* name, const char* caption, void (SameLogsPage::*action)());
  void retrieve();
  void refresh();
  void list_logs();
  void select(const std::string& path);
  void read_selected();
  void read(const SameLog& log);
  void find_next();
  void find_previous();
  void find(Direction direction);
  bool find_once(Direction direction);
  const SameLog* selected() const;

  SameLogsPageParts parts_;
  SitePicker* picker_;
  ValueTableModel* model_;
  ValueSort* sorted_;
  QTableView* table_;
  QPlainTextEdit* text_;
  QLineEdit* txtFind_;
  QLabel* lblState_;
  QPushButton* cmdRetrieve_;
  std::vector<SameLog> logs_;
  std::string shown_;  // path of the log that is being read
};

}  // namespace qvrcom::desktop
