#include "environment/files_and_folders.h"

#include <gmock/gmock.h>

#include "doubles/caught.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "environment/names.h"

namespace qvrcom::environment {
namespace {

using platform::RegistryRoot;
using std::string_literals::operator""s;

struct FilesAndFoldersTest : testing::Test {
  void registry_text(const char* name, const std::string& text) {
    machine.registry_keys.insert(kShellFoldersKey);
    machine.registry_values[{kShellFoldersKey, name}] = {1, text + '\0'};
  }

  doubles::MemoryMachine machine;
  doubles::MemoryFiles files;
  FilesAndFolders folders{machine, files};
};

TEST_F(FilesAndFoldersTest, ComposesEveryFolderBelowItsRoot) {
  machine.special_folders = {{35, "C:\\Data"}, {46, "C:\\Docs"}};
  files.make_folders("C:\\Data\\Corbelin\\QVRCOM+");
  files.make_folders("C:\\Docs\\Corbelin\\QVRCOM+");
  const std::pair<std::string, std::string> cases[] = {
      {folders.GetAppDataRoot(), "C:\\Data\\Corbelin\\QVRCOM+\\"},
      {folders.GetAppDocsRoot(), "C:\\Docs\\Corbelin\\QVRCOM+\\"},
      {folders.GetMsgsFolder("X"), "C:\\Docs\\Corbelin\\QVRCOM+\\X\\Msgs\\"},
      {folders.GetStatsFolder("Site1"), "C:\\Docs\\Corbelin\\QVRCOM+\\Site1\\Stats\\"},
      {folders.GetSAMELogsFolder(), "C:\\Docs\\Corbelin\\QVRCOM+\\SAMELogs\\"},
      {folders.GetSchedulerFolder(), "C:\\Data\\Corbelin\\QVRCOM+\\Scheduler\\"},
      {folders.GetConnectionString(),
       "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\Data\\Corbelin\\"
       "QVRCOM+\\Database\\NewDB.mdb"},
  };
  for (const auto& [found, wanted] : cases)
    EXPECT_EQ(found, wanted);

  base::RunValues run;
  EXPECT_EQ(scheduler_folder(run, folders), "C:\\Data\\Corbelin\\QVRCOM+\\Scheduler\\");
  run.SchedulerFolder = "D:\\Elsewhere\\";
  EXPECT_EQ(scheduler_folder(run, folders), "D:\\Elsewhere\\");
}

TEST_F(FilesAndFoldersTest, FallsBackToTheRegistryUnchecked) {
  machine.special_folders = {{35, "C:\\Data"}};
  registry_text(kCommonAppDataValue, "E:\\Nowhere");
  EXPECT_EQ(folders.GetAppDataRoot(), "E:\\Nowhere\\Corbelin\\QVRCOM+\\");
  EXPECT_EQ(doubles::fault_of([&] { folders.GetAppDocsRoot(); }), "Unsupported value type");
  machine.registry_keys.clear();
  EXPECT_EQ(folders.GetAppDocsRoot(), "\\Corbelin\\QVRCOM+\\");
}

TEST_F(FilesAndFoldersTest, ReadsRegistryValuesByType) {
  machine.registry_keys = {"Key"};
  const std::vector<std::byte> bytes{std::byte{0}, std::byte{255}};
  const std::vector<std::tuple<std::uint32_t, std::string, RegistryValue>> cases = {
      {1, "text\0"s, "text"s}, {2, "%A%\0"s, "%A%"s},        {1, "", ""s},
      {3, "\x00\xFF"s, bytes}, {4, "\xFE\xFF\xFF\xFF"s, -2}, {7, "one\0two\0\0"s, "one\0two"s},
      {1, "a\0b\0"s, "a\0b"s},
  };
  for (const auto& [type, raw, wanted] : cases) {
    machine.registry_values[{"Key", "Name"}] = {type, raw};
    EXPECT_EQ(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "Key", "Name"), wanted) << type;
  }
  EXPECT_EQ(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "No key", "Name", 7), RegistryValue{7});
  machine.registry_values[{"Key", "Name"}] = {11, "12345678"};
  EXPECT_THROW(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "Key", "Name", 7), base::Fault);
  EXPECT_THROW(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "Key", "Absent", 7), base::Fault);
}

TEST_F(FilesAndFoldersTest, ApplicationFolderEndsInOneBackslash) {
  EXPECT_EQ(folders.GetAppPath(), "\\opt\\qvrcom\\");
  machine.settings[{"QVRCOM+", "Application", "AppPath"}] = "C:\\App\\";
  EXPECT_EQ(folders.GetAppPath(), "C:\\App\\");
}

}  // namespace
}  // namespace qvrcom::environment
