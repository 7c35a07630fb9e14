#include "scheduler/run_plan.h"

#include <gmock/gmock.h>

#include "base/text.h"
#include "doubles/caught.h"
#include "doubles/memory_files.h"
#include "protocol/script_grammar.h"

namespace qvrcom::scheduler {
namespace {

TEST(RunPlan, OverwritesNoFileOfTheJob) {
  const std::string folder = "\\data\\Scheduler\\";
  const auto get = [&](const std::string& remote, const std::string& local) {
    return "FTPGET;REMOTEFILE=" + remote + ";LOCALFILE=" + folder + "JobA\\" + local + ";";
  };
  const struct {
    std::vector<std::string> body;
    const char* refused;
  } rows[] = {
      {{get("a", "jobA.RPT")}, "names the job's own script or report"},
      {{get("a", "b.part"), get("b", "b")}, "which is of files that are not whole"},
      {{get("a", "x"), get("b", "X")}, "The script fetches two device files into X."},
      {{"FTPACCT;part1;", get("a", "x"), "FTPACCT;part2;", get("a", "x")}, "two device files into x."},
      {{"FTPACCT;part1;", get("a", "x"), "FTPACCT;part1;", get("a", "x"), get("b", "y")}, ""},
  };
  for (const auto& row : rows) {
    doubles::MemoryFiles files;
    protocol::ScriptHeader header;
    header.ftp_address = "192.0.2.7";
    const std::string script = folder + "JobA\\JobA.scr";
    files.content[script] = protocol::header_text(header, protocol::ScriptKind::kTransfer) + "\r\n" +
                            base::with_line_ends(row.body) + "FTPDISCONNECT;\r\n";
    const std::string fault = doubles::fault_of([&] { make_plan(files, folder, "JobA", script); });
    EXPECT_EQ(fault.empty(), *row.refused == '\0') << fault;
    EXPECT_THAT(fault, testing::HasSubstr(row.refused));
  }
}

}  // namespace
}  // namespace qvrcom::scheduler
