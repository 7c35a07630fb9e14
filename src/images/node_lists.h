#pragma once

#include <string>
#include <vector>

#include "base/session_values.h"
#include "environment/command_set.h"
#include "platform/trap.h"

namespace qvrcom::images {

// An entry of a list that a user marks entries in.
struct ListItem {
  std::string text;
  bool selected = false;
  bool operator==(const ListItem&) const = default;
};
using ListItems = std::vector<ListItem>;

// The node names of a partition in the session's node lists, and the helpers of the screens that pick among
// them.
class NodeLists {
 public:
  NodeLists(base::NodeValues& nodes, environment::DBase& dbase, platform::UserInterface& ui)
      : nodes_(nodes), dbase_(dbase), trap_(ui, platform::kImagesTrap) {}

  // Reads one type's nodes of a partition. A partition without any clears the type's flag and leaves its
  // list; otherwise the list holds the new names alone.
  void Get_Node_List(base::NodeType type, const std::string& configuration, const std::string& partition);

  // Get_Node_List for every type, then Merge_Node_Lists.
  void Build_Node_Lists(const std::string& configuration, const std::string& partition);

  // Joins the lists whose flags are set into the list of all names, which follows the rule of the others.
  void Merge_Node_Lists();

  // What stands before the first "-": "12" of "12-Main greeting". A text without one is reported.
  std::string Head_Info(const std::string& text);

  // Move the selected entries of `source` to the end of `target`, where they are not selected.
  void Add_Items(ListItems& target, ListItems& source);
  void Remove_Items(ListItems& source, ListItems& target);

 private:
  base::NodeValues& nodes_;
  environment::DBase& dbase_;
  platform::Trap trap_;
};

}  // namespace qvrcom::images
