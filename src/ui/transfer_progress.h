#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "base/session_values.h"
#include "platform/scheduler_control.h"

class QLabel;
class QProgressBar;
class QTimer;

namespace qvrcom::ui {

// How far the transfer of a running job has come.
struct Transfer {
  std::string step;
  std::uint64_t done = 0;    // bytes
  std::uint64_t hinted = 0;  // bytes that are expected, 0 when nobody knows
};

// Asked again and again; nothing while the job moves no bytes, or with a scheduler that does not tell.
using TransferSource = std::function<std::optional<Transfer>()>;

// What the scheduler tells about the session's job. Both have to outlive the source.
TransferSource transfer_source(platform::SchedulerControl& scheduler, const base::JobValues& job);

// A line and a bar that follow a transfer. Without one they keep their room and show nothing.
class TransferProgress : public QWidget {
 public:
  TransferProgress(TransferSource source, QWidget* parent);

  void set_running(bool running);

 private:
  void look_and_plan();
  void show_transfer(const std::optional<Transfer>& transfer);

  TransferSource source_;
  QLabel* lblTransfer_;
  QProgressBar* barTransfer_;
  QTimer* timer_;
};

}  // namespace qvrcom::ui
