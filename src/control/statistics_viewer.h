#pragma once

#include <string>

#include "platform/files.h"

namespace qvrcom::control {

// The statistics viewer as its callers know it.
class StatisticsViewer {
 public:
  virtual ~StatisticsViewer() = default;
  // The CSV file to show next, a suite path or a native one.
  virtual void hand_over(const std::string& csv_file) = 0;
  // Back when the viewer has been closed.
  virtual void show_modal() = 0;
};

// The grid inside the viewer.
class StatisticsGrid {
 public:
  virtual ~StatisticsGrid() = default;
  virtual void set_CSVFileName(const std::string& csv_file) = 0;
  // Called at every activation: an unchanged file costs nothing and keeps position, order and selection.
  virtual void LoadAndDisplay() = 0;
};

// frmViewStatistics without its window.
class ViewStatistics {
 public:
  ViewStatistics(const platform::Files& files, StatisticsGrid& grid) : files_(files), grid_(grid) {}

  void hand_over(const std::string& csv_file) { csv_file_ = csv_file; }

  // Loads the file when it is there; a missing one leaves the grid as it is, without a message.
  void Form_Activate();

 private:
  const platform::Files& files_;
  StatisticsGrid& grid_;
  std::string csv_file_;
};

}  // namespace qvrcom::control
