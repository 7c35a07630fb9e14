#pragma once

#include <string>

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

}  // namespace qvrcom::control
