#pragma once

#include <QDialog>
#include <string>

#include "control/statistics_viewer.h"
#include "platform/files.h"
#include "ui/visual_components.h"

namespace qvrcom::ui {

// The dialog "Statistics": one grid, "ucStats1", created by name. Loads at each activation, an unchanged file
// at no cost; a missing one leaves the grid as it is, without a message. The grid's wish to be closed ends
// it.
class frmViewStatistics : public QDialog {
 public:
  // Fault when the grid cannot be created or lacks one of its members. The components and the files outlive
  // the dialog.
  frmViewStatistics(const VisualComponents& components, const platform::Files& files,
                    QWidget* parent = nullptr);

  // The CSV file to show, a suite path or a native one.
  void hand_over(const std::string& csv_file) { csv_file_ = csv_file; }

 protected:
  bool event(QEvent* event) override;

 private:
  void Form_Activate();

  const platform::Files& files_;
  QWidget* grid_;
  std::string csv_file_;
};

// The viewer for the statistics control: a dialog per showing.
class StatisticsViewerWindow : public control::StatisticsViewer {
 public:
  StatisticsViewerWindow(const VisualComponents& components, const platform::Files& files)
      : components_(components), files_(files) {}

  void hand_over(const std::string& csv_file) override { csv_file_ = csv_file; }
  void show_modal() override;

 private:
  const VisualComponents& components_;
  const platform::Files& files_;
  std::string csv_file_;
};

}  // namespace qvrcom::ui
