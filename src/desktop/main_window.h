#pragma once

#include <QWidget>

class QButtonGroup;
class QStackedWidget;
class QVBoxLayout;

namespace qvrcom::desktop {

// The desktop's window: a column of page buttons, and the page that is chosen.
class MainWindow : public QWidget {
 public:
  explicit MainWindow(QWidget* parent = nullptr);

  // `caption` has its mnemonic. The window owns the page from now on; the first one is shown.
  void add_page(const QString& caption, QWidget* page);
  void show_page(int index);

 private:
  QButtonGroup* buttons_;
  QVBoxLayout* column_;
  QStackedWidget* pages_;
};

}  // namespace qvrcom::desktop
