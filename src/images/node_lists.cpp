#include "images/node_lists.h"

#include <cstddef>
#include <utility>

#include "base/fault.h"

namespace qvrcom::images {
namespace {

// The first new name empties the list.
void enter(base::NodeList& list, std::string name) {
  if (!std::exchange(list.has_any, true)) list.names.clear();
  list.names.push_back(std::move(name));
}

void move_selected(ListItems& source, ListItems& target) {
  ListItems kept;
  for (ListItem& item : source) {
    if (item.selected) {
      target.push_back({std::move(item.text), false});
    } else {
      kept.push_back(std::move(item));
    }
  }
  source = std::move(kept);
}

}  // namespace

void NodeLists::Get_Node_List(base::NodeType type, const std::string& configuration,
                              const std::string& partition) {
  const std::string word(base::node_type_word(type));
  trap_("Get_Node_List_" + word, [&] {
    base::NodeList& list = nodes_.by_type[static_cast<std::size_t>(type)];
    list.has_any = false;
    for (const base::Row row : dbase_.run("Get_Node_" + word, {configuration, partition}))
      enter(list, word + row.text("NodeNumber"));
  });
}

void NodeLists::Build_Node_Lists(const std::string& configuration, const std::string& partition) {
  for (std::size_t type = 0; type < base::kNodeTypeWords.size(); ++type)
    Get_Node_List(static_cast<base::NodeType>(type), configuration, partition);
  Merge_Node_Lists();
}

void NodeLists::Merge_Node_Lists() {
  nodes_.all.has_any = false;
  for (const base::NodeList& list : nodes_.by_type) {
    if (!list.has_any) continue;
    for (const std::string& name : list.names)
      enter(nodes_.all, name);
  }
}

std::string NodeLists::Head_Info(const std::string& text) {
  return trap_("Head_Info", [&] {
    const auto end = text.find('-');
    if (end == std::string::npos) {
      throw base::Fault("Invalid procedure call or argument", "\"" + text + "\" has no \"-\".");
    }
    return text.substr(0, end);
  });
}

void NodeLists::Add_Items(ListItems& target, ListItems& source) {
  move_selected(source, target);
}
void NodeLists::Remove_Items(ListItems& source, ListItems& target) {
  move_selected(source, target);
}

}  // namespace qvrcom::images
