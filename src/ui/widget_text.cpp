#include "ui/widget_text.h"

#include <QFontDatabase>
#include <QWidget>

namespace qvrcom::ui {

QString qt_text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string utf8(const QString& text) {
  return text.toStdString();
}

QString shown_caption(QString caption) {
  return caption.remove(QLatin1Char('&'));
}

QString Mnemonics::give(const QString& caption) {
  for (qsizetype i = 0; i < caption.size(); ++i) {
    const QChar letter = caption[i].toUpper();
    if (!letter.isLetter() || taken_.contains(letter)) continue;
    taken_ += letter;
    return caption.left(i) + QLatin1Char('&') + caption.mid(i);
  }
  return caption;
}

void use_suite_font(QWidget& widget) {
  static const QString family = QStringLiteral("Tahoma");
  if (!QFontDatabase::hasFamily(family)) return;
  QFont font = widget.font();
  font.setFamily(family);
  widget.setFont(font);
}

}  // namespace qvrcom::ui
