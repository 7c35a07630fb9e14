#include "ui/message_boxes.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include "ui/widget_text.h"

namespace qvrcom::ui {
namespace {

using platform::Button;
using platform::Buttons;
using platform::Icon;

QMessageBox::Icon icon_of(Icon icon) {
  switch (icon) {
    case Icon::kInformation:
      return QMessageBox::Information;
    case Icon::kWarning:
      return QMessageBox::Warning;
    case Icon::kError:
      return QMessageBox::Critical;
    case Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttons_of(Buttons buttons) {
  switch (buttons) {
    case Buttons::kOkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::kYesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::kOk:
      break;
  }
  return QMessageBox::Ok;
}

Button button_of(int standard_button) {
  switch (standard_button) {
    case QMessageBox::Ok:
      return Button::kOk;
    case QMessageBox::Yes:
      return Button::kYes;
    case QMessageBox::No:
      return Button::kNo;
    default:
      return Button::kCancel;
  }
}

// Enter stays with the button that changes nothing.
void name_buttons(QMessageBox& box, const platform::Message& message) {
  if (message.act.empty()) return;
  const bool yes_no = message.buttons == Buttons::kYesNoCancel;
  box.button(yes_no ? QMessageBox::Yes : QMessageBox::Ok)->setText(qt_text(message.act));
  QAbstractButton* other = box.button(yes_no ? QMessageBox::No : QMessageBox::Cancel);
  if (other == nullptr) return;  // nothing is asked
  if (!message.refrain.empty()) other->setText(qt_text(message.refrain));
  box.setDefaultButton(qobject_cast<QPushButton*>(other));
}

// Texts of devices and schedulers may look like markup.
void show_detail(QMessageBox& box, const QString& detail) {
  if (detail.isEmpty()) return;
  box.setInformativeText(detail);
  for (QLabel* label : box.findChildren<QLabel*>())
    label->setTextFormat(Qt::PlainText);
}

// A hidden dialog whose routine still runs is no place to hang a box on.
QWidget* window_below() {
  QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr && modal->isVisible() ? modal : QApplication::activeWindow();
}

}  // namespace

Button MessageBoxes::show(const platform::Message& message) {
  const QString title =
      message.title.empty() ? QGuiApplication::applicationDisplayName() : qt_text(message.title);
  QMessageBox box(icon_of(message.icon), title, {}, buttons_of(message.buttons), window_below());
  box.setTextFormat(Qt::PlainText);
  box.setText(qt_text(message.text));
  show_detail(box, qt_text(message.detail));
  name_buttons(box, message);
  return button_of(box.exec());
}

void MessageBoxes::pump_events() {
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

}  // namespace qvrcom::ui
