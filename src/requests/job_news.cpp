#include "requests/job_news.h"

#include <array>

#include "base/fault.h"

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
                                               const LateResultsRequest& late, const std::string& advice) {
  std::vector<platform::Message> told;
  const auto fault = base::fault_of([&] {
    const jobs::Board read = board.read(jobs::JobBoard::Extent::kFolders);
    for (const jobs::UnreadList& list : read.unread)
      told.push_back(message_of(list));
    if (!told.empty()) return;
    upkeep.forget_access_codes(read);
    const std::string sentence = late.notice(read);
    if (!sentence.empty()) told.push_back(news(sentence, advice, platform::Icon::kInformation));
  });
  if (fault)
    told.push_back(news("The jobs cannot be looked through: " + fault->description() + ".", fault->detail(),
                        platform::Icon::kWarning));
  return told;
}

}  // namespace qvrcom::requests
