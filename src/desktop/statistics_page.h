#pragma once

#include <QWidget>

#include "desktop/seen_sites.h"
#include "ui/uc_statistics_main.h"

namespace qvrcom::desktop {

// The statistics control on its page. When the control asks to be removed it makes room for a button that
// brings it back. Its list of sites follows the book when the page comes into sight.
class StatisticsPage : public QWidget {
 public:
  explicit StatisticsPage(const ui::StatisticsMainParts& parts, QWidget* parent = nullptr);

  void reload_sites();

 private:
  QWidget* make_start_panel();
  void show_control(bool shown);

  SeenSites seen_;
  ui::ucStatisticsMain* control_;
  QPushButton* cmdOpen_ = nullptr;  // of the panel
  QWidget* start_panel_;
};

}  // namespace qvrcom::desktop
