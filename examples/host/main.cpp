#include <QApplication>
#include <QVBoxLayout>

#include "programs/statistics_windows.h"
#include "ui/message_boxes.h"

// A window with the statistics control on it.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  qvrcom::ui::MessageBoxes boxes;
  qvrcom::programs::Suite suite(boxes);
  suite.report_plugin_problems();
  qvrcom::programs::StatisticsWindows windows(suite);

  QWidget window;
  window.setWindowTitle("Statistics");
  QVBoxLayout layout(&window);
  qvrcom::ui::ucStatisticsMain control(windows.parts(), &window);
  layout.addWidget(&control);
  QObject::connect(&control, &qvrcom::ui::ucStatisticsMain::RemoveMe, &window, &QWidget::close);
  window.show();
  return QApplication::exec();
}
