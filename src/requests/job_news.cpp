#include "requests/job_news.h"

#include "base/fault.h"

namespace qvrcom::requests {
namespace {

platform::Message news(const std::string& text, const std::string& detail, platform::Icon icon) {
  return {.text = text, .title = platform::kSuiteTitle, .icon = icon, .detail = detail};
}

}  // namespace

platform::Message message_of(const jobs::UnreadList& list) {
  return news("The list " + list.file + " cannot be read: " + list.fault.description() + ".",
              list.fault.detail(), platform::Icon::kWarning);
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
