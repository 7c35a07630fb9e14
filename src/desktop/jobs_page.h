#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "desktop/job_table_model.h"
#include "desktop/list_watch.h"
#include "desktop/session_logs.h"
#include "environment/files_and_folders.h"
#include "jobs/job_board.h"
#include "jobs/scheduler_files.h"
#include "platform/files.h"
#include "platform/programs.h"
#include "platform/scheduler_control.h"
#include "platform/user_interface.h"

class QLabel;
class QPushButton;
class QTableView;
class QTimer;

namespace qvrcom::desktop {

class ValueSort;

struct JobsPageParts {
  const jobs::JobBoard& board;
  const jobs::SchedulerFiles& scheduler_files;
  platform::SchedulerControl& scheduler;
  platform::Programs& programs;
  const platform::Files& files;
  const environment::FilesAndFolders& folders;
  platform::UserInterface& ui;
  const SessionLogs& logs;
  // Takes over what a finished job has fetched, and removes what a job has left; each says itself what came
  // of it.
  std::function<void(const jobs::BoardJob& job)> process;
  std::function<void(const std::string& job)> remove;
};

// What the scheduler has to do, does and has done. While it is in sight the page follows the lists of the
// scheduler folder and asks the running scheduler.
class JobsPage : public QWidget {
 public:
  explicit JobsPage(const JobsPageParts& parts, QWidget* parent = nullptr);

  // Reads what has changed since the last look.
  void look();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void lay_out();
  QWidget* make_buttons();
  void look_and_plan();
  void refresh();
  void read_board();
  void fit_columns(bool first);
  void show_status();
  std::optional<jobs::BoardJob> unlisted_job() const;
  void show_buttons();
  QString stop_obstacle(const jobs::BoardJob& job) const;
  QString process_obstacle(const jobs::BoardJob& job) const;
  QString remove_obstacle(const jobs::BoardJob& job) const;
  QStringList watched_files() const;
  const jobs::BoardJob* selected() const;
  void select(const std::string& job_name);
  void stop_job();
  void process_job();
  void remove_job();
  void start_scheduler();
  void stop_scheduler();
  void open_log();

  JobsPageParts parts_;
  JobTableModel* model_;
  ValueSort* sorted_;
  QTableView* table_;
  QLabel* lblScheduler_;
  QLabel* lblJobsState_;
  QLabel* lblObstacles_;  // why a job's buttons cannot be pressed
  QPushButton* cmdStopJob_ = nullptr;
  QPushButton* cmdProcess_ = nullptr;
  QPushButton* cmdRemove_ = nullptr;
  QPushButton* cmdOpenLog_ = nullptr;
  QPushButton* cmdStart_ = nullptr;
  QPushButton* cmdStop_ = nullptr;
  QPushButton* cmdRefresh_ = nullptr;
  QTimer* timer_;
  ListWatch watch_;
  QString board_text_;
  platform::StatusAnswer status_;
};

}  // namespace qvrcom::desktop
