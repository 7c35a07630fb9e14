#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <vector>

namespace qvrcom::desktop {

// Whether any of some files may have changed since the last look: by length and time, without reading them.
class ListWatch {
 public:
  // The first look at a set of paths finds a change. So does the look that follows one at a file written just
  // before: another change within the same tick of the file system's clock leaves no trace.
  bool changed(const QStringList& native_paths, const QDateTime& now = QDateTime::currentDateTime());
  void forget() { seen_.clear(); }

 private:
  struct Seen {
    QString path;
    qint64 length;
    QDateTime modified;
    bool operator==(const Seen&) const = default;
  };
  std::vector<Seen> seen_;
  bool just_written_ = false;  // one of them, at the last look
};

}  // namespace qvrcom::desktop
