#include "scheduler/run_plan.h"

#include <gmock/gmock.h>

#include "base/text.h"
#include "doubles/caught.h"
#include "doubles/memory_files.h"
#include "protocol/script_grammar.h"

namespace qvrcom::scheduler {
namespace {

TEST(RunPlan, WritesNewFilesOfTheJobsFolderAlone) {
  const std::string inside = "\\data\\Scheduler\\JobA\\";
  const std::string kOutside = "not directly in the job's folder";
  struct Row {
    std::vector<std::pair<std::string, std::string>> fetches;  // device file or account, local file
    std::string refused;
  };
  std::vector<Row> rows = {
      {{{"a", inside + "jobA.RPT"}}, "names the job's own script or report"},
      {{{"a", inside + "JobA.scr"}}, "names the job's own script or report"},
      {{{"a", inside + "b.part"}, {"b", inside + "b"}}, "which is of files that are not whole"},
      {{{"a", inside + "link"}}, "leads elsewhere"},
      {{{"a", inside + "x"}, {"b", inside + "X"}}, "The script fetches two device files into X."},
      {{{"part1", ""}, {"a", inside + "x"}, {"part2", ""}, {"a", inside + "x"}}, "two device files into x."},
      {{{"part1", ""}, {"a", inside + "x"}, {"part1", ""}, {"a", inside + "x"}, {"b", inside + "y"}}, ""},
  };
  for (const std::string& path :
       {std::string("\\etc\\passwd"), std::string("x"), inside, inside + "..", inside + "..\\JobB\\x",
        inside + "sub\\x", inside + "a/b", std::string("\\data\\Scheduler\\x")})
    rows.push_back({{{"a", path}}, kOutside});
  for (const Row& row : rows) {
    doubles::MemoryFiles files;
    files.links = {inside + "link"};
    protocol::ScriptHeader header;
    header.ftp_address = "192.0.2.7";
    std::string text = protocol::header_text(header, protocol::ScriptKind::kTransfer) + "\r\n";
    for (const auto& [from, local] : row.fetches)
      text += local.empty() ? "FTPACCT;" + from + ";\r\n"
                            : "FTPGET;REMOTEFILE=" + from + ";LOCALFILE=" + local + ";\r\n";
    files.content[inside + "JobA.scr"] = text + "FTPDISCONNECT;\r\n";
    const std::string fault =
        doubles::fault_of([&] { make_plan(files, "\\data\\Scheduler\\", "JobA", inside + "JobA.scr"); });
    EXPECT_EQ(fault.empty(), row.refused.empty()) << fault;
    EXPECT_THAT(fault, testing::HasSubstr(row.refused));
  }
}

}  // namespace
}  // namespace qvrcom::scheduler
