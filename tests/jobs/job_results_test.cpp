#include "jobs/job_results.h"

#include <gmock/gmock.h>

#include "jobs/job_parts.h"

namespace qvrcom::jobs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kJob = "Nov1526121005000";
const std::string kLine =
    "46341.5;15/11/2026 12:10:05^Retrieve^Main^A1^46341.5^^^17^;S:\\" + kJob + "\\" + kJob + ".scr;";

struct ResultParts : JobParts {
  ResultParts() {
    session.job.JobId = kLine;
    file("index.sch") = kLine + "\r\n";
  }

  DownloadDecoders decoders;
  JobResults results{session.job, scheduler, index, helpers, files, ui, decoders};
};

TEST(JobResults, MovesFinishedJobsToThePendingLists) {
  ResultParts parts;
  parts.file("index.sch") = "other\r\n" + kLine + "\r\n";
  parts.file("completed.sch") = kLine + "\r\nbefore\r\n\r\n";
  parts.file("error.sch") = kLine + "\r\n";
  parts.file("CompletedToProcess.sch") = "  before\r\n";
  parts.results.Copy_Items_From_Scheduler_to_BeProcessed();
  EXPECT_EQ(parts.file("CompletedToProcess.sch"), "before\r\n" + kLine + "\r\n");
  EXPECT_EQ(parts.file("ErrorToProcess.sch"), kLine + "\r\n");
  EXPECT_FALSE(parts.files.file_exists("S:\\CancelledToProcess.sch"));
  EXPECT_EQ(parts.file("index.sch"), "other\r\n");
  EXPECT_EQ(parts.file("completed.sch"), kLine + "\r\nbefore\r\n\r\n");

  parts.files.replaced = 0;
  parts.results.Copy_Items_From_Scheduler_to_BeProcessed();
  EXPECT_EQ(parts.files.replaced, 0);
  EXPECT_THAT(parts.ui.messages, IsEmpty());
}

// As if each were moved by itself.
TEST(JobResults, MovesSeveralLinesInOnePass) {
  const struct {
    const char *source, *target, *moved;
  } rows[] = {{"b\n", " c\n", "c\r\nb\r\n"},
              {"b\n a\n", " c\n", "a\r\nb\r\nc\r\n"},
              {"c \nc\n\n \nb\n", "", "b\r\nc\r\n"}};
  for (const auto& row : rows) {
    ResultParts parts;
    parts.file("source") = row.source;
    parts.file("target") = row.target;
    parts.results.Move_Sch_Lines("source", "target");
    EXPECT_EQ(parts.file("target"), row.moved) << row.source;
  }
}

TEST(JobResults, KeepsTheIndexLineWhenThePendingListCannotBeWritten) {
  ResultParts parts;
  parts.file("completed.sch") = kLine + "\r\n";
  parts.files.before = failing("replace", base::kDiskFull);
  parts.results.Copy_Items_From_Scheduler_to_BeProcessed();
  EXPECT_EQ(parts.file("index.sch"), kLine + "\r\n");
  EXPECT_THAT(parts.ui.texts(),
              ElementsAre("Error_Handler: Copy_Items_From_Scheduler_to_BeProcessed\r\nDisk full"));
}

TEST(JobResults, HandsDownloadsOfTheCurrentJobToTheirDecoders) {
  for (const bool dial_up : {false, true}) {
    ResultParts parts;
    std::vector<std::string> decoded;
    const auto note = [&](const char* kind) {
      return [&decoded, kind](const std::string& local) { decoded.push_back(kind + (":" + local)); };
    };
    parts.decoders = {{is_message_index, note("index")},
                      {is_message, note("message")},
                      {is_configuration_image, note("image")}};
    parts.file("CompletedToProcess.sch") = "x" + kLine + "\r\n" + kLine + " \r\n" + kLine + "\r\n";
    parts.writer.Create_Dir();
    protocol::ScriptHeader header;
    header.dial_up_flag = dial_up ? 1 : 0;
    header.dial_up_connection = "FTPGET";  // a header is never taken for a command
    parts.writer.Write_Script_Header(header);
    for (const char* local : {"msgindexP03M001", "getdBase07M012", "getdBaseP3.dat", "AllStatsP3.csv"}) {
      parts.writer.Write_Script("FTPGET;REMOTEFILE=x;LOCALFILE=" + std::string(local) + ";SIZE=20000;");
      parts.files.content[local] = "x";
    }
    parts.writer.Write_Script("FTPGET;REMOTEFILE=x;LOCALFILE=getdBaseP4.dat;SIZE=20000;");
    parts.writer.Write_Script("FTPPUT;REMOTEFILE=x;LOCALFILE=getdBase;SIZE=1;");
    parts.writer.Write_Script_End();
    parts.results.Process_CompletedSch_File();
    EXPECT_THAT(decoded,
                ElementsAre("index:msgindexP03M001", "message:getdBase07M012", "image:getdBaseP3.dat"));
    EXPECT_THAT(parts.results.MissingDownloads, ElementsAre("getdBaseP4.dat"));
    EXPECT_EQ(parts.session.run.PartitionID, "");
    EXPECT_THAT(parts.ui.messages, IsEmpty());
  }
}

