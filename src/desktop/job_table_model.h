#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <unordered_map>
#include <vector>

#include "jobs/job_board.h"
#include "platform/scheduler_control.h"

namespace qvrcom::desktop {

// The jobs of the scheduler folder: a row a job, the lists that it stands in side by side. A job that runs
// and stands in no list has the last row.
class JobTableModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  void show(jobs::Board board);

  // Whether any list holds this job.
  bool lists(const std::string& job_name) const;

  // The job that runs and that no list holds; nothing when there is none.
  void show_unlisted(const std::optional<jobs::BoardJob>& job);
  bool has_unlisted() const { return jobs_.size() > listed_; }

  // What the running scheduler says about the jobs of its index; nothing when none runs.
  void show_status(const std::optional<protocol::SchedulerStatus>& status);

  const std::vector<jobs::BoardJob>& jobs() const { return jobs_; }
  QString state_of(const jobs::BoardJob& job) const;

  // Whether nothing more comes of the job by itself: it has ended, or no list holds it.
  bool has_ended(const jobs::BoardJob& job) const;

  // Whether the job can still be stopped: it runs, or it waits for its turn.
  bool stoppable(const jobs::BoardJob& job) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<jobs::BoardJob> jobs_;
  std::size_t listed_ = 0;                                      // jobs behind those stand in no list
  std::unordered_map<std::string, protocol::JobState> states_;  // by job name
};

}  // namespace qvrcom::desktop
