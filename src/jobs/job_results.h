#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/session_values.h"
#include "jobs/file_helpers.h"
#include "jobs/job_index.h"
#include "jobs/scheduler_files.h"
#include "platform/files.h"
#include "platform/trap.h"
#include "platform/user_interface.h"

namespace qvrcom::jobs {

// What to do with a kind of downloaded file. The first row of a table that recognises a file gets it.
struct DownloadDecoder {
  bool (*recognises)(std::string_view local_path);
  std::function<void(const std::string& local_path)> decode;
};
using DownloadDecoders = std::vector<DownloadDecoder>;

// How downloads are told apart, by their local path.
bool is_message_index(std::string_view local_path);
bool is_message(std::string_view local_path);  // name ends in two digits of a partition, "M", three digits
bool is_configuration_image(std::string_view local_path);

// The two characters of a message file's name that are its partition.
std::string partition_of_message(std::string_view local_path);

// Takes over what the scheduler has finished: result lists to pending lists, the finished job's downloads to
// their decoders, its folder away. docs/formats/result-lists.md
class JobResults {
 public:
  JobResults(const base::JobValues& job, const SchedulerFiles& scheduler, JobIndex& index,
             FileHelpers& helpers, platform::Files& files, platform::UserInterface& ui,
             const DownloadDecoders& decoders)
      : job_(job),
        scheduler_(scheduler),
        index_(index),
        helpers_(helpers),
        files_(files),
        ui_(ui),
        decoders_(decoders),
        trap_(ui) {}

  // Move_Sch_Lines for each of the three pairs of lists.
  void Copy_Items_From_Scheduler_to_BeProcessed();

  // Adds the lines of `source` that `target` does not hold yet (blanks at a line's ends ignored) to `target`,
  // sorts it, and removes every line of `source` from "index.sch". `source` stays; a missing list is empty.
  void Move_Sch_Lines(const std::string& source, const std::string& target);

  // Process_Script for each completed line that is the current job's.
  void Process_CompletedSch_File();

  // `script_name` is the job's name and ".scr".
  void Process_Script(const std::string& script_name);

  // Walks the script lines that Process_Script read and hands each download to its decoder; one that is not
  // in the job's folder is entered in `MissingDownloads` instead.
  void Parse_Script();

  // "FTPGET", "FTPPUT" or "FTPACCT", the first of them that stands anywhere in the line; otherwise "".
  std::string Command(const std::string& line);

  // The local path of a transfer line.
  std::string LocalFile(const std::string& line);

  // Deletes the current job's folder with its files and takes the job off "index.sch". A folder that is gone
  // already is no error; one that holds a folder is.
  void Remove_Folder();

  // Adds every line of the list but the given one (letter case ignored) and empty ones to `collected`, each
  // with its line end; a missing list is empty. The caller writes it back with ReWrite_File.
  void RemoveJobFromList(const std::string& list_file, const std::string& current, std::string& collected);

  std::vector<std::string> ScriptLines;       // without their ";" and line end
  std::string ReceivedPartition;              // partition of the message file that was met last
  std::vector<std::string> MissingDownloads;  // local paths, of the script that was parsed last

 private:
  std::size_t end_of_header() const;
  void need_header_line(std::size_t item, const std::string& key) const;
  void take_download(const std::string& local_path);
  std::string current_job() const;

  const base::JobValues& job_;
  const SchedulerFiles& scheduler_;
  JobIndex& index_;
  FileHelpers& helpers_;
  platform::Files& files_;
  platform::UserInterface& ui_;
  const DownloadDecoders& decoders_;
  platform::Trap trap_;
};

}  // namespace qvrcom::jobs
