#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "sitebook/site_record.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qvrcom::ui {

// One site to fill in. What keeps it out of the book stands in the dialog while it is typed, and OK waits
// until nothing does.
class SiteDialog : public QDialog {
 public:
  using Problems = std::function<std::vector<sitebook::SiteProblem>(const sitebook::SiteRecord&)>;

  SiteDialog(const QString& title, const sitebook::SiteRecord& site, Problems problems, QWidget* parent);

  // As the fields stand. An empty field is null, unless it held an empty text and was left alone.
  sitebook::SiteRecord site() const;

 private:
  void add_fields(QFormLayout& form);
  QWidget* make_field(const sitebook::SiteColumn& column);
  QComboBox* make_method_field();
  QLineEdit* make_text_field(const sitebook::SiteColumn& column);
  base::Field entered(std::size_t column) const;
  void check();

  sitebook::SiteRecord stored_;
  Problems problems_;
  std::vector<QWidget*> fields_;  // one a column
  QLabel* lblReasons_;
  QPushButton* ok_ = nullptr;
};

}  // namespace qvrcom::ui
