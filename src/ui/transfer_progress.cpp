#include "ui/transfer_progress.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "jobs/job_board.h"
#include "ui/attempt.h"
#include "ui/elements.h"
#include "ui/reading_text.h"

namespace qvrcom::ui {
namespace {

// A look that takes long is followed by a longer rest: the dialog has to stay at hand.
constexpr int kRest = 250;
constexpr int kRestPerLook = 20;
constexpr int kBarSteps = 1000;
constexpr int kLines = 2;  // of the text of a session that waits

}  // namespace

QString progress_text(const requests::SessionProgress& progress) {
  QString text = qt_text(progress.step);
  if (progress.bytes_done > 0) {
    if (!text.isEmpty()) text += QStringLiteral(": ");
    text += byte_count(progress.bytes_done);
    if (progress.bytes_hinted > 0) text += QStringLiteral(" of about ") + byte_count(progress.bytes_hinted);
  }
  if (progress.waits_for.empty()) return text;
  QString job = qt_text(progress.waits_for);
  if (!progress.description.empty())
    job += QStringLiteral(" (%1)").arg(qt_text(progress.description).trimmed());
  return QStringLiteral("Waiting for job %1, which is here: %2").arg(job, text);
}

TransferSource transfer_source(platform::SchedulerControl& scheduler, const base::JobValues& job,
                               const jobs::SchedulerFiles& files) {
  return [&, asked = std::string(), told = std::string()]() mutable {
    auto progress = requests::progress_of(scheduler.status().status, job.Name);
    if (!progress || progress->waits_for.empty() || !progress->description.empty()) return progress;
    if (asked != progress->waits_for) {
      asked = progress->waits_for;
      told = jobs::job_from_script(files, asked).description;
    }
    progress->description = told;
    return progress;
  };
}

TransferProgress::TransferProgress(TransferSource source, QWidget* parent)
    : QWidget(parent),
      source_(std::move(source)),
      lblTransfer_(named(new QLabel(this), "lblTransfer", QStringLiteral("Transfer"))),
      barTransfer_(named(new QProgressBar(this), "barTransfer", QStringLiteral("Progress of the transfer"))),
      timer_(new QTimer(this)) {
  lblTransfer_->setTextFormat(Qt::PlainText);
  lblTransfer_->setWordWrap(true);
  lblTransfer_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblTransfer_->setMinimumHeight(lblTransfer_->fontMetrics().lineSpacing() * kLines);
  barTransfer_->setRange(0, kBarSteps);
  keep_room(barTransfer_);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins({});
  all->addWidget(lblTransfer_);
  all->addWidget(barTransfer_);
  timer_->setSingleShot(true);
  connect(timer_, &QTimer::timeout, this, &TransferProgress::look_and_plan);
  show_progress(std::nullopt);
  setVisible(static_cast<bool>(source_));
}

void TransferProgress::set_running(bool running) {
  if (!source_) return;
  show_progress(std::nullopt);
  if (running)
    timer_->start(kRest);
  else
    timer_->stop();
}

void TransferProgress::look_and_plan() {
  QElapsedTimer taken;
  taken.start();
  std::optional<requests::SessionProgress> progress;
  fault_of([&] { progress = source_(); });  // what cannot be asked is not shown
  show_progress(progress);
  timer_->start(std::max(kRest, kRestPerLook * static_cast<int>(taken.elapsed())));
}

void TransferProgress::show_progress(const std::optional<requests::SessionProgress>& progress) {
  lblTransfer_->setText(progress ? progress_text(*progress) : QString());
  const bool measured = progress && progress->bytes_done > 0 && progress->bytes_hinted > 0;
  barTransfer_->setVisible(measured);
  if (!measured) return;
  const double part = static_cast<double>(progress->bytes_done) / static_cast<double>(progress->bytes_hinted);
  barTransfer_->setValue(static_cast<int>(std::min(part, 1.0) * kBarSteps));
}

}  // namespace qvrcom::ui
