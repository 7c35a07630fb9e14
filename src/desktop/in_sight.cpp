#include "desktop/in_sight.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace qvrcom::desktop {

InSight::InSight(QWidget* widget, std::function<void()> look) : QObject(widget), look_(std::move(look)) {
  widget->installEventFilter(this);
}

bool InSight::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show) look_();
  if (event->type() == QEvent::WindowActivate) {
    QTimer::singleShot(0, this, [this] {
      if (QApplication::activeModalWidget() == nullptr) look_();
    });
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace qvrcom::desktop
