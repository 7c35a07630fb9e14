#include "images/image_downloads.h"

#include <gmock/gmock.h>

#include "jobs/job_parts.h"

namespace qvrcom::images {
namespace {

using testing::ElementsAre;

TEST(ImageDownloads, WritesTheLinesOfEachDownload) {
  jobs::JobParts parts;
  ImageDownloads downloads(parts.writer);
  parts.writer.Create_Dir();
  downloads.Write_Script_System("F\\getdBaseSys.dat");
  downloads.Write_Script_Partition(" 12 ", "F\\getdBaseP12.dat");
  downloads.Write_Script_Stats("  3", "F\\linestatP3.dat", "F\\nodestatP3.dat", "F\\getdBaseP3.dat");
  EXPECT_EQ(parts.file(parts.session.job.Name + "\\" + parts.session.job.Name + ".scr"),
            "FTPGET;REMOTEFILE=dbase;LOCALFILE=F\\getdBaseSys.dat;SIZE=20000;\r\n"
            "FTPACCT;part12;\r\n"
            "FTPGET;REMOTEFILE=dbase;LOCALFILE=F\\getdBaseP12.dat;SIZE=20000;\r\n"
            "FTPACCT;part3;\r\n"
            "FTPGET;REMOTEFILE=dbase;LOCALFILE=F\\getdBaseP3.dat;SIZE=20000;\r\n"
            "FTPGET;REMOTEFILE=linestat;LOCALFILE=F\\linestatP3.dat;SIZE=20000;\r\n"
            "FTPGET;REMOTEFILE=nodestat;LOCALFILE=F\\nodestatP3.dat;SIZE=20000;\r\n");

  parts.files.before = jobs::failing("append", base::kDiskFull);
  downloads.Write_Script_System("F");
  EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: Write_Script\r\nDisk full"));
}

}  // namespace
}  // namespace qvrcom::images
