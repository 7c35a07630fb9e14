#include "images/statistics_decoding.h"

#include "images/component_answer.h"

namespace qvrcom::images {
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

}  // namespace qvrcom::images
