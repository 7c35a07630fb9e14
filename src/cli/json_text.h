#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <string>
#include <string_view>

#include "base/rows.h"

namespace qvrcom::cli {

// Texts as JSON values; bytes that are no UTF-8 become U+FFFD.
QJsonValue json(std::string_view text);
QJsonValue json_or_null(const base::Field& field);

// A text with its quotation marks.
std::string json_text(std::string_view text);

// On one line, or indented with a line end; an object's keys in alphabetical order. No control character of
// any kind stands in it raw.
std::string json_line(const QJsonArray& array);
std::string json_document(const QJsonArray& array);
std::string json_document(const QJsonObject& object);

}  // namespace qvrcom::cli
