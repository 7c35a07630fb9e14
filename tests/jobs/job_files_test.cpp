#include <gmock/gmock.h>

#include "base/text.h"
#include "doubles/memory_files.h"
#include "doubles/recording_user_interface.h"
#include "jobs/file_helpers.h"
#include "jobs/job_board.h"
#include "jobs/job_index.h"
#include "jobs/job_parts.h"
#include "jobs/message_index.h"
#include "jobs/script_writer.h"

namespace qvrcom::jobs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

protocol::ScriptHeader dial_up_header(std::int16_t dial_up_flag) {
  return {"Main;Hall ", "A1", "17",        "Retrieve", dial_up_flag, "Office", "0,12#3",
          " 10.0.0.7 ", "",   " se;cret ", "46341.5",  "46342",      "",       "Days"};
}

TEST(ScriptWriter, WritesDialUpForTheFlagOneAlone) {
  for (const std::int16_t flag : std::initializer_list<std::int16_t>{-1, 0, 1, 2}) {
    JobParts parts;
    parts.writer.Create_Dir();
    parts.writer.Create_Dir();  // the folder is there
    parts.writer.Write_Script_Header(dial_up_header(flag));
    parts.writer.Write_Script("FTPACCT;part3;\r\nFTPDELETE;linestat;");
    parts.writer.Write_Script_End();
    EXPECT_EQ(parts.session.job.Folder, "S:\\Nov1526121005000");
    EXPECT_EQ(parts.file("Nov1526121005000\\Nov1526121005000.scr"),
              "SITENAME=Main;Hall ;\r\nSITEID=A1;\r\nQVRID=17;\r\nDESCRIPTION=Retrieve;\r\n"
              "STARTDATE=46341.5;\r\nSTOPDATE=46342;\r\nINTERVAL=;\r\nPERIOD=Days;\r\n" +
                  std::string(flag == 1 ? "RAS=Office#0,12#3;\r\n" : "") +
                  "FTPIPADDRESS=10.0.0.7;\r\nFTPUSER=admin;\r\nFTPPASSWORD=se;cret;\r\nFTPCONNECT;\r\n"
                  "FTPACCT;part3;\r\nFTPDELETE;linestat;\r\nFTPDISCONNECT;\r\n");
    EXPECT_THAT(parts.ui.messages, IsEmpty());
  }
}

TEST(FileHelpers, GivesNumbersTheirWidth) {
  const struct {
    const char *number, *message, *partition;
  } rows[] = {{"0", "000", "00"},     {"7", "007", "07"},   {"9", "009", "09"},
              {" 10 ", "010", "10"},  {"99", "099", "99"},  {"100", "100", "00"},
              {"1234", "1234", "34"}, {"-5", "00-5", "05"}, {"2.5", "002", "02"}};
  JobParts parts;
  for (const auto& row : rows) {
    EXPECT_EQ(parts.helpers.ProperMsgNo(row.number), row.message) << row.number;
    EXPECT_EQ(parts.helpers.ProperPartID(row.number), row.partition) << row.number;
  }
}

TEST(FileHelpers, MakesFilesAndFoldersThatAreMissing) {
  JobParts parts;
  parts.file("there.sch") = "line\r\n";
  parts.helpers.Create_File("there.sch");
  parts.helpers.Create_File("new.sch");
  EXPECT_EQ(parts.file("there.sch"), "line\r\n");
  EXPECT_TRUE(parts.files.file_exists("S:\\new.sch"));
  EXPECT_EQ(parts.ui.pumps, 2);
  EXPECT_TRUE(parts.helpers.ExistedFolder("C:\\Data\\", "Corbelin"));
  EXPECT_FALSE(parts.helpers.ExistedFolder("S:\\", "there.sch"));

  parts.files.make_folders("C:\\Docs\\Corbelin\\QVRCOM+\\Stats");
  parts.helpers.Create_Folders();
  for (const char* name : {"Msgs", "Stats", "SAMELogs"})
    EXPECT_TRUE(parts.files.folder_exists("C:\\Docs\\Corbelin\\QVRCOM+\\" + std::string(name)));
  EXPECT_TRUE(parts.ui.messages.empty());
}

