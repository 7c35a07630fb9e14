#include "jobs/job_results.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

#include "base/fault.h"
#include "base/text.h"
#include "jobs/sorted_lines.h"
#include "protocol/job_lists.h"
#include "protocol/job_name.h"
#include "protocol/script_grammar.h"

namespace qvrcom::jobs {
namespace {

std::string_view right(std::string_view text, std::size_t count) {
  return text.substr(text.size() - std::min(count, text.size()));
}

bool contains(std::string_view text, std::string_view word) {
  return text.find(word) != std::string_view::npos;
}

base::Fault bad_name(const std::string& name) {
  return base::Fault("Bad file name", "\"" + name + "\" names no job folder. Nothing was deleted or read.");
}

}  // namespace

bool is_message_index(std::string_view local_path) {
  return contains(local_path, "msgindex");
}
bool is_message(std::string_view local_path) {
  return right(local_path, 4).starts_with('M');
}
bool is_configuration_image(std::string_view local_path) {
  return contains(local_path, "getdBase");
}

std::string partition_of_message(std::string_view local_path) {
  return std::string(right(right(local_path, 7).substr(0, 3), 2));
}

void JobResults::Copy_Items_From_Scheduler_to_BeProcessed() {
  trap_("Copy_Items_From_Scheduler_to_BeProcessed", [&] {
    for (const protocol::ResultList& list : protocol::kResultLists)
      Move_Sch_Lines(list.file, list.pending_file);
  });
}

void JobResults::Move_Sch_Lines(const std::string& source, const std::string& target) {
  const std::string source_text = scheduler_.read_or_empty(source);
  const auto lines = base::lines_of(source_text);
  if (lines.empty()) return;

  const std::string target_text = scheduler_.read_or_empty(target);
  std::unordered_set<std::string_view> known;
  for (const std::string_view line : base::lines_of(target_text))
    known.insert(base::trim(line));
  SortedLines merged(target_text);
  bool added = false;
  for (const std::string_view line : lines) {
    if (base::trim(line).empty() || !known.insert(base::trim(line)).second) continue;
    if (std::exchange(added, true)) merged.settle();
    merged.add(std::string(line));
  }
  // The pending list is safe on disk before the index forgets the job.
  if (added) scheduler_.replace(target, merged.text().append(base::kCrLf));
  index_.remove_index_lines({lines.begin(), lines.end()});
}

void JobResults::Process_CompletedSch_File() {
  trap_("Process_CompletedSch_File", [&] {
    std::vector<std::string> lines;
    bool found = false;
    index_.Read_Lines(protocol::result_list(protocol::Ending::kCompleted).pending_file, lines, found);
    for (const std::string& line : lines) {
      if (line != job_.JobId) continue;
      Process_Script(JobIndex::Get_Folder(line).append(protocol::kScriptExtension));
    }
  });
}

void JobResults::Process_Script(const std::string& script_name) {
  trap_("Process_Script", [&] {
    ScriptLines.clear();
    const std::string job = script_name.substr(
        0, script_name.size() - std::min(script_name.size(), protocol::kScriptExtension.size()));
    if (!protocol::is_job_name(job)) throw bad_name(job);
    const std::string path = scheduler_.path(job) + "\\" + script_name;
    if (files_.length(path) > protocol::kScriptLimit) {
      throw base::Fault("File too large", files_.native(path) + " is larger than a script can be.");
    }
    const std::string text = files_.read(path);
    const auto pieces = base::split(text, ";\r\n");
    ScriptLines.assign(pieces.begin(), pieces.end());
    Parse_Script();
  });
}

void JobResults::Parse_Script() {
  trap_("Parse_Script", [&] {
    MissingDownloads.clear();
    const std::size_t commands = end_of_header();
    ui_.pump_events();
    for (std::size_t item = commands; item < ScriptLines.size(); ++item) {
      if (Command(ScriptLines[item]) == "FTPGET") take_download(LocalFile(ScriptLines[item]));
    }
  });
}

// Nobody needs the header's values here, but its lines have to be there.
std::size_t JobResults::end_of_header() const {
  std::size_t item = 0;
  for (const std::string_view key : protocol::kJobKeys) {
    // The description may be anything.
    need_header_line(item, item == protocol::kDescriptionKey ? "" : std::string(key));
    ++item;
  }
  if (item < ScriptLines.size() && ScriptLines[item].starts_with(protocol::kDialUpKey)) ++item;
  for (const std::string_view key : protocol::kAccessKeys)
    need_header_line(item++, std::string(key));
  return item;
}

void JobResults::need_header_line(std::size_t item, const std::string& key) const {
  if (item < ScriptLines.size() && ScriptLines[item].starts_with(key)) return;
  throw base::Fault(base::kSubscriptOutOfRange,
                    "The job's script has no " + (key.empty() ? "description" : key) + " in line " +
                        std::to_string(item + 1) + ". The downloaded files stay in the job's folder.");
}

void JobResults::take_download(const std::string& local_path) {
  if (!files_.file_exists(local_path)) return MissingDownloads.push_back(local_path);
  const auto decoder = std::find_if(decoders_.begin(), decoders_.end(),
                                    [&](const DownloadDecoder& each) { return each.recognises(local_path); });
  if (decoder != decoders_.end()) decoder->decode(local_path);
}

std::string JobResults::Command(const std::string& line) {
  for (const char* word : {"FTPGET", "FTPPUT", "FTPACCT"}) {
    if (contains(line, word)) return word;
  }
  return {};
}

std::string JobResults::LocalFile(const std::string& line) {
  return trap_("LocalFile", [&]() -> std::string {
    constexpr std::string_view kKey = protocol::kLocalFileKey;
    const auto fields = base::split(line, ";");
    if (fields.size() < 3 || fields[2].size() < kKey.size()) {
      throw base::Fault(base::kSubscriptOutOfRange, "\"" + line + "\" names no local file.");
    }
    return std::string(fields[2].substr(kKey.size()));
  });
}

void JobResults::Remove_Folder() {
  trap_("Remove_Folder", [&] {
    if (job_.JobId.empty()) return;
    const std::string job = current_job();
    if (helpers_.ExistedFolder(scheduler_.folder(), job)) delete_job_folder(files_, scheduler_.path(job));
    index_.Remove_Index_Line(protocol::kIndexFile, job_.JobId);
  });
}

// The job's name as the identifier ends with it: "...\NAME.scr;".
std::string JobResults::current_job() const {
  const std::string& id = job_.JobId;
  const std::size_t length = protocol::job_name(job_.SessionStart, job_.Suffix).size();
  const std::size_t behind = protocol::kScriptExtension.size() + 1;
  if (id.size() < length + behind) throw bad_name(id);
  std::string name = id.substr(id.size() - length - behind, length);
  if (!protocol::is_job_name(name)) throw bad_name(name);
  return name;
}

void JobResults::RemoveJobFromList(const std::string& list_file, const std::string& current,
                                   std::string& collected) {
  const std::string text = scheduler_.read_or_empty(list_file);
  for (const std::string_view line : base::lines_of(text)) {
    if (line.empty() || base::equals_ignoring_case(line, current)) continue;
    collected.append(line).append(base::kCrLf);
  }
}

}  // namespace qvrcom::jobs
