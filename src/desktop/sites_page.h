#pragma once

#include <QWidget>

#include "desktop/seen_sites.h"
#include "desktop/site_table_model.h"
#include "platform/files.h"
#include "platform/user_interface.h"
#include "sitebook/site_csv.h"
#include "ui/file_chooser.h"

class QLabel;
class QPushButton;
class QTableView;

namespace qvrcom::desktop {

class ValueSort;

struct SitesPageParts {
  sitebook::SiteBook& sites;
  platform::UserInterface& ui;
  platform::Files& files;
  ui::FileChooserQt& chooser;
};

// The site book for people. The page follows the book when it comes into sight.
class SitesPage : public QWidget {
  Q_OBJECT

 public:
  explicit SitesPage(const SitesPageParts& parts, QWidget* parent = nullptr);

  // Reads the book anew and keeps the selected site. When it cannot be read the page says why and offers
  // nothing but to try again.
  void reload();

 signals:
  void sites_changed();

 private:
  void lay_out();
  QWidget* make_buttons();
  void connect_table();
  void add_site();
  void edit_site();
  void delete_site();
  void import_sites();
  bool is_refused(const sitebook::ImportResult& result);
  bool agrees_to(const sitebook::ImportResult& result);
  void export_sites();
  void look();
  void changed();
  void show_sites();
  void select(std::int32_t site_id);
  void show_state();
  const sitebook::SiteRecord* selected() const;

  SitesPageParts parts_;
  SiteTableModel* model_;
  ValueSort* sorted_;
  QTableView* table_;
  QLabel* lblState_;
  QPushButton* cmdAdd_ = nullptr;
  QPushButton* cmdEdit_ = nullptr;
  QPushButton* cmdDelete_ = nullptr;
  QPushButton* cmdImport_ = nullptr;
  QPushButton* cmdExport_ = nullptr;
  QPushButton* cmdReload_ = nullptr;
  SeenSites seen_;
  std::int32_t selected_ = 0;  // the key of the site that was selected before the book was shown anew
};

}  // namespace qvrcom::desktop
