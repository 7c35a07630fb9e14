#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <vector>

namespace qvrcom::desktop {

// Whether any of some files has changed since the last look: by length and time, without reading them.
class ListWatch {
 public:
  // The first look at a set of paths finds a change.
  bool changed(const QStringList& native_paths);
  void forget() { seen_.clear(); }

 private:
  struct Seen {
    QString path;
    qint64 length;
    QDateTime modified;
    bool operator==(const Seen&) const = default;
  };
  std::vector<Seen> seen_;
};

}  // namespace qvrcom::desktop
