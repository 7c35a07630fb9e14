#include <gmock/gmock.h>

#include "adapters/ftp_reply.h"
#include "adapters/telnet_protocol.h"
#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

using std::string_literals::operator""s;

// What a session makes of it: what the user sees and what the device gets.
struct Terminal {
  std::string shown;
  std::string sent;
  TelnetProtocol telnet{{[this](std::string_view bytes) { sent += bytes; },
                         [this](std::string_view bytes) { shown += bytes; },
                         [this](bool on) { shown += on ? "<echo>" : "<no echo>"; }}};
};

TEST(TelnetProtocol, NegotiatesWhatATerminalCan) {
  const struct {
    const char* name;
    std::string device;
    std::string sent;
    std::string shown;
  } rows[] = {
      {"echo", "\xFF\xFB\x01pw\xFF\xFC\x01"s, "\xFF\xFD\x01\xFF\xFE\x01"s, "<echo>pw<no echo>"},
      {"go-ahead both ways", "\xFF\xFB\x03\xFF\xFD\x03"s, "\xFF\xFD\x03\xFF\xFB\x03"s, ""},
      {"window size", "\xFF\xFD\x1F"s, "\xFF\xFB\x1F\xFF\xFA\x1F\0\x50\0\x18\xFF\xF0"s, ""},
      {"terminal type", "\xFF\xFD\x18\xFF\xFA\x18\x01\xFF\xF0"s, "\xFF\xFB\x18\xFF\xFA\x18\0VT100\xFF\xF0"s,
       ""},
      {"asked twice, answered once", "\xFF\xFB\x01\xFF\xFB\x01"s, "\xFF\xFD\x01"s, "<echo>"},
      {"the rest is declined", "\xFF\xFD\x27\xFF\xFB\x56\xFF\xFD\x01"s,
       "\xFF\xFC\x27\xFF\xFE\x56\xFF\xFC\x01"s, ""},
      {"line ends and 255", "a\r\nb\r\0c\0\xFF\xFF\xFF\xF9"s, "", "a\r\nb\rc\0\xFF"s},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    for (const std::size_t step : {std::size_t{1}, row.device.size()}) {
      Terminal terminal;
      for (std::size_t at = 0; at < row.device.size(); at += step)
        terminal.telnet.received(std::string_view(row.device).substr(at, step));
      EXPECT_EQ(terminal.sent, row.sent);
      EXPECT_EQ(terminal.shown, row.shown);
    }
  }
}

TEST(TelnetProtocol, SendsWhatIsTyped) {
  Terminal terminal;
  for (const std::string& piece : {"a\r"s, "\nb\nc\r\r\n\xFF"s})
    terminal.telnet.typed(piece);
  EXPECT_EQ(terminal.sent, "a\r\nb\r\nc\r\n\r\n\xFF\xFF");
  terminal.sent.clear();
  terminal.telnet.resized(300, 40);
  EXPECT_EQ(terminal.sent, "") << "nobody asked";
  terminal.telnet.received("\xFF\xFD\x1F"s);
  terminal.telnet.resized(255, 1);
  EXPECT_EQ(terminal.sent,
            "\xFF\xFB\x1F\xFF\xFA\x1F\x01\x2C\0\x28\xFF\xF0\xFF\xFA\x1F\0\xFF\xFF\0\x01\xFF\xF0"s);
}

TEST(TelnetProtocol, RefusesCompression) {
  Terminal terminal;
  EXPECT_THROW(terminal.telnet.received("\xFF\xFA\x56\xFF\xF0x\x9C"s), base::Fault);
  EXPECT_EQ(terminal.shown, "");
  EXPECT_THROW(terminal.telnet.received("x"), base::Fault) << "nothing behind it can be read";
}

TEST(FtpReply, MasksWholeWordsAlone) {
  const struct {
    const char* secret;
    const char* text;
    const char* shown;
  } rows[] = {
      {"5150", "530 5150, 5150: \"5150\"", "530 ***, ***: \"***\""},
      {"5150", "530 51500 a5150 5150\xC3\xA4", "530 51500 a5150 5150\xC3\xA4"},
      {"Open Sesame", "530 OPEN SESAME open sesames", "530 *** open sesames"},
      {"#code", "530 x#code #coded", "530 x*** #coded"},
      {"", "530 No", "530 No"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(masked(row.text, row.secret), row.shown);
  EXPECT_TRUE(too_short_to_mask("\xC3\xA4\xC3\xA4x"));  // characters count, not bytes
  EXPECT_FALSE(too_short_to_mask("5150"));
  EXPECT_FALSE(too_short_to_mask(""));
}

TEST(FtpReply, TellsWhatDoesNotBelongToAStep) {
  using Step = StepReplies::Step;
  const struct {
    Step step;
    std::vector<std::string> lines;
    const char* stray;
  } rows[] = {
      {Step::kLogin, {"220-Hello\r\n", "220 Hello\r\n", "331 Code?\r\n", "230 In\r\n"}, ""},
      {Step::kCommand, {"331 More?\r\n"}, "331 More?"},
      {Step::kCommand, {"150 Coming\r\n", "999 x\r\n"}, "150 Coming"},
      {Step::kTransfer, {"150 Coming\r\n", "226 Done\r\n"}, ""},
      {Step::kTransfer, {"150 Coming\r\n", "150 Again\r\n"}, "150 Again"},
  };
  for (const auto& row : rows) {
    StepReplies replies(row.step);
    for (const std::string& line : row.lines)
      replies.hear(line);
    EXPECT_EQ(replies.stray(), row.stray);
    EXPECT_EQ(replies.last() + "\r\n", row.lines.back());
  }
}

TEST(FtpReply, TakesNothingButANumberForASize) {
  EXPECT_EQ(size_in("213 20000 "), 20000U);
  EXPECT_EQ(size_in("213 0"), 0U);
  for (const char* reply : {"213 -5", "213 +5", "213 5 bytes", "213 ", "212 5", "213 18446744073709551616"})
    EXPECT_EQ(size_in(reply), std::nullopt) << reply;
}

}  // namespace
}  // namespace qvrcom::adapters
