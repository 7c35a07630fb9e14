#pragma once

#include <QWidget>
#include <memory>

#include "control/statistics_control.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QStackedLayout;

namespace qvrcom::ui {

// What a host hands to the control: all of it outlives the control.
struct StatisticsMainParts {
  requests::StatisticsRequestParts request;
  control::StatisticsViewer& viewer;
  control::FileChooser& chooser;
};

// The statistics control, to be placed on any window. Its elements carry the suite's names as object names.
class ucStatisticsMain : public QWidget, private control::ControlView {
  Q_OBJECT

 public:
  explicit ucStatisticsMain(const StatisticsMainParts& parts, QWidget* parent = nullptr);
  ~ucStatisticsMain() override;

  // Fills the site list anew, after the site book has changed; site and partition stay chosen.
  void reload_sites();

 signals:
  // The user is done: the host removes or hides the control.
  void RemoveMe();
  // Declared for hosts, never raised.
  void ProcessDone(const QString& Process);

 private:
  class Events;

  void show_sites(const control::ListEntries& entries) override;
  void show_partitions(const control::ListEntries& entries) override;
  void show_state(const control::ControlState& state) override;
  void set_hourglass(bool busy) override;

  void make_elements();
  QWidget* make_option_frames();
  QGroupBox* make_retrieve_frame();
  QGroupBox* make_view_frame();
  void lay_out();
  void set_tab_order();
  void connect_elements();
  template <class Sender, class Signal, class Handler>
  void on_user(Sender* sender, Signal signal, Handler handler);

  QGroupBox* fraStatistics_ = nullptr;
  QRadioButton* optViewStat_ = nullptr;
  QRadioButton* optRetrieveStats_ = nullptr;
  QGroupBox* fraRetrStats_ = nullptr;
  QLabel* lblSelectSite_ = nullptr;
  QComboBox* cmbSelectSite_ = nullptr;
  QLabel* lblSelectPartition_ = nullptr;
  QComboBox* cmbSelectPartition_ = nullptr;
  QGroupBox* fraView_ = nullptr;
  QLabel* lblFilename_ = nullptr;
  QLineEdit* txtFilename_ = nullptr;
  QPushButton* cmdCommonDialog_ = nullptr;
  QPushButton* cmdOK_ = nullptr;
  QPushButton* cmdApply_ = nullptr;
  QPushButton* cmdCancel_ = nullptr;
  QStackedLayout* frames_ = nullptr;

  bool showing_ = false;  // a change comes from the logic, not from the user
  bool hourglass_ = false;
  std::unique_ptr<Events> events_;
  std::unique_ptr<control::StatisticsControl> logic_;
};

}  // namespace qvrcom::ui
