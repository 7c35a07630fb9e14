#include "cli/json_text.h"

#include <QJsonDocument>
#include <algorithm>

namespace qvrcom::cli {
namespace {

// JSON may hold DEL and the 8-bit controls as they are; a terminal should not.
std::string without_raw_controls(const QByteArray& json) {
  std::string safe;
  safe.reserve(static_cast<std::size_t>(json.size()));
  for (qsizetype i = 0; i < json.size(); ++i) {
    const auto byte = static_cast<unsigned char>(json[i]);
    const bool two_bytes =
        byte == 0xC2 && i + 1 < json.size() && static_cast<unsigned char>(json[i + 1]) < 0xA0;
    if (byte != 0x7F && !two_bytes) {
      safe += json[i];
      continue;
    }
    const auto code = two_bytes ? static_cast<unsigned char>(json[++i]) : byte;
    safe += "\\u00" + QByteArray::number(code, 16).toStdString();
  }
  return safe;
}

// Printable ASCII that JSON leaves as it is.
bool is_plain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char byte) { return byte >= ' ' && byte < 0x7F && byte != '"' && byte != '\\'; });
}

std::string to_text(const QJsonDocument& document, QJsonDocument::JsonFormat format) {
  return without_raw_controls(document.toJson(format));
}

}  // namespace

QJsonValue json(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QJsonValue json_or_null(const base::Field& field) {
  return field ? json(std::string_view(*field)) : QJsonValue();
}

QJsonValue json_moment(base::LocalTime moment) {
  std::string text = base::clock_text(moment);
  text[text.find(' ')] = 'T';
  return json(text);
}

std::string json_value_text(const QJsonValue& value) {
  const std::string array = to_text(QJsonDocument(QJsonArray{value}), QJsonDocument::Compact);
  return array.substr(1, array.size() - 2);
}

std::string json_text(std::string_view text) {
  return is_plain(text) ? '"' + std::string(text) + '"' : json_value_text(json(text));
}

std::string json_line(const std::vector<std::string>& texts) {
  std::string line = "[";
  for (const std::string& text : texts) {
    if (line.size() > 1) line += ',';
    line += json_text(text);
  }
  return line + ']';
}

std::string json_document(const QJsonArray& array) {
  return to_text(QJsonDocument(array), QJsonDocument::Indented);
}

std::string json_document(const QJsonObject& object) {
  return to_text(QJsonDocument(object), QJsonDocument::Indented);
}

}  // namespace qvrcom::cli
