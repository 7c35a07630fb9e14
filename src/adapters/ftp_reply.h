#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvrcom::adapters {

// Whether a line of the control connection ends a reply: three digits and a blank. The lines of a longer
// reply that stand before its last one have a "-" there, or anything.
bool ends_reply(std::string_view line);

// Whether a reply is of the kind of that digit: 1yz says that the data of a transfer follow, 2yz that all is
// done, 3yz asks for more, 4yz and 5yz refuse.
bool is_kind(std::string_view reply, char digit);
bool refuses(std::string_view reply);

// The number of a reply "213 1234"; nothing when anything else stands behind the code.
std::optional<std::uint64_t> size_in(std::string_view reply);

// `text` with "***" for `secret` wherever it stands as a word of its own, in any letter case: with no letter,
// digit or byte above 0x7F that would carry it on beside it.
std::string masked(std::string text, std::string_view secret);

// A secret so short that masking it would spoil texts that do not mean it, and is not done.
bool too_short_to_mask(std::string_view secret);

// The replies to one step of a session, line by line as they come in.
class StepReplies {
 public:
  enum class Step { kLogin, kCommand, kTransfer };

  explicit StepReplies(Step step) : step_(step) {}

  // A line with its end.
  void hear(std::string_view line);

  const std::string& last() const { return last_; }    // the last line of the last reply
  const std::string& stray() const { return stray_; }  // likewise, of the first that does not belong here

 private:
  bool belongs(std::string_view reply) const;

  Step step_;
  bool opened_ = false;  // the data of the transfer have been announced
  std::string last_;
  std::string stray_;
};

}  // namespace qvrcom::adapters
