#include "jobs/message_index.h"

#include <gmock/gmock.h>

#include "doubles/memory_files.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::jobs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kHeader("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
const std::string kSeven("\xAA\xAA\0\x07\0\0\x01\x02", 8);
const std::string kNegative("\0\0\xFF\xFE\x80\0\0\0", 8);

struct Parts {
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  base::ReceivedValues received;
  MessageIndex index{received, files, ui};
};

TEST(MessageIndex, ReadsTheRecords) {
  const struct {
    const char* what;
    std::string bytes;
    std::vector<IndexedMessage> messages;
  } rows[] = {
      {"empty", "", {}},
      {"header", kHeader, {}},
      {"one byte more", kHeader + "x", {}},
      {"half a record rounds to none", kHeader + kSeven.substr(0, 4), {}},
      {"five eighths round to one", kHeader + kSeven.substr(0, 5), {{7, 0}}},
      {"one", kHeader + kSeven, {{7, 258}}},
      {"signed", kHeader + kNegative, {{-2, -2'147'483'647 - 1}}},
      {"one and a half round to two", kHeader + kSeven + kSeven.substr(0, 4), {{7, 258}, {7, 0}}},
      {"two and a half round to two", kHeader + kSeven + kSeven + kSeven.substr(0, 4), {{7, 258}, {7, 258}}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(read_message_index(row.bytes), row.messages) << row.what;
    Parts parts;
    parts.received.MessageNumbers = {"1", "2", ""};
    parts.files.content["S:\\msgindexP3.dat"] = row.bytes;
    parts.index.Process_MsgIndex("S:\\msgindexP3.dat");
    std::vector<std::string> numbers;
    for (const IndexedMessage& message : row.messages)
      numbers.push_back(std::to_string(message.number));
    numbers.emplace_back();
    EXPECT_EQ(parts.received.MessageNumbers, numbers) << row.what;
    EXPECT_THAT(parts.ui.messages, IsEmpty());
  }
}

TEST(MessageIndex, ReportsFilesThatAreNone) {
  Parts parts;
  parts.received.MessageNumbers = {"1", "2", ""};
  parts.index.Process_MsgIndex("S:\\x");
  EXPECT_THAT(parts.received.MessageNumbers, ElementsAre(""));
  parts.files.content["S:\\x"] = std::string(kMessageIndexLimit, '\1');
  parts.index.Process_MsgIndex("S:\\x");
  EXPECT_EQ(parts.received.MessageNumbers.size(), 65'537U);
  parts.files.content["S:\\x"] += '\1';
  parts.index.Process_MsgIndex("S:\\x");
  EXPECT_THAT(parts.received.MessageNumbers, ElementsAre(""));
  EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: Process_MsgIndex\r\nFile not found",
                                            "Error_Handler: Process_MsgIndex\r\nFile too large"));
  EXPECT_EQ(parts.ui.messages[0].icon, platform::Icon::kNone);
}

}  // namespace
}  // namespace qvrcom::jobs
