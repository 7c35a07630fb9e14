#include "images/image_downloads.h"

#include <gtest/gtest.h>

#include "jobs/job_parts.h"

namespace qvrcom::images {
namespace {

TEST(ImageDownloads, WritesTheLinesOfAPartition) {
  jobs::JobParts parts;
  parts.writer.Create_Dir();
  ImageDownloads(parts.writer).Write_Script_Partition(" 12 ", "F\\getdBaseP12.dat");
  EXPECT_EQ(parts.file(parts.session.job.Name + "\\" + parts.session.job.Name + ".scr"),
            "FTPACCT;part12;\r\nFTPGET;REMOTEFILE=dbase;LOCALFILE=F\\getdBaseP12.dat;SIZE=20000;\r\n");
}

}  // namespace
}  // namespace qvrcom::images
