#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "control/site_list.h"
#include "sitebook/site_book.h"

class QComboBox;
class QHBoxLayout;
class QLabel;
class QSpinBox;

namespace qvrcom::desktop {

// A line in which a site of the book is chosen and, where it is asked for, a partition.
class SitePicker : public QWidget {
  Q_OBJECT

 public:
  enum class Asks { kSite, kSiteAndPartition };
  SitePicker(sitebook::SiteBook& sites, Asks asks, QWidget* parent);

  // Reads the book anew and keeps the chosen site when it is still there.
  void reload();

  // Nothing while none is chosen.
  const sitebook::SiteRecord* site() const;
  // Whether a site is chosen and nothing is known that keeps it out of a session; what is, stands in the
  // line.
  bool usable() const { return usable_; }
  // As a session takes it over; only while a site is chosen.
  sitebook::SiteRecord row() const { return *site(); }
  // "name - identifier"
  std::string title() const { return sitebook::title_of(*site()); }
  int partition() const;

  // Puts a widget at the end of the line.
  void append(QWidget* widget);

 signals:
  void chosen();

 private:
  void choose();

  sitebook::SiteBook& sites_;
  QHBoxLayout* line_;
  QComboBox* cmbSite_;
  QSpinBox* txtPartition_ = nullptr;
  QLabel* lblProblem_;   // why the book cannot be read, or the site not be used
  std::string trouble_;  // of the book
  bool usable_ = false;
  std::vector<sitebook::SiteRecord> records_;
};

}  // namespace qvrcom::desktop
