#pragma once

#include <QDialog>
#include <string>

#include "control/statistics_viewer.h"
#include "ui/visual_components.h"

namespace qvrcom::ui {

// The dialog "Statistics": one grid, "ucStats1", created by name. Loads at each activation; the grid's wish
// to be closed ends it.
class frmViewStatistics : public QDialog, private control::StatisticsGrid {
 public:
  // Fault when the grid cannot be created or lacks one of its members. The components and the files outlive
  // the dialog.
  frmViewStatistics(const VisualComponents& components, const platform::Files& files,
                    QWidget* parent = nullptr);

  void hand_over(const std::string& csv_file) { logic_.hand_over(csv_file); }

 protected:
  bool event(QEvent* event) override;

 private:
  void set_CSVFileName(const std::string& csv_file) override;
  void LoadAndDisplay() override;

  control::ViewStatistics logic_;
  QWidget* grid_;
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
