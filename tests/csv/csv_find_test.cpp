#include "csv/csv_find.h"

#include <gmock/gmock.h>

#include "doubles/memory_bytes.h"

namespace qvrcom::csv {
namespace {

struct Case {
  const char* text;
  CellPlace from;
  FindDirection direction;
  std::optional<CellPlace> found;
};

constexpr FindDirection kNext = FindDirection::kForward;
constexpr FindDirection kPrevious = FindDirection::kBackward;

// Lines of the table in file order (row 0 is the header):
//   0  Lobby,busy,x        1  caf\xE9,"say ""hi""",BUSY        2  lobby
const std::string kFile = "a,b,c\nLobby,busy,x\ncaf\xE9,\"say \"\"hi\"\"\",BUSY\nlobby\n";

TEST(CsvFind, GoesRoundTheTableOnce) {
  const Case cases[] = {
      {"lobby", {2, 0}, kNext, CellPlace{0, 0}},
      {"LOBBY", {0, 0}, kPrevious, CellPlace{2, 0}},
      {"busy", {0, 0}, kNext, CellPlace{0, 1}},
      {"busy", {0, 1}, kNext, CellPlace{1, 2}},
      {"busy", {1, 2}, kPrevious, CellPlace{0, 1}},
      {"x", {0, 2}, kNext, CellPlace{0, 2}},  // the starting cell comes last
      {"x", {0, 2}, kPrevious, CellPlace{0, 2}},
      {"y \"H", {0, 0}, kNext, CellPlace{1, 1}},
      {"CAF\xC3\x89", {2, 0}, kNext, CellPlace{1, 0}},
      {"lobby", {1, 9}, kPrevious, CellPlace{0, 0}},
      {"nowhere", {1, 1}, kNext, std::nullopt},
  };
  for (const Case& each : cases) {
    CsvFile file(std::make_unique<doubles::MemoryBytes>(kFile));
    file.index().index_all();
    const RowOrder order{1, 3};
    FindTask task(file, order, each.text, each.from, each.direction);
    while (task.step(1)) {
    }
    EXPECT_EQ(task.found(), each.found) << each.text << " from " << each.from.line << "," << each.from.column;
  }
}

TEST(CsvFind, FollowsTheShownOrder) {
  CsvFile file(std::make_unique<doubles::MemoryBytes>("n\n1 x\n2 x\n3\n"));
  file.index().index_all();
  const RowOrder order{1, 3, {3, 2, 1}};
  FindTask task(file, order, "x", {0, 0}, kNext);
  EXPECT_FALSE(task.step(10));
  EXPECT_EQ(task.found(), (CellPlace{1, 0}));
}

}  // namespace
}  // namespace qvrcom::csv
