#pragma once

#include <QString>
#include <cstdint>
#include <string>

class QPlainTextEdit;
class QWidget;

namespace qvrcom::ui {

// A text to read, select and copy: fixed width, lines as they are, Tab leaves it.
QPlainTextEdit* reading_text(const char* object_name, const QString& accessible_name, QWidget* parent);

// Bytes that may be no UTF-8: a device's log. Each byte is one character then.
QString text_of_bytes(const std::string& bytes);

// "12,345 bytes"
QString byte_count(std::uint64_t bytes);

}  // namespace qvrcom::ui
