#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

// The text form in which registry values are exported, with one-byte texts:
//   REGEDIT4
//
//   [HKEY_LOCAL_MACHINE\SOFTWARE\...]
//   "Name"="text, \\ and \" escaped"     type 1
//   "Name"=hex:00,ff                     type 3
//   "Name"=dword:0000002a                type 4
//   "Name"=hex(7):61,00,00               any other type, by its number in hexadecimal
namespace qvrcom::base {

// One value: the system's type number and its bytes, terminators included (a text ends in one NUL).
struct RegistryData {
  enum Type : std::uint32_t { kText = 1, kExpandableText = 2, kBinary = 3, kNumber = 4, kMultiText = 7 };

  std::uint32_t type = 0;
  std::string bytes;
  bool operator==(const RegistryData&) const = default;
};

class RegistryText {
 public:
  // Fault that names the line when the text is not of this form. An empty text is an empty registry.
  static RegistryText parse(std::string_view text);
  std::string text() const;

  // Keys and names are compared without regard to ASCII case.
  bool has_key(std::string_view key) const;
  std::optional<RegistryData> value(std::string_view key, std::string_view name) const;
  void set_text(std::string_view key, std::string_view name, std::string_view text);

 private:
  struct IgnoringCase {
    bool operator()(const std::string& left, const std::string& right) const;
  };
  using Values = std::map<std::string, RegistryData, IgnoringCase>;
  std::map<std::string, Values, IgnoringCase> keys_;
};

}  // namespace qvrcom::base
