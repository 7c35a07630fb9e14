#include "ui/file_chooser.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>

#include "ui/attempt.h"
#include "ui/message_boxes.h"
#include "ui/widget_text.h"

namespace qvrcom::ui {

namespace {

bool may_overwrite(const QString& path) {
  MessageBoxes boxes;
  return agreed(boxes, utf8(path) + " exists already. Overwrite it? What it holds is lost.", "Overwrite");
}

}  // namespace

QString qt_filter(const std::string& filter) {
  const QString text = qt_text(filter);
  const qsizetype bar = text.indexOf(QLatin1Char('|'));
  if (bar < 0) return text;
  QString pattern = text.mid(bar + 1);
  pattern.replace(QLatin1Char(';'), QLatin1Char(' '));
  const QString description = text.left(bar).section(QLatin1Char('('), 0, 0).trimmed();
  return description + QStringLiteral(" (") + pattern + QLatin1Char(')');
}

std::optional<std::string> FileChooserQt::open_file(const control::FileChoice& choice) {
  QFileDialog dialog(QApplication::activeWindow(), {}, folder_, qt_filter(choice.filter));
  const bool must_exist = (choice.flags & control::FileChoice::kFileMustExist) != 0;
  dialog.setFileMode(must_exist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  folder_ = dialog.directory().absolutePath();
  return utf8(dialog.selectedFiles().constFirst());
}

std::optional<std::string> FileChooserQt::save_file(const std::string& filter, const std::string& name) {
  QFileDialog dialog(QApplication::activeWindow(), {}, folder_, qt_filter(filter));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setDefaultSuffix(QFileInfo(qt_text(name)).suffix());
  dialog.selectFile(qt_text(name));
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const QString path = dialog.selectedFiles().constFirst();
    folder_ = dialog.directory().absolutePath();
    if (!QFileInfo::exists(path) || may_overwrite(path)) return utf8(path);
  }
  return std::nullopt;
}

}  // namespace qvrcom::ui