TEST(JobResults, ReportsDamagedScripts) {
  ResultParts parts;
  parts.results.Process_Script("..\\x.scr");
  parts.results.Process_Script(kJob + ".scr");
  parts.files.folders.insert("S:\\" + kJob);
  parts.file(kJob + "\\" + kJob + ".scr") = "SITENAME=;\r\nSITEID=;\r\n";
  parts.results.Process_Script(kJob + ".scr");
  parts.file(kJob + "\\" + kJob + ".scr") =
      "SITENAME=;\r\nQVRID=;\r\nSITEID=;\r\nDESCRIPTION=;\r\nSTARTDATE=;\r\nSTOPDATE=;\r\nINTERVAL=;"
      "\r\nPERIOD=;\r\nFTPIPADDRESS=;\r\nFTPUSER=;\r\nFTPPASSWORD=;\r\n";
  parts.results.Process_Script(kJob + ".scr");
  EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: Process_Script\r\nBad file name",
                                            "Error_Handler: Process_Script\r\nFile not found",
                                            "Error_Handler: Parse_Script\r\nSubscript out of range",
                                            "Error_Handler: Parse_Script\r\nSubscript out of range"));
}

TEST(JobResults, ReadsScriptLines) {
  const struct {
    const char *line, *command, *local;
  } rows[] = {{"FTPPUT;REMOTEFILE=dbase;LOCALFILE=S:\\a;SIZE=1", "FTPPUT", "S:\\a"},
              {"FTPGET;REMOTEFILE=FTPPUT;LOCALFILE=;SIZE=1", "FTPGET", ""},
              {"FTPACCT;part3;LOCALFILE=x", "FTPACCT", "x"},
              {"FTPDELETE;linestat;LOCALFILE=", "", ""}};
  ResultParts parts;
  for (const auto& row : rows) {
    EXPECT_EQ(parts.results.Command(row.line), row.command);
    EXPECT_EQ(parts.results.LocalFile(row.line), row.local);
  }
}

TEST(JobResults, RemovesTheFolderOfTheJobAlone) {
  ResultParts parts;
  parts.writer.Create_Dir();
  std::vector<std::string> removed;
  for (const char* name : {"Nov1526121005000.scr", "Nov1526121005000.rpt", "nodestatP3.dat"})
    parts.file(kJob + "\\" + name) = "x";
  parts.files.before = [&](std::string_view operation, const std::string& path) {
    if (operation == "remove") removed.push_back(path.substr(path.size() - 4));
  };
  parts.results.Remove_Folder();
  EXPECT_THAT(removed, ElementsAre(".dat", ".scr", ".rpt"));
  EXPECT_FALSE(parts.files.folder_exists("S:\\" + kJob));
  EXPECT_EQ(parts.file("index.sch"), "\r\n");
  parts.results.Remove_Folder();  // gone already
  EXPECT_THAT(parts.ui.messages, IsEmpty());
}

TEST(JobResults, NeverDeletesOutsideAJobFolder) {
  const std::string cut = kLine.substr(0, kLine.size() - kJob.size() - 5);
  for (const std::string& id :
       {std::string("..;"), cut + "..\\0000000000000.scr;", cut + "..............\\..scr;"}) {
    ResultParts parts;
    parts.writer.Create_Dir();
    parts.session.job.JobId = id;
    const auto folders = parts.files.folders;
    const auto content = parts.files.content;
    parts.results.Remove_Folder();
    EXPECT_EQ(parts.files.folders, folders);
    EXPECT_EQ(parts.files.content, content);
    EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: Remove_Folder\r\nBad file name"));
  }
}

TEST(JobResults, KeepsTheIndexLineOfAFolderThatCannotGo) {
  ResultParts parts;
  parts.writer.Create_Dir();
  parts.files.folders.insert("S:\\" + kJob + "\\sub");
  parts.results.Remove_Folder();
  EXPECT_EQ(parts.file("index.sch"), kLine + "\r\n");
}

TEST(JobResults, CollectsAListWithoutAJob) {
  ResultParts parts;
  std::string collected = "first\r\n";
  parts.file("ErrorToProcess.sch") = "a\r\n\r\nB\r\nb\r\n" + kLine;
  parts.results.RemoveJobFromList("ErrorToProcess.sch", "b", collected);
  parts.results.RemoveJobFromList("CancelledToProcess.sch", "b", collected);
  EXPECT_EQ(collected, "first\r\na\r\n" + kLine + "\r\n");
}

}  // namespace
}  // namespace qvrcom::jobs
