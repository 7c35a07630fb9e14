#include "rules/business_rules.h"

#include <gmock/gmock.h>

#include "doubles/memory_database.h"
#include "doubles/recording_components.h"
#include "jobs/job_parts.h"

namespace qvrcom::rules {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct OneRow : platform::XmlRows {
  base::Rows load(std::string_view) const override {
    base::Rows rows({"PartitionID"});
    rows.add({std::string("7")});
    return rows;
  }
};

struct Parts : jobs::JobParts {
  doubles::MemoryDatabase engine;
  environment::DBase dbase{engine, folders};
  doubles::RecordingComponents components;
  OneRow xml;
  BusinessRules rules{{session, ui, clock, files, folders, dbase, components, xml}};
};

TEST(BusinessRules, DecodesTheDownloadsOfACompletedJob) {
  Parts parts;
  BusinessRules& rules = parts.rules;
  const std::string& folder = parts.session.job.Folder;
  parts.session.run.SessionConfigID = "1";
  rules.Create_Dir();
  rules.Write_Script_Header({});
  rules.Write_Script_System(folder + "\\getdBaseSys.dat");
  rules.Write_Script_Stats("7", folder + "\\linestatP7.dat", folder + "\\nodestatP7.dat",
                           folder + "\\getdBaseP7.dat");
  rules.Write_Script("FTPGET;REMOTEFILE=msgindex;LOCALFILE=" + folder + "\\msgindexP7.dat;SIZE=20000;");
  rules.Write_Script_End();
  parts.files.content[folder + "\\msgindexP7.dat"] =
      std::string(8, '\0') + std::string("\0\0\0\x09\0\0\0\1", 8);
  rules.Process_Script(parts.session.job.Name + ".scr");

  EXPECT_THAT(
      parts.components.events,
      ElementsAre("create QVRBIN7_2.Sys", "DecodeSystemImage 1|" + folder + "\\getdBaseSys.dat",
                  "release QVRBIN7_2.Sys", "create QVRdb.Config", "Get_Partition_Rows 1|7",
                  "release QVRdb.Config", "create QVRBIN7_2.Part",
                  "DecodePartitionImage 1|7|17|" + folder + "\\getdBaseP7.dat", "release QVRBIN7_2.Part"));
  EXPECT_THAT(parts.session.received.ReceivedPartitions, ElementsAre("7", ""));
  EXPECT_THAT(parts.session.received.MessageNumbers, ElementsAre("9", ""));
  EXPECT_THAT(parts.ui.messages, IsEmpty());
}

}  // namespace
}  // namespace qvrcom::rules
