#include "session/reasoned_boxes.h"

#include <gmock/gmock.h>

#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "doubles/recording_user_interface.h"
#include "platform/device_connection.h"

namespace qvrcom::session {
namespace {

namespace device_fault = platform::device_fault;
using ::testing::EndsWith;
using ::testing::HasSubstr;

// The box of a failed session says why, and what to do next; others stay as they are.
TEST(ReasonedBoxesTest, TellWhyASessionFailedAndWhatToDo) {
  doubles::MemoryFiles files;
  doubles::MemoryMachine machine;
  const environment::FilesAndFolders folders(machine, files);
  doubles::RecordingUserInterface ui;
  base::JobValues job;
  job.Name = "Nov1526120000000";
  files.make_folders(folders.GetLogsFolder());
  std::string& log = files.content[folders.GetLogsFolder() + job.Name + ".log"];
  ReasonedBoxes boxes({ui, files, folders, job, "Edit it."});
  const auto detail = [&](const std::string& reason, platform::Message message) {
    log = reason.empty() ? "" : "2026-11-15 12:10:05 Reason: " + reason + "\r\n";
    boxes.show(message);
    return ui.messages.back().detail;
  };
  const platform::Message failed{.text = "Communication error, see JobPilot for details", .title = "ERROR"};
  struct Row {
    std::string reason;
    const char* next;
  };
  for (const Row& row : {
           Row{"Login as admin at 10.0.0.5 port 21: 530 Authentication failed.",
               "access code, then try again. Edit it."},
           Row{"Login as admin at 10.0.0.5 port 21: 421 Too many users.",
               "every step: \\Corbelin\\QVRCOM+\\Logs\\Nov1526120000000.log"},
           Row{std::string("Login as admin at 10.0.0.5 port 21: ") + device_fault::kUnreachable + ".",
               "is right, then try again. Edit it."},
           Row{std::string("Fetching log: ") + device_fault::kClosed + ", after 3 bytes.",
               "check the line to the device."},
           Row{"Selecting account part3: 530 Not now.", "Nov1526120000000.log"},
       }) {
    const std::string told = detail(row.reason, failed);
    EXPECT_THAT(told, testing::StartsWith(row.reason));
    EXPECT_THAT(told, EndsWith(row.next));
  }
  EXPECT_EQ(detail("", failed), "");
  const char* stopped = "The session was stopped in the scheduler.";
  EXPECT_EQ(detail(stopped, {.text = "Communication cancelled from JobPilot", .title = "CANCELLED"}),
            stopped);
  EXPECT_EQ(detail(stopped, {.text = "Please select a site", .title = "Information"}), "");
  EXPECT_EQ(detail(stopped, {.text = "x", .title = "ERROR", .detail = "its own"}), "its own");
}

}  // namespace
}  // namespace qvrcom::session
