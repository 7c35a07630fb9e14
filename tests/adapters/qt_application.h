#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

namespace qvrcom::adapters {

// The application object that timers and sockets need, made when the first test asks for it.
inline void need_application() {
  static int count = 1;
  static char name[] = "tests";
  static char* arguments[] = {name, nullptr};
  if (QCoreApplication::instance() == nullptr) new QCoreApplication(count, arguments);
}

// Lets events run until the condition holds; false when it never does.
template <class Condition>
bool pump_until(Condition condition, int milliseconds = 60000) {
  QElapsedTimer timer;
  timer.start();
  while (!condition() && timer.elapsed() < milliseconds) {
    QCoreApplication::processEvents();
    QThread::msleep(1);
  }
  return condition();
}

}  // namespace qvrcom::adapters
