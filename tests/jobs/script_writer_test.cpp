#include "jobs/script_writer.h"

#include <gmock/gmock.h>

#include "jobs/job_parts.h"

namespace qvrcom::jobs {
namespace {

using testing::IsEmpty;

protocol::ScriptHeader header(std::int16_t dial_up_flag) {
  return {"Main;Hall ", "A1", "17",        "Retrieve", dial_up_flag, "Office", "0,12#3",
          " 10.0.0.7 ", "",   " se;cret ", "46341.5",  "46342",      "",       "Days"};
}

TEST(ScriptWriter, WritesDialUpForTheFlagOneAlone) {
  for (const std::int16_t flag : std::initializer_list<std::int16_t>{-1, 0, 1, 2}) {
    JobParts parts;
    parts.writer.Create_Dir();
    parts.writer.Create_Dir();  // the folder is there
    parts.writer.Write_Script_Header(header(flag));
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

}  // namespace
}  // namespace qvrcom::jobs
