#include "requests/job_news.h"

#include <algorithm>
#include <array>

#include "base/fault.h"
#include "sitebook/site_record.h"

namespace qvrcom::requests {
namespace {

// By JobUpkeep::Removal::Outcome.
constexpr std::array<const char*, 6> kRemovalWords{
    ": it is not removed.",
    ": its folder is removed.",
    ": it had no folder any more; its line is dropped.",
    ": there is no such job.",
    ": it waits or runs; \"qvrcomctl jobs stop\" ends it.",
    ": it is kept, for a damaged line of a job list names it. See \"qvrcomctl jobs list\"; mend or delete "
    "that line first.",
};

platform::Message news(const std::string& text, const std::string& detail, platform::Icon icon) {
  return {.text = text, .title = platform::kSuiteTitle, .icon = icon, .detail = detail};
}

// "Nov1526120000000 (Get Log File, Office1 - 101); ...": with what they do, to a site that the user may not
// have in mind.
std::string names_of(const std::vector<jobs::BoardJob>& jobs) {
  constexpr std::size_t kMostNamed = 5;
  std::string names;
  for (std::size_t i = 0; i < std::min(jobs.size(), kMostNamed); ++i)
    names += (i == 0 ? "" : "; ") + jobs[i].job + " (" + jobs[i].description + ", " +
             sitebook::title_of(jobs[i].site_name, jobs[i].site_id) + ")";
  return names + (jobs.size() > kMostNamed ? "; ..." : ".");
}

platform::Message news_of_cut_off(const std::vector<jobs::BoardJob>& jobs, const std::string& advice) {
  return news("Cut off after the device had been changed, and not run again: " + names_of(jobs),
              "What was fetched is kept. JobPilot lists such jobs as errors when it starts. " + advice,
              platform::Icon::kWarning);
}

platform::Message news_of_waiting(const std::vector<jobs::BoardJob>& jobs, const std::string& advice) {
  const bool is_one = jobs.size() == 1;
  return news(
      (is_one ? std::string("A job waits in the job index, and nobody waits for it: ")
              : std::to_string(jobs.size()) + " jobs wait in the job index, and nobody waits for them: ") +
          names_of(jobs),
      std::string("The next session runs ") + (is_one ? "it" : "them") + ", whatever its own site. " + advice,
      platform::Icon::kWarning);
}

}  // namespace

platform::Message message_of(const jobs::UnreadList& list) {
  return news("The list " + list.file + " cannot be read: " + list.fault.description() + ".",
              list.fault.detail(), platform::Icon::kWarning);
}

const char* words_of(JobUpkeep::Removal::Outcome outcome) {
  return kRemovalWords[outcome];
}

bool is_removed(JobUpkeep::Removal::Outcome outcome) {
  return outcome == JobUpkeep::Removal::kRemoved || outcome == JobUpkeep::Removal::kLinesDropped;
}

std::vector<platform::Message> look_after_jobs(const jobs::JobBoard& board, JobUpkeep& upkeep,
                                               const LateResultsRequest& late, const JobAdvice& advice) {
  std::vector<platform::Message> told;
  const auto fault = base::fault_of([&] {
    const jobs::Board read = board.read(jobs::JobBoard::Extent::kFolders);
    for (const jobs::UnreadList& list : read.unread)
      told.push_back(message_of(list));
    if (!told.empty()) return;
    upkeep.forget_access_codes(read);
    const std::string sentence = late.notice(read);
    if (!sentence.empty()) told.push_back(news(sentence, advice.finished, platform::Icon::kInformation));
    const std::vector<jobs::BoardJob> cut_off = upkeep.cut_off(read);
    if (!cut_off.empty()) told.push_back(news_of_cut_off(cut_off, advice.finished));
    const std::vector<jobs::BoardJob> waiting = upkeep.left_waiting(read);
    if (!waiting.empty()) told.push_back(news_of_waiting(waiting, advice.waiting));
  });
  if (fault)
    told.push_back(news("The jobs cannot be looked through: " + fault->description() + ".", fault->detail(),
                        platform::Icon::kWarning));
  return told;
}

}  // namespace qvrcom::requests
