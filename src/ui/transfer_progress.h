#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "base/session_values.h"
#include "jobs/scheduler_files.h"
#include "requests/session_progress.h"

class QLabel;
class QProgressBar;
class QTimer;

namespace qvrcom::ui {

// Asked again and again; nothing while the job does not run or wait, or with a scheduler that does not tell.
using TransferSource = std::function<std::optional<requests::SessionProgress>()>;

// "Fetching log: 512 bytes of about 20,000 bytes", and what a job that has to wait is waiting for.
QString progress_text(const requests::SessionProgress& progress);

// What the scheduler tells about the session's job; of a job that stands in no list its script tells what it
// is. All three have to outlive the source.
TransferSource transfer_source(platform::SchedulerControl& scheduler, const base::JobValues& job,
                               const jobs::SchedulerFiles& files);

// A line and a bar that follow a session. Without one they keep their room and show nothing.
class TransferProgress : public QWidget {
 public:
  TransferProgress(TransferSource source, QWidget* parent);

  void set_running(bool running);

 private:
  void look_and_plan();
  void show_progress(const std::optional<requests::SessionProgress>& progress);

  TransferSource source_;
  QLabel* lblTransfer_;
  QProgressBar* barTransfer_;
  QTimer* timer_;
};

}  // namespace qvrcom::ui
