#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "sitebook/site_record.h"

namespace qvrcom::desktop {

// The site book as a table: a row a site, headed by its key; the columns of `kSiteColumns`. Access codes are
// shown as dots.
class SiteTableModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  void show(std::vector<sitebook::SiteRecord> sites);
  const std::vector<sitebook::SiteRecord>& sites() const { return sites_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<sitebook::SiteRecord> sites_;
};

// "1 - Modem" for a stored connection method; the text itself for values without a name.
QString method_text(const base::Field& method);

}  // namespace qvrcom::desktop
