// What front ends ask of a device: each request as a whole run on memory parts.

#include <gmock/gmock.h>

#include "control/all_partitions_request.h"
#include "control/memory_lock.h"
#include "control/same_log_request.h"
#include "control/statistics_request.h"
#include "control/system_request.h"
#include "control/view_request.h"
#include "devicefiles/device_time.h"
#include "session/memory_suite.h"

namespace qvrcom::control {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace operation = session::operation;

const base::LocalTime kMoment = base::local_time(2026, 11, 15, 9, 8, 7);

struct DeviceRequests : ::testing::Test, StatisticsDisplay {
  DeviceRequests() {
    run.session.site = {};
    run.engine.answer("FirmwareVersion FROM Site", {"FirmwareVersion"}, {{"5.ca"}});
    record.site_id = 7;
    record.name = "USA_Office";
    record.identifier = "101";
    record.lan = "10.0.0.5";
    run.files.content["C:\\given"] = "12345";
    run.scheduler.sends = [this](const std::string& local) -> std::optional<std::string> {
      const auto found = device.find(local.substr(local.rfind('\\') + 1));
      return found == device.end() ? "x" : found->second;
    };
  }
  void ShowStatistics(const std::string& file) override { shown.push_back(file); }

  SystemAnswer command(const char* name) {
    order.site = site_row(record);
    order.operation = name;
    return SystemRequest(parts).run(order);
  }
  RequestResult statistics(const char* name = operation::kRetrieveStatistics) {
    return StatisticsRequest(parts, *this)
        .run("NEW", {.site = site_row(record), .partition = 3, .operation = name});
  }

