#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace qvrcom::desktop {

// A text to read and copy: a log, a report.
class TextWindow : public QDialog {
 public:
  TextWindow(const QString& title, const QString& text, QWidget* parent);

  // Puts the last line in sight.
  void show_end();

 private:
  QPlainTextEdit* text_;
};

}  // namespace qvrcom::desktop
