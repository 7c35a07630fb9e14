#include "ui/transfer_progress.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/attempt.h"
#include "ui/elements.h"
#include "ui/reading_text.h"

namespace qvrcom::ui {
namespace {

// A look that takes long is followed by a longer rest: the dialog has to stay at hand.
constexpr int kRest = 250;
constexpr int kRestPerLook = 20;
constexpr int kBarSteps = 1000;

QString transfer_text(const Transfer& transfer) {
  QString text = qt_text(transfer.step);
  if (!text.isEmpty()) text += QStringLiteral(": ");
  text += byte_count(transfer.done);
  if (transfer.hinted > 0) text += QStringLiteral(" of about ") + byte_count(transfer.hinted);
  return text;
}

}  // namespace

TransferSource transfer_source(platform::SchedulerControl& scheduler, const base::JobValues& job) {
  return [&scheduler, &job]() -> std::optional<Transfer> {
    const auto status = scheduler.status();
    if (!status || status->running_job != job.Name || status->bytes_done == 0) return std::nullopt;
    return Transfer{status->step, status->bytes_done, status->bytes_hinted};
  };
}

TransferProgress::TransferProgress(TransferSource source, QWidget* parent)
    : QWidget(parent),
      source_(std::move(source)),
      lblTransfer_(named(new QLabel(this), "lblTransfer", QStringLiteral("Transfer"))),
      barTransfer_(named(new QProgressBar(this), "barTransfer", QStringLiteral("Progress of the transfer"))),
      timer_(new QTimer(this)) {
  lblTransfer_->setTextFormat(Qt::PlainText);
  barTransfer_->setRange(0, kBarSteps);
  keep_room(barTransfer_);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins({});
  all->addWidget(lblTransfer_);
  all->addWidget(barTransfer_);
  timer_->setSingleShot(true);
  connect(timer_, &QTimer::timeout, this, &TransferProgress::look_and_plan);
  show_transfer(std::nullopt);
  setVisible(static_cast<bool>(source_));
}

void TransferProgress::set_running(bool running) {
  if (!source_) return;
  show_transfer(std::nullopt);
  if (running)
    timer_->start(kRest);
  else
    timer_->stop();
}

void TransferProgress::look_and_plan() {
  QElapsedTimer taken;
  taken.start();
  std::optional<Transfer> transfer;
  fault_of([&] { transfer = source_(); });  // what cannot be asked is not shown
  show_transfer(transfer);
  timer_->start(std::max(kRest, kRestPerLook * static_cast<int>(taken.elapsed())));
}

void TransferProgress::show_transfer(const std::optional<Transfer>& transfer) {
  lblTransfer_->setText(transfer ? transfer_text(*transfer) : QString());
  const bool measured = transfer && transfer->hinted > 0;
  barTransfer_->setVisible(measured);
  if (!measured) return;
  const double part = static_cast<double>(transfer->done) / static_cast<double>(transfer->hinted);
  barTransfer_->setValue(static_cast<int>(std::min(part, 1.0) * kBarSteps));
}

}  // namespace qvrcom::ui
