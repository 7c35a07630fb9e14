#include "control/statistics_viewer.h"

namespace qvrcom::control {

void ViewStatistics::Form_Activate() {
  if (!files_.file_exists(csv_file_)) return;
  grid_.set_CSVFileName(csv_file_);
  grid_.LoadAndDisplay();
}

}  // namespace qvrcom::control
