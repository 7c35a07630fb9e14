#include "images/decoding.h"

#include <array>
#include <span>
#include <string_view>

#include "base/fault.h"

namespace qvrcom::images {
namespace {

constexpr const char* kConfigurationLookup = "QVRdb.Config";
constexpr std::string_view kSystemImage = "getdBaseSys.dat";
constexpr std::string_view kPartitionImage = "getdBaseP";
constexpr std::size_t kExtensionLength = 4;  // ".dat"

bool is_system_image(const std::string& file_name) {
  return file_name.find(kSystemImage) != std::string::npos;
}

// "" for a name that is not a partition image's.
std::string partition_of_image(const std::string& file_name) {
  const auto begin = file_name.find(kPartitionImage);
  if (begin == std::string::npos) return {};
  std::string partition = file_name.substr(begin + kPartitionImage.size());
  if (partition.size() < kExtensionLength) {
    throw base::Fault("Invalid procedure call or argument",
                      "\"" + file_name + "\" does not end in a partition and \".dat\".");
  }
  partition.resize(partition.size() - kExtensionLength);
  return partition;
}

}  // namespace

std::string answer_of(platform::Component& component, std::string_view operation,
                      std::initializer_list<std::string> arguments) {
  return component.call(operation, std::span(arguments.begin(), arguments.size())).value_or("");
}

void show_answer(platform::UserInterface& ui, const std::string& answer, const std::string& component,
                 const std::string& file_name) {
  ui.show({.text = answer, .detail = component + " did not decode " + file_name + ".", .is_fault = true});
}

StatisticsAnswers StatisticsDecoding::Process_PartStats_binary(const std::string& selector,
                                                               const std::string& partition,
                                                               const std::string& line_stat_file,
                                                               const std::string& node_stat_file) {
  return trap_("Process_PartStats_binary", [&] {
    const auto component = components_.create(kPartitionDecoder);
    ui_.pump_events();
    const std::string lines = answer_of(*component, "DecodeLineStats", {selector, partition, line_stat_file});
    const std::string nodes = answer_of(*component, "DecodeNodeStats", {selector, partition, node_stat_file});
    if (lines != kDone) {
      show_answer(ui_, lines, kPartitionDecoder, line_stat_file);
    } else if (nodes != kDone) {
      show_answer(ui_, nodes, kPartitionDecoder, node_stat_file);
    }
    return StatisticsAnswers{lines == kDone, nodes == kDone};
  });
}

void StatisticsDecoding::Process_Write_CSV(const std::string& selector, const std::string& partition) {
  trap_("Process_Write_CSV", [&] {
    const auto component = components_.create(kStatisticsWriter);
    ui_.pump_events();
    const std::string answer = answer_of(*component, "WriteStatsCsv", {selector, partition});
    if (answer.starts_with(kDone)) {
      run_.StatsResultFile = answer.substr(kDone.size());
      return;
    }
    ui_.show({.text = answer,
              .title = platform::kSuiteTitle,
              .icon = platform::Icon::kError,
              .detail = std::string(kStatisticsWriter) + " wrote no CSV for partition " + partition + "."});
  });
}

void ReceivedConfiguration::Write_Database(const std::string& file_name) {
  trap_("Write_Database", [&] {
    base::ReceivedValues& received = parts_.received;
    received.ReceivedPartitions.resize(1);
    if (is_system_image(file_name)) return Process_System_binary(parts_.run.SessionConfigID, file_name);
    const std::string partition = partition_of_image(file_name);
    if (!ExistPartID(partition)) return;
    Process_Partition_binary(parts_.run.SessionConfigID, partition, file_name);
    received.ReceivedPartitions.resize(received.PartitionCount + 2);
    received.ReceivedPartitions[received.PartitionCount++] = partition;
  });
}

void ReceivedConfiguration::Process_System_binary(const std::string& selector, const std::string& file_name) {
  trap_("Process_System_binary", [&] {
    const auto component = parts_.components.create(kSystemDecoder);
    parts_.ui.pump_events();
    const std::string answer = answer_of(*component, "DecodeSystemImage", {selector, file_name});
    parts_.received.SystemImageRead = answer == kDone;
    if (answer != kDone) show_answer(parts_.ui, answer, kSystemDecoder, file_name);
  });
}

void ReceivedConfiguration::Process_Partition_binary(const std::string& selector,
                                                     const std::string& partition,
                                                     const std::string& file_name) {
  trap_("Process_Partition_binary", [&] {
    const auto component = parts_.components.create(kPartitionDecoder);
    const std::string answer =
        answer_of(*component, "DecodePartitionImage", {selector, partition, parts_.site.SiteID, file_name});
    if (answer != kDone) show_answer(parts_.ui, answer, kPartitionDecoder, file_name);
  });
}

bool ReceivedConfiguration::ExistPartID(const std::string& partition) {
  return trap_("ExistPartID", [&] {
    const auto component = parts_.components.create(kConfigurationLookup);
    const std::array<std::string, 2> keys{parts_.run.SessionConfigID, partition};
    const auto answer = component->call("Get_Partition_Rows", keys);
    if (!answer) {
      throw base::Fault("Invalid use of Null",
                        std::string(kConfigurationLookup) + " has no answer to Get_Partition_Rows.");
    }
    return !parts_.xml_rows.load(*answer).empty();
  });
}

void ReceivedConfiguration::clear_received_partitions() {
  parts_.received.ReceivedPartitions.assign(1, {});
  parts_.received.PartitionCount = 0;
  parts_.received.SystemImageRead = false;
}

}  // namespace qvrcom::images
