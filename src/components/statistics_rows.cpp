#include "components/statistics_rows.h"

#include <utility>

#include "environment/statistics_tables.h"

namespace qvrcom::components {
namespace {

using devicefiles::NodeName;
using environment::StatisticsSource;

void remove_rows(platform::Database& database, const PartitionKey& key, StatisticsSource source) {
  for (const environment::StatisticsTable& table : environment::statistics_tables()) {
    if (table.source != source) continue;
    run(database, "DELETE FROM " + std::string(table.name) + " WHERE ConfigID = :p1 AND PartitionID = :p2",
        {key.configuration, key.partition});
  }
}

// Adds rows to statistics tables: the head of every row is the same.
class StatisticsWriter {
 public:
  StatisticsWriter(platform::Database& database, const PartitionKey& key,
                   const devicefiles::CountedTime& counted)
      : database_(database),
        head_{key.configuration, key.partition, session_site(database), base::clock_text(counted.since),
              base::clock_text(counted.until)} {}

  // `fields_of` answers with the fields behind the head.
  template <class Values, class FieldsOf>
  void add(const char* table, const Values& values, FieldsOf fields_of) {
    RowInserter rows(database_, table, environment::statistics_columns(environment::statistics_table(table)));
    for (const auto& value : values) {
      std::vector<base::Field> fields = head_;
      for (base::Field& field : fields_of(value))
        fields.push_back(std::move(field));
      rows.add(std::move(fields));
    }
  }

 private:
  platform::Database& database_;
  std::vector<base::Field> head_;
};

using Fields = std::vector<base::Field>;

std::string word(const NodeName& node) {
  return std::string(devicefiles::node_type_word(node.type));
}

// The tables of one type of selecting node.
struct SelectionTables {
  std::uint32_t type;
  const char* counts;
  const char* details;
};

constexpr SelectionTables kSelectionTables[] = {
    {devicefiles::kAutoNode, "Stats_Auto_Selection_Counts", "Stats_Detail_Auto"},
    {devicefiles::kDtmfNode, "Stats_DTMF_Selection_Counts", "Stats_Detail_DTMF"},
    {devicefiles::kVoxNode, "Stats_VOX_Selection_Counts", "Stats_Detail_VOX"},
};

template <class Values>
Values of_type(const Values& values, std::uint32_t type) {
  Values found;
  for (const auto& value : values) {
    if (value.node.type == type) found.push_back(value);
  }
  return found;
}

Fields detail_fields(const devicefiles::SelectionDetail& one) {
  const bool stays = one.leads_to != NodeName{};
  return {number_field(one.node.number),
          one.choice,
          stays ? base::Field(word(one.leads_to)) : std::nullopt,
          stays ? number_field(one.leads_to.number) : std::nullopt,
          number_field(one.first_try),
          number_field(one.later_tries)};
}

void add_selections(StatisticsWriter& writer, const devicefiles::NodeStatistics& statistics) {
  for (const SelectionTables& tables : kSelectionTables) {
    writer.add(tables.counts, of_type(statistics.counts, tables.type),
               [](const devicefiles::SelectionCount& one) {
                 return Fields{number_field(one.node.number), one.choice, number_field(one.selections)};
               });
    writer.add(tables.details, of_type(statistics.details, tables.type), detail_fields);
  }
}

}  // namespace

base::Field session_site(platform::Database& database) {
  const base::Rows rows = database.run("SELECT SiteID FROM SessionQVR");
  return rows.empty() ? std::nullopt : rows[0]["SiteID"];
}

void remove_line_statistics(platform::Database& database, const PartitionKey& key) {
  database.transaction([&] { remove_rows(database, key, StatisticsSource::kLines); });
}

void remove_node_statistics(platform::Database& database, const PartitionKey& key) {
  database.transaction([&] { remove_rows(database, key, StatisticsSource::kNodes); });
}

void store_line_statistics(platform::Database& database, const PartitionKey& key,
                           const devicefiles::LineStatistics& statistics) {
  database.transaction([&] {
    remove_rows(database, key, StatisticsSource::kLines);
    StatisticsWriter writer(database, key, statistics.counted);
    writer.add("Stats_Line_Call_Counts", statistics.calls, [](const devicefiles::LineCalls& one) {
      return Fields{number_field(one.line),   number_field(one.calls),     number_field(one.answered),
                    number_field(one.busy),   number_field(one.no_answer), number_field(one.seconds),
                    number_field(one.longest)};
    });
    writer.add("Stats_Line_XFER_Counts", statistics.transfers, [](const devicefiles::LineTransfers& one) {
      return Fields{number_field(one.line), number_field(one.transfers)};
    });
    writer.add("Stats_Simultaneous_Lines_Active", statistics.active, [](const devicefiles::LinesActive& one) {
      return Fields{number_field(one.lines), number_field(one.times), number_field(one.seconds)};
    });
  });
}

void store_node_statistics(platform::Database& database, const PartitionKey& key,
                           const devicefiles::NodeStatistics& statistics) {
  database.transaction([&] {
    remove_rows(database, key, StatisticsSource::kNodes);
    StatisticsWriter writer(database, key, statistics.counted);
    writer.add("Stats_Node_Access", statistics.accesses, [](const devicefiles::NodeAccess& one) {
      return Fields{word(one.node), number_field(one.node.number), one.description,
                    number_field(one.accesses)};
    });
    writer.add("Stats_Selections_Made", statistics.selections, [](const devicefiles::NodeSelections& one) {
      return Fields{word(one.node),
                    number_field(one.node.number),
                    number_field(one.made),
                    number_field(one.invalid),
                    number_field(one.timed_out),
                    number_field(one.aborted)};
    });
    add_selections(writer, statistics);
  });
}

}  // namespace qvrcom::components
