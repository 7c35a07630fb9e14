#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// The one state machine that every reader of CSV bytes uses: the index, the rows on demand and the small
// in-memory parser differ only in what they do with the events.
//
//   separator    a comma outside quotes
//   quotes       a quotation mark opens a quoted field only as the field's first byte; inside, two of them
//                stand for one; what follows the closing one up to the separator is kept as it stands
//   record end   CR LF, LF or a lone CR outside quotes; an end at the very end of the text adds no record
//   empty line   a record of one empty field
//   end of text  ends the record, also inside an unclosed quote
//
// All other bytes, NUL among them, are content.
namespace qvrcom::csv {

inline constexpr char kSeparator = ',';
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Sink: begin_record(std::uint64_t offset), content(std::string_view piece), end_field(), end_record().
// Bytes may come in pieces cut anywhere; a field's content may come in several pieces. A sink may also have
// quoted_content(piece), which then gets what stands in quotation marks, and text_behind_quote().
template <class Sink>
class RecordScanner {
 public:
  // `offset` is the place of the first byte that will be fed.
  explicit RecordScanner(Sink& sink, std::uint64_t offset = 0) : sink_(sink), offset_(offset) {}

  void feed(std::string_view bytes) {
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    while (at != end)
      at = step(at, end);
  }

  // Answers whether the last field's quotation mark was never closed.
  bool finish() {
    const bool unclosed = state_ == State::kQuoted;
    if (state_ != State::kRecordStart && state_ != State::kAfterCr) end_record(State::kRecordStart);
    return unclosed;
  }

 private:
  enum class State { kRecordStart, kAfterCr, kFieldStart, kPlain, kQuoted, kQuoteInQuoted };

  static constexpr std::array<bool, 256> endings() {
    std::array<bool, 256> table{};
    table[static_cast<unsigned char>(kSeparator)] = table['\r'] = table['\n'] = true;
    return table;
  }
  static constexpr std::array<bool, 256> kEnding = endings();

  static bool ends_plain(char byte) { return kEnding[static_cast<unsigned char>(byte)]; }

  const char* step(const char* at, const char* end) {
    switch (state_) {
      case State::kAfterCr:
        state_ = State::kRecordStart;
        if (*at == '\n') return consume(at, 1);
        [[fallthrough]];
      case State::kRecordStart:
        sink_.begin_record(offset_);
        state_ = State::kFieldStart;
        [[fallthrough]];
      case State::kFieldStart:
        if (*at == '"') return enter(State::kQuoted, at);
        state_ = State::kPlain;
        [[fallthrough]];
      case State::kPlain:
        return plain(at, end);
      case State::kQuoted:
        return quoted(at, end);
      case State::kQuoteInQuoted:
        break;
    }
    if (*at != '"') {
      if constexpr (requires { sink_.text_behind_quote(); })
        if (!ends_plain(*at)) sink_.text_behind_quote();
      state_ = State::kPlain;
      return at;
    }
    sink_.content({at, 1});
    return enter(State::kQuoted, at);
  }

  const char* plain(const char* at, const char* end) {
    const char* stop = at;
    while (stop != end && !ends_plain(*stop))
      ++stop;
    if (stop != at) {
      const auto length = static_cast<std::size_t>(stop - at);
      sink_.content({at, length});
      offset_ += length;
    }
    if (stop == end) return end;
    if (*stop == kSeparator) {
      sink_.end_field();
      state_ = State::kFieldStart;
    } else {
      end_record(*stop == '\r' ? State::kAfterCr : State::kRecordStart);
    }
    return consume(stop, 1);
  }

  const char* quoted(const char* at, const char* end) {
    const auto left = static_cast<std::size_t>(end - at);
    const auto* mark = static_cast<const char*>(std::memchr(at, '"', left));
    const std::size_t length = mark == nullptr ? left : static_cast<std::size_t>(mark - at);
    if constexpr (requires { sink_.quoted_content(std::string_view()); }) {
      if (length != 0) sink_.quoted_content({at, length});
    } else {
      if (length != 0) sink_.content({at, length});
    }
    if (mark == nullptr) return consume(at, length);
    offset_ += length;
    return enter(State::kQuoteInQuoted, mark);
  }

  const char* enter(State state, const char* at) {
    state_ = state;
    return consume(at, 1);
  }

  const char* consume(const char* at, std::size_t count) {
    offset_ += count;
    return at + count;
  }

  void end_record(State next) {
    sink_.end_field();
    sink_.end_record();
    state_ = next;
  }

  Sink& sink_;
  std::uint64_t offset_;
  State state_ = State::kRecordStart;
};

}  // namespace qvrcom::csv
