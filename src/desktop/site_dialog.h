#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "platform/user_interface.h"
#include "sitebook/site_book.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qvrcom::desktop {

// One site to fill in. What keeps it out of the book stands in the dialog while it is typed, and OK waits
// until nothing does.
class SiteDialog : public QDialog {
 public:
  using Problems = std::function<std::vector<sitebook::SiteProblem>(const sitebook::SiteRecord&)>;

  SiteDialog(const QString& title, const sitebook::SiteRecord& site, Problems problems, QWidget* parent);

  // As the fields stand. An empty field is null, unless it held an empty text and was left alone.
  sitebook::SiteRecord site() const;

  // The field of this column, by its key, has the focus when the dialog comes up.
  void begin_with(std::string_view key);

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

// Lets the user change a stored site, `first` being the column to begin with. Whether the book has changed.
bool edit_stored_site(sitebook::SiteBook& sites, platform::UserInterface& ui,
                      const sitebook::SiteRecord& stored, QWidget* parent, std::string_view first = {});

}  // namespace qvrcom::desktop
