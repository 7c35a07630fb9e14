#include "ui/reading_text.h"

#include <QFontDatabase>
#include <QLocale>
#include <QPlainTextEdit>
#include <QStringDecoder>

#include "ui/elements.h"

namespace qvrcom::ui {

QPlainTextEdit* reading_text(const char* object_name, const QString& accessible_name, QWidget* parent) {
  auto* text = named(new QPlainTextEdit(parent), object_name, accessible_name);
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return text;
}

QString text_of_bytes(const std::string& bytes) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QString text = decoder(view);
  return decoder.hasError() ? QString::fromLatin1(view) : text;
}

QString byte_count(std::uint64_t bytes) {
  return QLocale().toString(static_cast<qulonglong>(bytes)) + QLatin1String(bytes == 1 ? " byte" : " bytes");
}

}  // namespace qvrcom::ui
