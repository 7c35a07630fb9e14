#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "desktop/seen_sites.h"

class QComboBox;
class QHBoxLayout;
class QLabel;
class QSpinBox;

namespace qvrcom::desktop {

// A line in which a site of the book is chosen and, where it is asked for, a partition. It follows the book
// when it comes into sight.
class SitePicker : public QWidget {
  Q_OBJECT

 public:
  enum class Asks { kSite, kSiteAndPartition };
  SitePicker(sitebook::SiteBook& sites, Asks asks, QWidget* parent);

  // Reads the book anew and keeps the chosen site when it is still there, or when the book cannot be read.
  void reload();

  // Nothing while none is chosen.
  const sitebook::SiteRecord* site() const;
  // Whether a site is chosen and nothing is known that keeps it out of a session; otherwise the line below
  // tells why.
  bool usable() const { return usable_; }
  // As a session takes it over; only while a site is chosen.
  sitebook::SiteRecord row() const { return *site(); }
  std::string title() const { return sitebook::title_of(*site()); }
  int partition() const;

  // Puts a widget at the end of the line.
  void append(QWidget* widget);

 signals:
  // `another`: not the site of the last time, which may be known better now.
  void chosen(bool another);

 private:
  void fill();
  void choose();
  std::string obstacle() const;

  SeenSites seen_;
  QHBoxLayout* line_;
  QComboBox* cmbSite_;
  QSpinBox* txtPartition_ = nullptr;
  QLabel* lblProblem_;  // why the book cannot be read, or the site not be used
  bool usable_ = false;
  std::int32_t chosen_ = 0;                        // its key
  std::vector<const sitebook::SiteRecord*> rows_;  // of `seen_`, by their titles
};

}  // namespace qvrcom::desktop
