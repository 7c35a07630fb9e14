#include "images/node_lists.h"

#include <gmock/gmock.h>

#include "doubles/memory_data.h"

namespace qvrcom::images {
namespace {

using base::NodeType;
using testing::ElementsAre;

struct Parts : doubles::MemoryData {
  void nodes(const std::string& word, const std::vector<base::Field>& numbers) {
    std::vector<std::vector<base::Field>> rows;
    for (const base::Field& number : numbers)
      rows.push_back({number});
    engine.answer("FROM Node_" + word + " ", {"NodeNumber"}, rows);
  }
  base::NodeList& list(NodeType type) { return nodes_of.by_type[static_cast<std::size_t>(type)]; }

  base::NodeValues nodes_of;
  NodeLists lists{nodes_of, dbase, ui};
};

TEST(NodeLists, ListsEveryTypeInTheOrderOfTheTypes) {
  Parts parts;
  std::vector<std::string> all;
  for (const std::string_view word : base::kNodeTypeWords) {
    parts.nodes(std::string(word), {"1", "12"});
    all.insert(all.end(), {std::string(word) + "1", std::string(word) + "12"});
  }
  for (int round = 0; round < 2; ++round)
    parts.lists.Build_Node_Lists("1", "3");
  EXPECT_EQ(parts.nodes_of.all.names, all);
  EXPECT_THAT(parts.list(NodeType::kDir).names, ElementsAre("DIR1", "DIR12"));
  ASSERT_EQ(parts.engine.statements.size(), 32U);
  EXPECT_EQ(parts.engine.statements[31].values[0].value, "1");
  EXPECT_EQ(parts.engine.statements[31].values[1].value, "3");
}

TEST(NodeLists, KeepsTheListOfATypeWithoutNodes) {
  Parts parts;
  parts.nodes("MSG", {});
  parts.nodes("CMD", {"7", std::nullopt});
  parts.list(NodeType::kMsg) = {{"MSG1"}, true};
  parts.list(NodeType::kCmd) = {{"CMD1", "CMD2", "CMD3"}, false};
  parts.nodes_of.all = {{"before"}, true};
  parts.lists.Get_Node_List(NodeType::kMsg, "1", "3");
  EXPECT_THAT(parts.list(NodeType::kMsg).names, ElementsAre("MSG1"));
  parts.lists.Merge_Node_Lists();
  EXPECT_THAT(parts.nodes_of.all.names, ElementsAre("before"));
  parts.lists.Get_Node_List(NodeType::kCmd, "1", "3");
  parts.lists.Merge_Node_Lists();
  EXPECT_THAT(parts.list(NodeType::kCmd).names, ElementsAre("CMD7", "CMD"));
  EXPECT_THAT(parts.nodes_of.all.names, ElementsAre("CMD7", "CMD"));
}

TEST(NodeLists, CutsTheHeadOffAnEntry) {
  Parts parts;
  EXPECT_EQ(parts.lists.Head_Info("12-Main-greeting"), "12");
  EXPECT_EQ(parts.lists.Head_Info("-12"), "");
  EXPECT_EQ(parts.lists.Head_Info("12"), "");
}

TEST(NodeLists, MovesSelectedEntries) {
  Parts parts;
  ListItems source{{"a", true}, {"b"}, {"c", true}, {"d"}};
  ListItems target{{"z", true}};
  parts.lists.Add_Items(target, source);
  EXPECT_EQ(source, (ListItems{{"b"}, {"d"}}));
  EXPECT_EQ(target, (ListItems{{"z", true}, {"a"}, {"c"}}));
  parts.lists.Remove_Items(target, source);
  EXPECT_EQ(source, (ListItems{{"b"}, {"d"}, {"z"}}));
  EXPECT_EQ(target, (ListItems{{"a"}, {"c"}}));
}

}  // namespace
}  // namespace qvrcom::images
