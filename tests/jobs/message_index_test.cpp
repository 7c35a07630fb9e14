#include "jobs/message_index.h"

#include <gmock/gmock.h>

#include "doubles/memory_files.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::jobs {
namespace {

using testing::ElementsAre;

const std::string kHeader("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
const std::string kSeven("\xAA\xAA\0\x07\0\0\x01\x02", 8);
const std::string kNegative("\0\0\xFF\xFE\x80\0\0\0", 8);

TEST(MessageIndex, ReadsTheRecords) {
  const struct {
    const char* what;
    std::string bytes;
    std::vector<IndexedMessage> messages;
  } rows[] = {
      {"one byte more", kHeader + "x", {}},
      {"half a record rounds to none", kHeader + kSeven.substr(0, 4), {}},
      {"five eighths round to one", kHeader + kSeven.substr(0, 5), {{7, 0}}},
      {"signed", kHeader + kNegative, {{-2, -2'147'483'647 - 1}}},
      {"one and a half round to two", kHeader + kSeven + kSeven.substr(0, 4), {{7, 258}, {7, 0}}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(read_message_index(row.bytes), row.messages) << row.what;
}

TEST(MessageIndex, TakesTheNumbersOfAFileThatIsNotTooLarge) {
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  base::ReceivedValues received;
  MessageIndex index(received, files, ui);
  const auto numbers_of = [&](const std::string& bytes) {
    files.content["S:\\x"] = bytes;
    index.Process_MsgIndex("S:\\x");
    return received.MessageNumbers;
  };
  EXPECT_THAT(numbers_of(kHeader + kSeven + kNegative), ElementsAre("7", "-2", ""));
  EXPECT_THAT(numbers_of(kHeader), ElementsAre(""));
  EXPECT_EQ(numbers_of(std::string(kMessageIndexLimit, '\1')).size(), 65'537U);
  EXPECT_THAT(numbers_of(std::string(kMessageIndexLimit + 1, '\1')), ElementsAre(""));
  EXPECT_THAT(ui.texts(), ElementsAre("Error_Handler: Process_MsgIndex\r\nFile too large"));
}

}  // namespace
}  // namespace qvrcom::jobs
