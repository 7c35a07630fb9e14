#include "session/business_rules.h"

#include <gmock/gmock.h>

#include "base/fault.h"
#include "session/memory_suite.h"

namespace qvrcom::session {
namespace {

struct Procedure {
  const char* name;
  void (*call)(BusinessRules&);
};

// Hosts tell procedures apart by the name in the box, and the two groups by its icon.
const Procedure kPlain[] = {
    {"Create_File", [](BusinessRules& r) { r.Create_File("x.sch"); }},
    {"Create_Folders", [](BusinessRules& r) { r.Create_Folders(); }},
    {"ProperMsgNo", [](BusinessRules& r) { r.ProperMsgNo("x"); }},
    {"ProperPartID", [](BusinessRules& r) { r.ProperPartID("40000"); }},
    {"Create_Dir", [](BusinessRules& r) { r.Create_Dir(); }},
    {"Write_Script_Header", [](BusinessRules& r) { r.Write_Script_Header(protocol::ScriptHeader{}); }},
    {"Write_Script", [](BusinessRules& r) { r.Write_Script("x"); }},
    {"Write_Script_End", [](BusinessRules& r) { r.Write_Script_End(); }},
    {"Write_Index", [](BusinessRules& r) { r.Write_Index("", "", "", "", "", ""); }},
    {"Sort_File", [](BusinessRules& r) { r.Sort_File("index.sch"); }},
    {"ReWrite_File", [](BusinessRules& r) { r.ReWrite_File("index.sch", "x"); }},
    {"Validate_Index_File", [](BusinessRules& r) { r.Validate_Index_File(); }},
    {"Get_ControlCardType", [](BusinessRules& r) { r.Get_ControlCardType(); }},
    {"Get_Current_User", [](BusinessRules& r) { r.Get_Current_User(); }},
    {"Get_Current_Config", [](BusinessRules& r) { r.Get_Current_Config(); }},
    {"Update_SiteID_in_SessionQVR", [](BusinessRules& r) { r.Update_SiteID_in_SessionQVR(); }},
    {"QVRSettings_MachineTypeID", [](BusinessRules& r) { r.QVRSettings_MachineTypeID(); }},
    {"Version_Compactibility", [](BusinessRules& r) { r.Version_Compactibility("6.61", "two"); }},
    {"Process_MsgIndex", [](BusinessRules& r) { r.Process_MsgIndex("S:\\x"); }},
    {"Copy_Items_From_Scheduler_to_BeProcessed",
     [](BusinessRules& r) { r.Copy_Items_From_Scheduler_to_BeProcessed(); }},
    {"Process_CompletedSch_File", [](BusinessRules& r) { r.Process_CompletedSch_File(); }},
    {"Process_Script", [](BusinessRules& r) { r.Process_Script("x.scr"); }},
    {"Parse_Script", [](BusinessRules& r) { r.Parse_Script(); }},
    {"LocalFile", [](BusinessRules& r) { r.LocalFile("x"); }},
    {"Remove_Folder", [](BusinessRules& r) { r.Remove_Folder(); }},
};
const Procedure kOfImages[] = {
    {"Next_AutoIncrement_FileName", [](BusinessRules& r) { r.Next_AutoIncrement_FileName("E:\\", "x"); }},
    {"Process_PartStats_binary", [](BusinessRules& r) { r.Process_PartStats_binary("1", "3", "l", "n"); }},
    {"Process_Write_CSV", [](BusinessRules& r) { r.Process_Write_CSV("1", "3"); }},
    {"Write_Database", [](BusinessRules& r) { r.Write_Database("getdBaseP"); }},
    {"Process_System_binary", [](BusinessRules& r) { r.Process_System_binary("1", "S:\\x"); }},
    {"Process_Partition_binary", [](BusinessRules& r) { r.Process_Partition_binary("1", "3", "S:\\x"); }},
    {"ExistPartID", [](BusinessRules& r) { r.ExistPartID("3"); }},
    {"PARTITION_INFO", [](BusinessRules& r) { r.PARTITION_INFO("S:\\x"); }},
    {"Struct_Time", [](BusinessRules& r) { r.Struct_Time("S:\\x"); }},
    {"Struct_Firmware", [](BusinessRules& r) { r.Struct_Firmware("S:\\x"); }},
    {"Get_Node_List_DIR", [](BusinessRules& r) { r.Get_Node_List(base::NodeType::kDir, "1", "3"); }},
    {"Head_Info", [](BusinessRules& r) { r.Head_Info("12"); }},
};

// Disk, database and components all fail.
TEST(BusinessRules, ReportUnderTheProceduresNames) {
  const auto try_all = [](std::span<const Procedure> procedures, platform::Icon icon) {
    for (const Procedure& each : procedures) {
      session::MemorySuite suite;
      suite.session.job.JobId = "x;y;S:\\Nov1526121005000\\Nov1526121005000.scr;";
      suite.session.job.SessionStart = suite.clock.time;
      suite.files.content["S:\\completed.sch"] = "x\r\n";
      suite.files.folders.erase("C:\\Docs\\Corbelin\\QVRCOM+\\Msgs");
      suite.files.before = [](auto, const std::string& path) { throw base::Fault(base::kDiskFull, path); };
      suite.engine.refusal = "Database is locked";
      suite.components.missing = true;
      BusinessRules rules(suite.parts().rules);
      each.call(rules);
      ASSERT_EQ(suite.ui.messages.size(), 1U) << each.name;
      EXPECT_THAT(suite.ui.messages[0].text,
                  testing::StartsWith("Error_Handler: " + std::string(each.name) + "\r\n"));
      EXPECT_EQ(suite.ui.messages[0].title, "QVRCOM+");
      EXPECT_EQ(suite.ui.messages[0].icon, icon) << each.name;
    }
  };
  try_all(kPlain, platform::Icon::kNone);
  try_all(kOfImages, platform::Icon::kError);
}

}  // namespace
}  // namespace qvrcom::session
