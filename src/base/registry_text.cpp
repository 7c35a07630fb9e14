#include "base/registry_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::base {
namespace {

constexpr std::string_view kSignature = "REGEDIT4";
constexpr auto kText = RegistryData::kText;
constexpr auto kBinary = RegistryData::kBinary;
constexpr auto kNumber = RegistryData::kNumber;

[[noreturn]] void refuse(std::size_t line, std::string_view reason) {
  throw Fault("Invalid settings file", "Line " + std::to_string(line) + ": " + std::string(reason) +
                                           ". Run set-up again or mend the line.");
}

std::uint32_t hexadecimal(std::string_view digits, std::size_t line) {
  std::uint32_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (digits.empty() || result.ec != std::errc{} || result.ptr != digits.data() + digits.size()) {
    refuse(line, "\"" + std::string(digits) + "\" is not a hexadecimal number");
  }
  return value;
}

// Takes a quoted text off the front of `rest`.
std::string take_quoted(std::string_view& rest, std::size_t line) {
  std::string text;
  if (!rest.starts_with('"')) refuse(line, "a quotation mark is missing");
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] == '"') {
      rest.remove_prefix(i + 1);
      return text;
    }
    if (rest[i] == '\\' && ++i == rest.size()) break;
    text.push_back(rest[i]);
  }
  refuse(line, "a text has no end");
}

std::string little_endian(std::uint32_t number) {
  std::string bytes;
  for (unsigned shift = 0; shift < 32; shift += 8)
    bytes.push_back(static_cast<char>((number >> shift) & 0xFFU));
  return bytes;
}

std::string hex_bytes(std::string_view list, std::size_t line) {
  std::string bytes;
  if (list.empty()) return bytes;
  for (const std::string_view item : split(list, ",")) {
    const std::uint32_t byte = hexadecimal(trim(item), line);
    if (byte > 0xFF) refuse(line, "a byte is out of range");
    bytes.push_back(static_cast<char>(byte));
  }
  return bytes;
}

RegistryData value_of(std::string_view rest, std::size_t line) {
  if (rest.starts_with('"')) {
    std::string text = take_quoted(rest, line);
    if (!trim(rest).empty()) refuse(line, "there is more behind the text");
    text.push_back('\0');
    return {kText, std::move(text)};
  }
  if (rest.starts_with("dword:")) return {kNumber, little_endian(hexadecimal(rest.substr(6), line))};
  if (rest.starts_with("hex:")) return {kBinary, hex_bytes(rest.substr(4), line)};
  const auto close = rest.find("):");
  if (rest.starts_with("hex(") && close != std::string_view::npos) {
    return {hexadecimal(rest.substr(4, close - 4), line), hex_bytes(rest.substr(close + 2), line)};
  }
  refuse(line, "the value is of no known form");
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result.push_back('\\');
    result.push_back(c);
  }
  return result + '"';
}

std::string hex_list(std::string_view bytes) {
  std::string list;
  std::array<char, 4> item{};
  for (const char byte : bytes) {
    std::snprintf(item.data(), item.size(), "%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    list.append(list.empty() ? "" : ",").append(item.data());
  }
  return list;
}

bool is_plain_text(const RegistryData& data) {
  return data.type == kText && data.bytes.ends_with('\0') &&
         !has_control_character(std::string_view(data.bytes).substr(0, data.bytes.size() - 1));
}

std::string form_of(const RegistryData& data) {
  if (is_plain_text(data)) return quoted(std::string_view(data.bytes).substr(0, data.bytes.size() - 1));
  if (data.type == kBinary) return "hex:" + hex_list(data.bytes);
  std::array<char, 16> type{};
  std::snprintf(type.data(), type.size(), "hex(%x):", data.type);
  return type.data() + hex_list(data.bytes);
}

// Physical lines joined where one ends in a continuation backslash, each with the number of its first line.
std::vector<std::pair<std::size_t, std::string>> logical_lines(std::string_view text) {
  std::vector<std::pair<std::size_t, std::string>> lines;
  bool continues = false;
  std::size_t number = 0;
  for (std::string_view line : lines_of(text)) {
    ++number;
    line = trim(line);
    const bool more = line.ends_with(",\\");
    if (more) line.remove_suffix(1);
    if (continues) {
      lines.back().second += line;
    } else {
      lines.emplace_back(number, line);
    }
    continues = more;
  }
  return lines;
}

}  // namespace

bool RegistryText::IgnoringCase::operator()(const std::string& left, const std::string& right) const {
  return to_upper(left) < to_upper(right);
}

RegistryText RegistryText::parse(std::string_view text) {
  RegistryText registry;
  Values* values = nullptr;
  bool signed_text = false;
  for (const auto& [number, line] : logical_lines(text)) {
    if (line.empty() || line.starts_with(';')) continue;
    if (!signed_text) {
      if (line != kSignature) refuse(number, "the file does not begin with REGEDIT4");
      signed_text = true;
    } else if (line.starts_with('[') && line.ends_with(']')) {
      values = &registry.keys_[line.substr(1, line.size() - 2)];
    } else {
      if (values == nullptr) refuse(number, "a value stands before the first key");
      std::string_view rest = line;
      const std::string name = take_quoted(rest, number);
      if (!rest.starts_with('=')) refuse(number, "an equals sign is missing");
      (*values)[name] = value_of(rest.substr(1), number);
    }
  }
  return registry;
}

std::string RegistryText::text() const {
  std::string text = std::string(kSignature) + "\r\n";
  for (const auto& [key, values] : keys_) {
    text += "\r\n[" + key + "]\r\n";
    for (const auto& [name, data] : values)
      text += quoted(name) + "=" + form_of(data) + "\r\n";
  }
  return text;
}

bool RegistryText::has_key(std::string_view key) const {
  return keys_.contains(std::string(key));
}

std::optional<RegistryData> RegistryText::value(std::string_view key, std::string_view name) const {
  const auto values = keys_.find(std::string(key));
  if (values == keys_.end()) return std::nullopt;
  const auto found = values->second.find(std::string(name));
  if (found == values->second.end()) return std::nullopt;
  return found->second;
}

void RegistryText::set_text(std::string_view key, std::string_view name, std::string_view text) {
  keys_[std::string(key)][std::string(name)] = {kText, std::string(text) + '\0'};
}

}  // namespace qvrcom::base
