#pragma once

#include <QWidget>

#include "requests/device_requests.h"
#include "sitebook/site_book.h"

class QLabel;
class QPushButton;
class QTableView;

namespace qvrcom::desktop {

class SitePicker;
class ValueSort;
class ValueTableModel;

// The messages that a device has in one partition.
class MessagesPage : public QWidget {
 public:
  MessagesPage(const requests::SessionRequestParts& request, sitebook::SiteBook& sites,
               QWidget* parent = nullptr);

  void reload_sites();

 private:
  void lay_out();
  void view();
  void site_changed(bool another);

  requests::SessionRequestParts request_;
  SitePicker* picker_;
  ValueTableModel* model_;
  ValueSort* sorted_;
  QTableView* table_;
  QLabel* lblState_;
  QPushButton* cmdView_;
};

}  // namespace qvrcom::desktop
