#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "base/date_serial.h"

class QDateTime;
class QWidget;

namespace qvrcom::ui {

// Between the core's UTF-8 texts and Qt's.
QString qt_text(std::string_view text);
std::string utf8(const QString& text);

// The one form of a date on the screen: "2026-11-15 12:10:05".
QString moment_text(base::LocalTime moment);
QString moment_text(const QDateTime& moment);

// The same moment as Qt counts it.
QDateTime qt_moment(base::LocalTime moment);

// A caption as it is seen: without the "&" in front of its mnemonic.
QString shown_caption(QString caption);

// Gives captions a mnemonic each, the first letter of the caption that is still free.
class Mnemonics {
 public:
  // `taken`: letters that the window uses already, upper case.
  explicit Mnemonics(QString taken = {}) : taken_(std::move(taken)) {}

  // The caption with its "&"; unchanged when all its letters are taken.
  QString give(const QString& caption);

 private:
  QString taken_;
};

// The suite's font for frames and lists, where the machine has it; the system's own otherwise.
void use_suite_font(QWidget& widget);

}  // namespace qvrcom::ui
