#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "protocol/job_lists.h"

// What a scheduler has done for a job, step by step, beside the job's script: docs/formats/report.md. Another
// maker's scheduler may write none.
namespace qvrcom::protocol {

enum class ReportWord {
  kFetched,   // the local file is whole and on the disk
  kStoring,   // the device is about to be sent a file
  kStored,    // and has acknowledged it
  kDeleting,  // the device is about to be asked to delete a file
  kDeleted,   // and has acknowledged it
  kFailed,    // this step was refused or failed; the rest of the account's lines was left out
  kEnded,     // the session is over
  kTaken,     // written by the library: what came of the account's files is on the disk
  kTaking,    // likewise: it is about to be put there
};

struct ReportLine {
  ReportWord word = ReportWord::kFetched;
  std::string account;  // "part3"; "" before the first account line
  std::string remote;   // name of the device file; "" when it is about none
  std::string local;    // kFetched, kStoring, kStored: name in the job's folder
  std::string text;     // kFailed: the reason, with the device's reply; kEnded: a result list's report_word

  bool operator==(const ReportLine&) const = default;
};

// Without its line end. What would break the line is written as blank or comma.
std::string report_line_text(const ReportLine& line);

// The first line of every report.
std::string report_head();

struct JobReport {
  std::vector<ReportLine> lines;

  // Whether the device was asked to delete, or to delete or store, something: also when no answer came.
  bool has_deleted() const;
  bool has_changed() const;

  // How the session ended; nothing when it was cut off.
  std::optional<Ending> ending() const;

  // What has come of the account's files already; "" when nothing has.
  std::string taken(std::string_view account) const;
  // What was about to come of them, each time; whether it has nobody noted.
  std::vector<std::string> begun(std::string_view account) const;
  // What has come of any account's files.
  std::vector<std::string> results() const;
};

inline constexpr std::size_t kReportLimit = 4U << 20U;  // bytes

// Nothing when the text is no report. A last line without its end and lines that are none are passed over.
std::optional<JobReport> read_report(std::string_view text);

// Of the job whose folder this is (no backslash at its end).
std::string report_path(const std::string& job_folder);

}  // namespace qvrcom::protocol
