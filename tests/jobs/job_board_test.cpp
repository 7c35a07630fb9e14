#include "jobs/job_board.h"

#include <gmock/gmock.h>

#include "base/text.h"
#include "jobs/job_parts.h"

namespace qvrcom::jobs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(JobBoard, ShowsEachJobWithItsLists) {
  const std::string done = "46341.5;15/11/2026 12:00:00^Retrieve^Main^A1^46341.5^^^17^;S:\\Nov1\\Nov1.scr;";
  const std::string waiting = "46342;16/11/2026 00:00:00^Reset^Hall^B2^1e9^2^Days^18^;S:\\Nov2\\Nov2.scr;";
  JobParts parts;
  parts.file("index.sch") =
      waiting + "\r\n\r\nbroken;S:\\Nov4\\Nov4.scr;" + waiting + "\r\n" + waiting + "\r\n";
  parts.file("completed.sch") = done + "\r\n";
  parts.file("CompletedToProcess.sch") = base::to_lower(done) + "\r\n";
  for (const char* folder : {"S:\\Nov1", "S:\\Nov3", "S:\\Nov4", "S:\\not a job"})
    parts.files.make_folders(folder);
  const Board board = JobBoard(parts.scheduler).read();
  ASSERT_EQ(board.jobs.size(), 2U);
  EXPECT_EQ(board.jobs[0].job, "Nov2");
  EXPECT_THAT(board.jobs[0].lists, ElementsAre("index.sch"));
  EXPECT_EQ(board.jobs[0].start, std::nullopt);
  EXPECT_EQ(board.jobs[0].created, base::local_time(2026, 11, 16));
  EXPECT_EQ(board.jobs[1].description, "Retrieve");
  EXPECT_EQ(board.jobs[1].site_name + board.jobs[1].site_id + board.jobs[1].device_id, "MainA117");
  EXPECT_EQ(board.jobs[1].start, base::local_time(2026, 11, 15, 12));
  EXPECT_THAT(board.jobs[1].lists, ElementsAre("completed.sch", "CompletedToProcess.sch"));
  EXPECT_THAT(board.abandoned, ElementsAre("Nov3"));
  EXPECT_THAT(board.doubtful, ElementsAre("Nov4"));
  ASSERT_EQ(unprocessed_jobs(board).size(), 1U);
  EXPECT_EQ(unprocessed_jobs(board)[0].ending(), protocol::Ending::kCompleted);
  ASSERT_EQ(board.problems.size(), 1U);
  EXPECT_EQ(board.problems[0].file, "index.sch");
  EXPECT_EQ(board.problems[0].line, 3U);
  EXPECT_EQ(board.problems[0].reason, "not three fields closed by \";\"");

  const Board present = JobBoard(parts.scheduler).read(JobBoard::Extent::kFolders);
  ASSERT_EQ(present.jobs.size(), 1U);
  EXPECT_EQ(present.jobs[0].job, "Nov1");
  EXPECT_EQ(present.jobs[0].lists, board.jobs[1].lists);
  EXPECT_EQ(present.abandoned, board.abandoned);
  EXPECT_EQ(present.doubtful, board.doubtful);

  // A list that cannot be read may name the folder.
  parts.files.make_folders("S:\\error.sch");
  const Board part = JobBoard(parts.scheduler).read();
  EXPECT_EQ(part.jobs.size(), 2U);
  EXPECT_THAT(part.abandoned, IsEmpty());
  ASSERT_EQ(part.unread.size(), 1U);
  EXPECT_EQ(part.unread[0].file, "error.sch");
  EXPECT_THROW(JobBoard(parts.scheduler).read_all(), base::Fault);
}

}  // namespace
}  // namespace qvrcom::jobs