const std::string kHeader("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
const std::string kSeven("\xAA\xAA\0\x07\0\0\x01\x02", 8);
const std::string kNegative("\0\0\xFF\xFE\x80\0\0\0", 8);

TEST(MessageIndex, ReadsTheRecords) {
  const struct {
    const char* what;
    std::string bytes;
    std::vector<IndexedMessage> messages;
  } rows[] = {
      {"one byte more", kHeader + "x", {}},
      {"half a record rounds to none", kHeader + kSeven.substr(0, 4), {}},
      {"five eighths round to one", kHeader + kSeven.substr(0, 5), {{7, 0}}},
      {"signed", kHeader + kNegative, {{-2, -2'147'483'647 - 1}}},
      {"one and a half round to two", kHeader + kSeven + kSeven.substr(0, 4), {{7, 258}, {7, 0}}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(read_message_index(row.bytes), row.messages) << row.what;
}

TEST(MessageIndex, TakesTheNumbersOfAFileThatIsNotTooLarge) {
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  base::ReceivedValues received;
  MessageIndex index(received, files, ui);
  const auto numbers_of = [&](const std::string& bytes) {
    files.content["S:\\x"] = bytes;
    index.Process_MsgIndex("S:\\x");
    return received.MessageNumbers;
  };
  EXPECT_THAT(numbers_of(kHeader + kSeven + kNegative), ElementsAre("7", "-2", ""));
  EXPECT_THAT(numbers_of(kHeader), ElementsAre(""));
  EXPECT_EQ(numbers_of(std::string(kMessageIndexLimit, '\1')).size(), 65'537U);
  EXPECT_THAT(numbers_of(std::string(kMessageIndexLimit + 1, '\1')), ElementsAre(""));
  EXPECT_THAT(ui.texts(), ElementsAre("Error_Handler: Process_MsgIndex\r\nFile too large"));
}

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
  ASSERT_EQ(board.jobs.size(), 3U);
  EXPECT_EQ(board.jobs[0].job, "Nov2");
  EXPECT_THAT(board.jobs[0].lists, ElementsAre("index.sch"));
  EXPECT_EQ(board.jobs[0].start, std::nullopt);
  EXPECT_EQ(board.jobs[0].created, base::local_time(2026, 11, 16));
  EXPECT_EQ(board.jobs[1].description, "Retrieve");
  EXPECT_EQ(board.jobs[1].site_name + board.jobs[1].site_id + board.jobs[1].device_id, "MainA117");
  EXPECT_EQ(board.jobs[1].start, base::local_time(2026, 11, 15, 12));
  EXPECT_THAT(board.jobs[1].lists, ElementsAre("completed.sch", "CompletedToProcess.sch"));
  EXPECT_THAT(board.abandoned, ElementsAre("Nov3"));
  EXPECT_EQ(board.jobs[2].job, "Nov4");
  EXPECT_EQ(board.jobs[2].doubt,
            "Line 3 of index.sch names it and is damaged: not three fields closed by \";\"");
  ASSERT_EQ(unprocessed_jobs(board).size(), 1U);
  EXPECT_EQ(unprocessed_jobs(board)[0].ending(), protocol::Ending::kCompleted);
  ASSERT_EQ(board.problems.size(), 1U);
  EXPECT_EQ(board.problems[0].file, "index.sch");
  EXPECT_EQ(board.problems[0].line, 3U);
  EXPECT_EQ(board.problems[0].reason, "not three fields closed by \";\"");

  const Board present = JobBoard(parts.scheduler).read(JobBoard::Extent::kFolders);
  ASSERT_EQ(present.jobs.size(), 2U);
  EXPECT_EQ(present.jobs[0].job, "Nov1");
  EXPECT_EQ(present.jobs[0].lists, board.jobs[1].lists);
  EXPECT_EQ(present.abandoned, board.abandoned);
  EXPECT_EQ(present.jobs[1].doubt, board.jobs[2].doubt);

  // A list that cannot be read may name the folder.
  parts.files.make_folders("S:\\error.sch");
  const Board part = JobBoard(parts.scheduler).read();
  EXPECT_EQ(part.jobs.size(), 2U);
  EXPECT_THAT(part.abandoned, IsEmpty());
  ASSERT_EQ(part.unread.size(), 1U);
  EXPECT_EQ(part.unread[0].file, "error.sch");
  EXPECT_THROW(JobBoard(parts.scheduler).read_all(), base::Fault);
}

constexpr const char* kLine =
    "46341.5070023148;15/11/2026 12:10:05^Retrieve Statistics for Partition 3^Main ^A1^46341.25^2^Days^17^;"
    "S:\\Nov1526121005000\\Nov1526121005000.scr;";

TEST(JobIndex, WritesTheLineOfAJobAndSorts) {
  JobParts parts;
  parts.file("index.sch") = "5;later\r\n\r\n40;earlier";  // its end is missing
  parts.writer.Create_Dir();
  parts.index.Write_Index("Main ", "A1", "Retrieve Statistics for Partition 3", "46341.25", "2", "Days");
  EXPECT_EQ(parts.session.job.JobId, kLine);
  EXPECT_EQ(parts.file("index.sch"), "40;earlier\r\n" + std::string(kLine) + "\r\n5;later\r\n");

  parts.session.job.NewJob = false;
  parts.session.job.RescheduleValue = 46400.5;
  parts.clock.time += std::chrono::hours(1);
  parts.index.Write_Index("", "", "", "", "", "");
  EXPECT_EQ(parts.file("reschedule.sch"),
            "46400.5;15/11/2026 12:10:05^^^^^^^17^;S:\\Nov1526121005000\\Nov1526121005000.scr;\r\n");
  EXPECT_THAT(parts.ui.messages, IsEmpty());
}

TEST(JobIndex, SortsByBytes) {
  const struct {
    const char *before, *after;
  } rows[] = {{"", "\r\n"},
              {"one", "one\r\n"},
              {"46341.51;\r\n46341.5;\r\n46341.4999;\r\n", "46341.4999;\r\n46341.51;\r\n46341.5;\r\n"},
              {"b\na\r\n\r\nB\n\xC3\xA4\nb", "B\r\na\r\nb\r\nb\r\n\xC3\xA4\r\n"},
              {" b \n a \n", "a \r\n b\r\n"},
              {"a\n \n", "\r\na\r\n"}};
  for (const auto& row : rows) {
    JobParts parts;
    parts.file("index.sch") = row.before;
    parts.index.Sort_File("index.sch");
    EXPECT_EQ(parts.file("index.sch"), row.after);
  }
}

TEST(JobIndex, RemovesLinesWhateverTheirCase) {
  JobParts parts;
  parts.file("index.sch") = "c\r\nC\r\nb\r\n";
  parts.file("reschedule.sch") = "z\r\n\r\nC\r\ny\r\n";
  parts.index.Remove_Index_Line("reschedule.sch", "c");
  EXPECT_EQ(parts.file("reschedule.sch"), "z\r\ny\r\n\r\n");  // not sorted
  EXPECT_EQ(parts.file("index.sch"), "C\r\nb\r\nc\r\n");      // sorted, whole
  parts.index.Remove_Index_Line("index.sch", "c");
  EXPECT_EQ(parts.file("index.sch"), "b\r\n");
  parts.index.Remove_Index_Line("index.sch", "B");
  EXPECT_EQ(parts.file("index.sch"), "\r\n");
  EXPECT_THROW(parts.index.Remove_Index_Line("none.sch", "x"), base::Fault);
}

// As if each were removed by itself: the file is written and read again between two lines.
TEST(JobIndex, RemovesSeveralLinesInOnePass) {
  const struct {
    const char* before;
    std::vector<std::string> removed;
    const char* after;
  } rows[] = {{" b\nc \na\nx\n", {"x"}, "b\r\na\r\nc\r\n"},
              {" b\nc \na\nx\n", {"x", "y"}, "a\r\nb\r\nc\r\n"},
              {" b\nc\nB\n", {"x", "b"}, "c\r\n"},
              {" b\nc \n", {"x", " b"}, "b\r\nc\r\n"},
              {"a\nc \n", {"x", "c"}, "a\r\n"},
              {" \na\n", {"x", "y"}, "a\r\n"},
              {" a \n", {"x", "a"}, "\r\n"},
              {"a\n", {}, "a\n"}};
  for (const auto& row : rows) {
    JobParts parts;
    parts.file("index.sch") = row.before;
    parts.index.remove_index_lines(row.removed);
    EXPECT_EQ(parts.file("index.sch"), row.after) << row.before;
  }
}

TEST(JobIndex, ValidationWritesOnceOrNotAtAll) {
  JobParts parts;
  parts.files.folders.insert("S:\\A");
  const std::string kept = "b;^;S:\\A\\A.scr;\r\n\r\na;^;S:\\A\\A.scr;\r\n";
  parts.file("index.sch") = kept;
  parts.index.Validate_Index_File();
  EXPECT_EQ(parts.file("index.sch"), kept);  // nothing to remove: not even sorted
  EXPECT_EQ(parts.files.replaced, 0);
  parts.file("index.sch") = kept + "c;gone;with;blanks^;S:\\B\\B.scr;\r\nd\r\n";
  parts.index.Validate_Index_File();
  EXPECT_EQ(parts.file("index.sch"), "a;^;S:\\A\\A.scr;\r\nb;^;S:\\A\\A.scr;\r\n");
  EXPECT_EQ(parts.files.replaced, 1);
}

TEST(JobIndex, FindsTheFolderOfALine) {
  const struct {
    const char *line, *folder;
  } rows[] = {{kLine, "Nov1526121005000"},
              {"", ""},
              {"a;b", "a;b"},
              {"a;b;c;", "c"},
              {"a;b;c\\d", "c"},
              {"a;b;\\d;", ""},
              {"a;x;y;S:\\N\\N.scr;", "y"}};
  for (const auto& row : rows)
    EXPECT_EQ(JobIndex::Get_Folder(row.line), row.folder) << row.line;
}

TEST(JobIndex, ReadsLines) {
  JobParts parts;
  std::vector<std::string> lines;
  bool found = false;
  parts.file("list") = "\r\n";
  parts.index.Read_Lines("list", lines, found);
  EXPECT_FALSE(found);
  parts.file("list") = "\r\nb\r\na\r\n";
  parts.index.Read_Lines("list", lines, found);
  EXPECT_TRUE(found);
  EXPECT_THAT(lines, ElementsAre("b", "a"));
}

}  // namespace
}  // namespace qvrcom::jobs
