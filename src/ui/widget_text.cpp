#include "ui/widget_text.h"

#include <QDateTime>
#include <QFontDatabase>
#include <QWidget>

namespace qvrcom::ui {

QString qt_text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string utf8(const QString& text) {
  return text.toStdString();
}

QString moment_text(base::LocalTime moment) {
  return qt_text(base::clock_text(moment));
}

QString moment_text(const QDateTime& moment) {
  return moment.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// Not by way of a time zone: an hour that a summer time leaves out is a moment here, too.
QDateTime qt_moment(base::LocalTime moment) {
  return QDateTime::fromSecsSinceEpoch(moment.time_since_epoch().count(), Qt::UTC);
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
