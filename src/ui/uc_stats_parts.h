#pragma once

#include <QListWidget>
#include <QStringList>
#include <QWidget>
#include <string>
#include <utility>
#include <vector>

class QGridLayout;
class QLineEdit;

namespace qvrcom::ui {

// What the table is about: names and values side by side, three pairs on a line. Hidden without any.
class CaptionPanel : public QWidget {
 public:
  explicit CaptionPanel(QWidget* parent);
  void set_lines(const std::vector<std::pair<std::string, std::string>>& lines);

 private:
  QGridLayout* grid_;
};

// The file's tables by name, and the whole file last. Hidden while there is but one table.
class TableList : public QListWidget {
 public:
  explicit TableList(QWidget* parent);
  // None hides the list. The current line stays.
  void set_names(const QStringList& names);

 private:
  QStringList names_;
};

// The line in which the text to look for is typed.
class FindBar : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(QWidget* parent);
  QString text() const;
  void set_text(const QString& text);
  // Shows the bar with its text selected, ready to be typed over.
  void open();

 signals:
  void find_next();
  void find_previous();
  void closed();

 private:
  QLineEdit* text_;
};

}  // namespace qvrcom::ui