  session::DialogRun run;
  MemoryLock lock;
  session::SessionRun screen{run.parts(), run};
  session::SessionGate gate{lock, run.ui};
  environment::DataBase database{run.engine, run.folders};
  SessionRequestParts parts{run.parts().rules, database, gate, screen, run.link};
  sitebook::SiteRecord record;
  SystemOrder order;
  std::map<std::string, std::string> device;  // by local name
  std::vector<std::string> shown;
};

TEST_F(DeviceRequests, CopyTheLogOutAndRemoveTheFolder) {
  device["log"] = std::string("a\0b", 3);
  order.save_log_as = "C:\\saved.log";
  run.files.make_folders("C:");
  const SystemAnswer answer = command(operation::kGetAndResetLog);
  EXPECT_EQ(answer.result, RequestResult::kDone);
  EXPECT_EQ(answer.status, "Completed");
  EXPECT_EQ(answer.log, device["log"]);
  EXPECT_EQ(run.files.content["C:\\saved.log"], device["log"]);
  EXPECT_THAT(run.left_behind(), IsEmpty());
  EXPECT_THAT(run.scheduler.scripts, ElementsAre(HasSubstr("QVRID=7;")));

  order.save_log_as = "C:\\no folder\\saved.log";  // the device has none any more: what came stays
  EXPECT_EQ(command(operation::kGetAndResetLog).result, RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre("Error_Handler: SystemRequest\r\nPath not found"));
  EXPECT_EQ(run.left_behind().size(), 1U);
}

TEST_F(DeviceRequests, ReadWhatTheDeviceTells) {
  device["time"] = devicefiles::write_device_time({kMoment});
  EXPECT_EQ(command(operation::kGetDateAndTime).clock, kMoment);
  devicefiles::SystemInformation information;
  information.partitions = 8;
  information.moment = kMoment;
  device["sysinfo.dat"] = devicefiles::write_system_information(information);
  EXPECT_EQ(command(operation::kGetSystemInformation).information.partitions, 8U);
  device["msgindexP3.dat"] = std::string("\0\0\xFA\0\0\x01\xF4\0", 8);
  order.partition = "3";
  EXPECT_THAT(command(operation::kRetrieveMessageIndex).partition_times,
              ElementsAre(base::TimeRecord{"8", "0"}, base::TimeRecord{"16", "0"}));
  order.clock = kMoment;
  EXPECT_EQ(command(operation::kSetDateAndTime).result, RequestResult::kDone);
  EXPECT_THAT(run.scheduler.uploads, ElementsAre(device["time"]));
  EXPECT_THAT(run.ui.texts(), IsEmpty());
}

TEST_F(DeviceRequests, TellWhatIsNoAnswer) {
  device["time"] = "short";
  device["msgindexP3.dat"] = "\xFF\xFF\xFF\xFF";
  order.partition = "3";
  const SystemAnswer clock = command(operation::kGetDateAndTime);
  EXPECT_EQ(clock.result, RequestResult::kNotDone);
  EXPECT_THAT(clock.shortfall, HasSubstr("5 of 8 bytes"));
  EXPECT_EQ(clock.record, std::string("short\0\0\0", 8));
  EXPECT_THAT(run.ui.texts(), ElementsAre(StartsWith("Error_Handler: SystemRequest\r\n")));
  run.ui.messages.clear();
  EXPECT_EQ(command(operation::kRetrieveMessageIndex).result, RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre("Error_Handler: PARTITION_INFO\r\nOverflow"));
  EXPECT_EQ(command("Get Lost").result, RequestResult::kNotDone);
}

TEST_F(DeviceRequests, RefuseBeforeAnythingIsSent) {
  struct Case {
    const char* what;
    void (*prepare)(DeviceRequests&);
    const char* text;
  };
  for (const Case& each :
       {Case{"no file", [](DeviceRequests& t) { t.order.file = "C:\\none"; },
             "No session is started: there is no file C:\\none."},
        Case{"empty", [](DeviceRequests& t) { t.run.files.content[t.order.file = "C:\\empty"] = ""; },
             "No session is started: the file C:\\empty is empty."},
        Case{"name", [](DeviceRequests& t) { t.record.name = "A;B"; },
             "No session is started for this site."},
        Case{"card", [](DeviceRequests& t) { t.record.card_type = "OLD"; },
             "Haven't Implemented the communication to Old QVR"}}) {
    SCOPED_TRACE(each.what);
    run.ui.messages.clear();
    order.file = "C:\\given";
    each.prepare(*this);
    EXPECT_EQ(command(operation::kSendFirmware).result, RequestResult::kNotDone);
    EXPECT_THAT(run.ui.texts(), ElementsAre(StartsWith(each.text)));
    EXPECT_EQ(run.requests(), "");
    record.name = "USA_Office";
    record.card_type = "";
  }
  order.file = "C:\\empty";
  order.force = true;
  EXPECT_EQ(command(operation::kSendFirmware).result, RequestResult::kDone);
  EXPECT_THAT(run.scheduler.scripts[0], HasSubstr("SIZE=0;"));
}

TEST_F(DeviceRequests, FileTheSameLog) {
  device["same.log"] = "EAS";
  const SameLogAnswer answer = SameLogRequest(parts).run(site_row(record));
  EXPECT_EQ(answer.result, RequestResult::kDone);
  EXPECT_EQ(run.files.content[answer.file], "SiteName,USA_Office\r\nUserSiteID,101\r\nEAS");
  run.scheduler.result_file = "error.sch";
  const SameLogAnswer failed = SameLogRequest(parts).run(site_row(record));
  EXPECT_EQ(failed.result, RequestResult::kNotDone);
  EXPECT_EQ(failed.file, "");
}

TEST_F(DeviceRequests, ListTheMessagesOfAPartition) {
  device["msgindexP3.dat"] = std::string("\0\0\0\0\0\0\0\0\0\0\0\x0C\0\0\0\x50", 16);
  const ViewAnswer answer = ViewRequest(parts).run(site_row(record), 3);
  EXPECT_EQ(answer.result, RequestResult::kDone);
  EXPECT_THAT(answer.messages, ElementsAre("12"));
  run.scheduler.result_file = "error.sch";
  const ViewAnswer failed = ViewRequest(parts).run(site_row(record), 3);
  EXPECT_EQ(failed.result, RequestResult::kNotDone);
  EXPECT_THAT(failed.messages, IsEmpty());
}

TEST_F(DeviceRequests, TakeAllPartitionsOfOldFirmwareAlone) {
  const AllPartitionsAnswer answer = AllPartitionsRequest(parts).run(site_row(record));
  EXPECT_EQ(answer.result, RequestResult::kDone);
  ASSERT_EQ(answer.files.size(), 64U);
  EXPECT_EQ(answer.files[1], (base::PartitionFile{2, "Stats2.csv"}));

  run.engine.answers.clear();
  run.engine.answer("FirmwareVersion FROM Site", {"FirmwareVersion"}, {{"6.62"}});
  run.channel.posts.clear();
  EXPECT_EQ(AllPartitionsRequest(parts).run(site_row(record)).result, RequestResult::kNotDone);
  EXPECT_EQ(run.requests(), "");
  EXPECT_THAT(run.ui.texts(), ElementsAre(StartsWith("No session is started: the site's firmware 6.62")));
  EXPECT_EQ(AllPartitionsRequest(parts).run(site_row(record), true).files.size(), 64U);
}

TEST_F(DeviceRequests, TellWhyOldStatisticsLeftNoFile) {
  EXPECT_EQ(statistics(), RequestResult::kDone);
  EXPECT_THAT(shown, ElementsAre("Stats3.csv"));
  run.components.answers["Get_Partition_Rows"] = "none";
  EXPECT_EQ(statistics(), RequestResult::kNotDone);
  EXPECT_EQ(shown.size(), 1U);
  ASSERT_EQ(run.ui.messages.size(), 1U);
  EXPECT_EQ(run.ui.messages[0].text, "The operation ended without a statistics file.");
  EXPECT_THAT(run.ui.messages[0].detail, HasSubstr("Partition 3 is not in the configuration"));
}

TEST_F(DeviceRequests, EndStatisticsAsTheSessionEnds) {
  EXPECT_EQ(statistics(operation::kResetStatistics), RequestResult::kDone);
  run.scheduler.result_file = "error.sch";
  EXPECT_EQ(statistics(operation::kResetStatistics), RequestResult::kNotDone);
  run.engine.answers.clear();
  run.engine.answer("FirmwareVersion FROM Site", {"FirmwareVersion"}, {{std::nullopt}});
  EXPECT_EQ(statistics(), RequestResult::kNotDone);
  EXPECT_EQ(run.session.site.FirmwareVersion, "0");
  EXPECT_THAT(shown, IsEmpty());
  EXPECT_FALSE(lock.held);
}

TEST_F(DeviceRequests, LeaveASessionOfAnotherProgramAlone) {
  lock.owner = "qvrcom (process 4711)";
  const auto before = run.files.content;
  EXPECT_EQ(statistics(), RequestResult::kBusy);
  EXPECT_EQ(run.files.content, before);
  EXPECT_THAT(run.ui.texts(),
              ElementsAre("Another communication session is running: qvrcom (process 4711)."));
  session::SessionGate patient(lock, run.ui, [this](const std::string&) {
    lock.owner.clear();
    return true;
  });
  EXPECT_NE(patient.enter(), nullptr);
  EXPECT_EQ(run.ui.messages.size(), 1U);
}

TEST_F(DeviceRequests, ReportAFailureWithoutItsDescription) {
  run.engine.refusal = "Database is locked";
  EXPECT_EQ(statistics(), RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre("ERROR! RetrieveStatSingPartition : "));
  EXPECT_FALSE(lock.held);
}

}  // namespace
}  // namespace qvrcom::control
