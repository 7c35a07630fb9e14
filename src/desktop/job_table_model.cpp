#include "desktop/job_table_model.h"

#include <QDateTime>
#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>
#include <string_view>

#include "desktop/tables.h"
#include "protocol/job_lists.h"
#include "sitebook/site_record.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {
namespace {

bool stands_in(const jobs::BoardJob& job, std::string_view list) {
  return std::find(job.lists.begin(), job.lists.end(), list) != job.lists.end();
}

// Of `count` lists from the `first` on, those that hold the job.
QString lists_among(const jobs::BoardJob& job, std::size_t first, std::size_t count) {
  QString found;
  for (const char* list : std::span(protocol::kJobLists).subspan(first, count)) {
    if (!stands_in(job, list)) continue;
    if (!found.isEmpty()) found += QStringLiteral(", ");
    found += QLatin1String(list);
  }
  return found;
}

struct Column {
  const char* heading;
  QString (*text)(const JobTableModel& model, const jobs::BoardJob& job);
  QVariant (*value)(const jobs::BoardJob& job) = nullptr;  // what it is sorted by; nothing: its text
};

using Model = JobTableModel;
using Job = jobs::BoardJob;

constexpr Column kColumns[] = {
    {"Job", [](const Model&, const Job& job) { return ui::qt_text(job.job); },
     [](const Job& job) { return name_value(ui::qt_text(job.job)); }},
    {"State", [](const Model& model, const Job& job) { return model.state_of(job); }},
    {"Operation", [](const Model&, const Job& job) { return ui::qt_text(job.description); }},
    {"Site", [](const Model&,
                const Job& job) { return ui::qt_text(sitebook::title_of(job.site_name, job.site_id)); }},
    {"Start",
     [](const Model&, const Job& job) { return job.start ? ui::moment_text(*job.start) : QString(); },
     [](const Job& job) { return job.start ? QVariant(ui::qt_moment(*job.start)) : QVariant(); }},
    {"Index", [](const Model&, const Job& job) { return lists_among(job, 0, 2); }},
    {"Results", [](const Model&, const Job& job) { return lists_among(job, 2, 3); }},
    {"Pending", [](const Model&, const Job& job) { return lists_among(job, 5, 3); }},
};

QString live_state(protocol::JobState state) {
  switch (state) {
    case protocol::JobState::kWaiting:
      return QStringLiteral("Waiting");
    case protocol::JobState::kRunning:
      return QStringLiteral("Running");
    case protocol::JobState::kLeftAlone:
      return QStringLiteral("Left alone");
    case protocol::JobState::kFinished:
      return QStringLiteral("Finished");
    case protocol::JobState::kUnlisted:
      return QStringLiteral("Finished, not listed yet");
    case protocol::JobState::kDamaged:
      break;
  }
  return QStringLiteral("Damaged");
}

const jobs::BoardJob& at(const std::vector<jobs::BoardJob>& jobs, int row) {
  return jobs[static_cast<std::size_t>(row)];
}

}  // namespace

QString JobTableModel::state_of(const jobs::BoardJob& job) const {
  const auto live = states_.find(job.job);
  if (live != states_.end() && live->second == protocol::JobState::kRunning) return live_state(live->second);
  const auto ending = job.ending();
  if (ending && !job.lists.empty()) return QLatin1String(protocol::result_list(*ending).status);
  if (live != states_.end() && job.doubt.empty()) return live_state(live->second);
  if (!job.doubt.empty()) return QStringLiteral("In a damaged line");
  if (job.lists.empty()) return QStringLiteral("Left behind");
  return stands_in(job, protocol::kIndexFile) ? QStringLiteral("Waiting")
                                              : QStringLiteral("To be rescheduled");
}

bool JobTableModel::has_ended(const jobs::BoardJob& job) const {
  return !stoppable(job) && (job.lists.empty() || job.ending());
}

bool JobTableModel::stoppable(const jobs::BoardJob& job) const {
  const auto live = states_.find(job.job);
  return live != states_.end() &&
         (live->second == protocol::JobState::kRunning || live->second == protocol::JobState::kWaiting);
}

void JobTableModel::show(jobs::Board board) {
  beginResetModel();
  jobs_ = std::move(board.jobs);
  listed_ = jobs_.size();
  endResetModel();
}

bool JobTableModel::lists(const std::string& job_name) const {
  const auto end = jobs_.begin() + static_cast<std::ptrdiff_t>(listed_);
  return std::any_of(jobs_.begin(), end, [&](const auto& job) { return job.job == job_name; });
}

void JobTableModel::show_unlisted(const std::optional<jobs::BoardJob>& job) {
  const int row = static_cast<int>(listed_);
  if (has_unlisted() ? job && jobs_.back().job == job->job : !job) return;
  if (has_unlisted()) {
    beginRemoveRows({}, row, row);
    jobs_.pop_back();
    endRemoveRows();
  }
  if (!job) return;
  beginInsertRows({}, row, row);
  jobs_.push_back(*job);
  endInsertRows();
}

void JobTableModel::show_status(const std::optional<protocol::SchedulerStatus>& status) {
  std::unordered_map<std::string, protocol::JobState> states;
  if (status) {
    for (const protocol::ScheduledJob& job : status->jobs)
      states.emplace(job.name, job.state);
    if (!status->running_job.empty()) states[status->running_job] = protocol::JobState::kRunning;
  }
  if (states == states_) return;
  states_ = std::move(states);
  if (!jobs_.empty()) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int JobTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(jobs_.size());
}

int JobTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(std::size(kColumns));
}

QVariant JobTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != kSortRole)) return {};
  const Column& column = kColumns[index.column()];
  const jobs::BoardJob& job = at(jobs_, index.row());
  if (role == kSortRole && column.value != nullptr) return column.value(job);
  return column.text(*this, job);
}

QVariant JobTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Horizontal) return QLatin1String(kColumns[section].heading);
  return section + 1;
}

}  // namespace qvrcom::desktop
