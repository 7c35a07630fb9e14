#include "desktop/jobs_page.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/obstacles.h"
#include "desktop/session_stopper.h"
#include "desktop/tables.h"
#include "environment/names.h"
#include "protocol/job_lists.h"
#include "ui/attempt.h"
#include "ui/elements.h"
#include "ui/reading_text.h"

namespace qvrcom::desktop {
namespace {

// A look that takes long is followed by a longer rest, so that the page never uses more than a twentieth of
// the machine, however long the lists are.
constexpr int kRest = 1000;
constexpr int kRestPerLook = 20;

const QString kNoJob = QStringLiteral("choose a job first");
const QString kNotEnded = QStringLiteral("it has not ended yet");
const QString kNoFolder = QStringLiteral("nothing of it is left");

QString scheduler_text(const platform::StatusAnswer& answer) {
  if (answer.reach == platform::Reach::kSilent) return QLatin1String(kSchedulerSilent);
  const auto& status = answer.status;
  if (!status) return QStringLiteral("The scheduler is not running.");
  QString text = QStringLiteral("Scheduler %1 is running (process %2)")
                     .arg(ui::qt_text(status->version))
                     .arg(status->process);
  if (status->running_job.empty()) return text + QStringLiteral(", no session.");
  text += QStringLiteral(": job %1, %2").arg(ui::qt_text(status->running_job), ui::qt_text(status->step));
  return status->bytes_done == 0 ? text : text + QStringLiteral(", ") + ui::byte_count(status->bytes_done);
}

// A line for each list that cannot be read, and one for what the others hold.
QString board_text(const jobs::Board& board) {
  QString text;
  for (const jobs::UnreadList& list : board.unread)
    text += QStringLiteral("The list %1 cannot be read. %2\n")
                .arg(ui::qt_text(list.file), ui::qt_text(ui::sentence_of(list.fault)));
  text += board.jobs.size() == 1 ? QStringLiteral("1 job") : QStringLiteral("%1 jobs").arg(board.jobs.size());
  if (board.problems.empty()) return text;
  const jobs::BoardProblem& first = board.problems.front();
  return text + QStringLiteral("; lines that are no job: %1, the first is line %2 of %3 (%4)")
                    .arg(board.problems.size())
                    .arg(first.line)
                    .arg(ui::qt_text(first.file), ui::qt_text(first.reason));
}

QString unlisted_text(const JobTableModel& model) {
  return model.has_unlisted() ? QStringLiteral(", and one that runs and stands in no list") : QString();
}

QLabel* state_label(const char* object_name, const char* accessible_name, QWidget* parent) {
  auto* label = ui::named(new QLabel(parent), object_name, QLatin1String(accessible_name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

JobsPage::JobsPage(const JobsPageParts& parts, QWidget* parent)
    : QWidget(parent),
      parts_(parts),
      model_(new JobTableModel(this)),
      sorted_(new ValueSort(model_, this)),
      table_(ui::named(new QTableView(this), "tblJobs", QStringLiteral("Jobs"))),
      lblScheduler_(state_label("lblScheduler", "State of the scheduler", this)),
      lblJobsState_(state_label("lblJobsState", "State of the job lists", this)),
      lblObstacles_(state_label("lblJobObstacles", "What cannot be done with the job", this)),
      timer_(new QTimer(this)) {
  setObjectName(QStringLiteral("jobsPage"));
  lay_out();
  timer_->setSingleShot(true);
  connect(timer_, &QTimer::timeout, this, &JobsPage::look_and_plan);
  connect(table_, &QTableView::activated, this, &JobsPage::open_log);
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &JobsPage::show_buttons);
  connect(sorted_, &QAbstractItemModel::modelReset, this, &JobsPage::show_buttons);
  connect(model_, &QAbstractItemModel::dataChanged, this, &JobsPage::show_buttons);
  show_buttons();
}

void JobsPage::lay_out() {
  prepare_row_table(*table_, *sorted_);
  table_->verticalHeader()->hide();
  auto* all = new QVBoxLayout(this);
  all->addWidget(lblScheduler_);
  all->addWidget(ui::label_for(table_, "lblJobs", QStringLiteral("Jo&bs of the scheduler:"), this));
  all->addWidget(table_, 1);
  all->addWidget(lblJobsState_);
  all->addWidget(lblObstacles_);
  all->addWidget(make_buttons());
}

QWidget* JobsPage::make_buttons() {
  static constexpr StripButton<JobsPage> kRows[] = {
      {&JobsPage::cmdStopJob_, "cmdStopJob", "&Stop Job...", &JobsPage::stop_job},
      {&JobsPage::cmdProcess_, "cmdProcessJob", "Pro&cess", &JobsPage::process_job},
      {&JobsPage::cmdRemove_, "cmdRemoveJob", "Remo&ve...", &JobsPage::remove_job},
      {&JobsPage::cmdOpenLog_, "cmdOpenJobLog", "Open &Log", &JobsPage::open_log},
      {&JobsPage::cmdStart_, "cmdStartScheduler", "St&art Scheduler", &JobsPage::start_scheduler},
      {&JobsPage::cmdStop_, "cmdStopScheduler", "Sto&p Scheduler...", &JobsPage::stop_scheduler},
      {&JobsPage::cmdRefresh_, "cmdRefreshJobs", "&Refresh", &JobsPage::refresh},
  };
  return button_strip(this, kRows, 4);
}

void JobsPage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  look_and_plan();
}

void JobsPage::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  timer_->stop();
}

void JobsPage::look_and_plan() {
  QElapsedTimer taken;
  taken.start();
  look();
  timer_->start(std::max(kRest, kRestPerLook * static_cast<int>(taken.elapsed())));
}

void JobsPage::refresh() {
  watch_.forget();
  look_and_plan();
}

void JobsPage::look() {
  const auto fault = base::fault_of([this] {
    const std::string job = selected() == nullptr ? std::string() : selected()->job;
    const std::size_t rows = model_->jobs().size();
    status_ = parts_.scheduler.status();
    const bool changed = watch_.changed(watched_files());
    if (changed) read_board();
    show_status();
    if (changed) select(job);
    if (changed || model_->jobs().size() != rows) fit_columns(rows == 0);
    lblJobsState_->setText(board_text_ + unlisted_text(*model_));
  });
  if (!fault) return;
  watch_.forget();
  lblJobsState_->setText(QStringLiteral("The job lists cannot be read. ") +
                         ui::qt_text(ui::sentence_of(*fault)));
}

// Later on columns only grow: their widths are the user's.
void JobsPage::fit_columns(bool first) {
  first ? table_->resizeColumnsToContents() : widen_columns(*table_);
}

QStringList JobsPage::watched_files() const {
  QStringList paths{ui::qt_text(parts_.files.native(parts_.scheduler_files.folder()))};
  for (const char* name : protocol::kJobLists)
    paths += ui::qt_text(parts_.files.native(parts_.scheduler_files.path(name)));
  return paths;
}

void JobsPage::read_board() {
  jobs::Board board = parts_.board.read();
  if (!board.unread.empty()) watch_.forget();  // rights may come back without a trace in the file
  for (const std::string& name : board.abandoned) {
    if (status_.status && status_.status->running_job == name) continue;
    board.jobs.push_back(jobs::job_from_script(parts_.scheduler_files, name));
    board.jobs.back().has_folder = true;
  }
  board_text_ = board_text(board);
  model_->show(std::move(board));
}

void JobsPage::show_status() {
  QString text = scheduler_text(status_);
  const std::string said = parts_.programs.said();
  if (status_.reach == platform::Reach::kNotRunning && !said.empty())
    text += QStringLiteral(" When it was started, it said: ") + ui::qt_text(said);
  lblScheduler_->setText(text);
  model_->show_unlisted(unlisted_job());
  model_->show_status(status_.status);
  show_buttons();
}

// A session that was left goes on without its index line; what it does stands in its script.
std::optional<jobs::BoardJob> JobsPage::unlisted_job() const {
  const std::string name = status_.status ? status_.status->running_job : std::string();
  if (name.empty() || model_->lists(name)) return std::nullopt;
  for (const jobs::BoardJob& shown : model_->jobs())
    if (shown.job == name) return shown;
  jobs::BoardJob job;
  if (base::fault_of([&] { job = jobs::job_from_script(parts_.scheduler_files, name); })) job.job = name;
  return job;
}

void JobsPage::show_buttons() {
  const jobs::BoardJob* job = selected();
  const auto reason = [&](QString (JobsPage::*obstacle)(const jobs::BoardJob&) const) {
    return job == nullptr ? kNoJob : (this->*obstacle)(*job);
  };
  show_obstacles(*lblObstacles_, {{cmdStopJob_, reason(&JobsPage::stop_obstacle)},
                                  {cmdProcess_, reason(&JobsPage::process_obstacle)},
                                  {cmdRemove_, reason(&JobsPage::remove_obstacle)},
                                  {cmdOpenLog_, job == nullptr ? kNoJob : QString()}});
  cmdStart_->setEnabled(status_.reach == platform::Reach::kNotRunning);
  cmdStop_->setEnabled(status_.reach != platform::Reach::kNotRunning);
}

QString JobsPage::stop_obstacle(const jobs::BoardJob& job) const {
  if (model_->stoppable(job)) return {};
  return status_.status ? QStringLiteral("it neither runs nor waits")
                        : QStringLiteral("no scheduler answers that could stop it");
}

QString JobsPage::process_obstacle(const jobs::BoardJob& job) const {
  if (!model_->has_ended(job)) return kNotEnded;
  if (!job.has_folder) return kNoFolder;
  return job.ending() ? QString() : QStringLiteral("no list tells how it ended");
}

QString JobsPage::remove_obstacle(const jobs::BoardJob& job) const {
  if (!job.doubt.empty()) return QStringLiteral("mend the damaged line first: ") + ui::qt_text(job.doubt);
  if (!model_->has_ended(job)) return kNotEnded;
  return job.has_folder ? QString() : kNoFolder;
}

const jobs::BoardJob* JobsPage::selected() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  if (rows.isEmpty()) return nullptr;
  return &model_->jobs()[static_cast<std::size_t>(sorted_->mapToSource(rows.constFirst()).row())];
}

void JobsPage::select(const std::string& job_name) {
  const auto& jobs = model_->jobs();
  const auto found =
      std::find_if(jobs.begin(), jobs.end(), [&](const auto& job) { return job.job == job_name; });
  if (found == jobs.end()) return;
  const int row = static_cast<int>(found - jobs.begin());
  table_->selectRow(sorted_->mapFromSource(model_->index(row, 0)).row());
}

void JobsPage::stop_job() {
  if (selected() == nullptr) return;
  const std::string job = selected()->job;
  if (!ui::agreed(parts_.ui, "Stop job " + job + "? It is listed as cancelled.", "Stop Job")) return;
  desktop::stop_job(parts_.ui, parts_.scheduler, job);
  refresh();
}

void JobsPage::process_job() {
  if (selected() == nullptr) return;
  parts_.process(jobs::BoardJob(*selected()));
  refresh();
}

void JobsPage::remove_job() {
  if (selected() == nullptr) return;
  const std::string job = selected()->job;
  if (!ui::agreed(parts_.ui, "Remove the folder of job " + job + " with what it has fetched?",
                  "Remove Folder",
                  "Files that the device was told to delete are copied to the folder \"Rescued\" first."))
    return;
  parts_.remove(job);
  refresh();
}

void JobsPage::start_scheduler() {
  ui::attempt(parts_.ui, "The scheduler cannot be started.", [&] {
    const std::string path = parts_.folders.GetAppPath() + environment::kJobPilotProgram;
    const std::string reason = parts_.programs.start_hidden(path);
    if (!reason.empty()) throw base::Fault(reason, parts_.files.native(path));
    lblScheduler_->setText(QStringLiteral("The scheduler is being started."));
  });
}

void JobsPage::stop_scheduler() {
  if (!ui::agreed(parts_.ui, "Stop the scheduler? A session that runs is cancelled.", "Stop Scheduler"))
    return;
  ui::attempt(parts_.ui, "The scheduler cannot be stopped.", [&] {
    if (parts_.scheduler.stop() == platform::Reach::kSilent) throw base::Fault(kSchedulerSilent);
  });
  refresh();
}

void JobsPage::open_log() {
  if (selected() != nullptr) parts_.logs.show(selected()->job, this);
}

}  // namespace qvrcom::desktop
