#pragma once

#include <QWidget>

#include "ui/uc_statistics_main.h"

namespace qvrcom::desktop {

// The statistics control on its page. When the control asks to be removed it makes room for a button that
// brings it back.
class StatisticsPage : public QWidget {
 public:
  explicit StatisticsPage(const ui::StatisticsMainParts& parts, QWidget* parent = nullptr);

  void reload_sites() { control_->reload_sites(); }

 private:
  QWidget* make_start_panel();
  void show_control(bool shown);

  ui::ucStatisticsMain* control_;
  QPushButton* cmdOpen_ = nullptr;  // of the panel
  QWidget* start_panel_;
};

}  // namespace qvrcom::desktop
