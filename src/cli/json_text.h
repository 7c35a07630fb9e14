#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_serial.h"
#include "base/rows.h"

namespace qvrcom::cli {

// Texts as JSON values; bytes that are no UTF-8 become U+FFFD.
QJsonValue json(std::string_view text);
QJsonValue json_or_null(const base::Field& field);

// "2026-11-15T12:10:05"
QJsonValue json_moment(base::LocalTime moment);

// A value, a text with its quotation marks, and texts as an array, on one line: for what is too long to be
// built as a whole first.
std::string json_value_text(const QJsonValue& value);
std::string json_text(std::string_view text);
std::string json_line(const std::vector<std::string>& texts);

// Indented, with a line end; an object's keys in alphabetical order. Here as there, no control character of
// any kind stands raw.
std::string json_document(const QJsonArray& array);
std::string json_document(const QJsonObject& object);

}  // namespace qvrcom::cli
