#include "desktop/text_window.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "ui/elements.h"

namespace qvrcom::desktop {

TextWindow::TextWindow(const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent), text_(ui::named(new QPlainTextEdit(this), "text", title)) {
  setObjectName(QStringLiteral("textWindow"));
  setWindowTitle(title);
  text_->setReadOnly(true);
  text_->setTabChangesFocus(true);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setPlainText(text);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* all = new QVBoxLayout(this);
  all->addWidget(text_);
  all->addWidget(buttons);
  resize(760, 420);
}

void TextWindow::show_end() {
  text_->moveCursor(QTextCursor::End);
}

}  // namespace qvrcom::desktop
