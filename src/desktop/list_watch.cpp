#include "desktop/list_watch.h"

#include <QFileInfo>

namespace qvrcom::desktop {

bool ListWatch::changed(const QStringList& native_paths) {
  std::vector<Seen> now;
  for (const QString& path : native_paths) {
    const QFileInfo file(path);
    now.push_back({path, file.exists() ? file.size() : -1, file.lastModified()});
  }
  if (now == seen_) return false;
  seen_ = std::move(now);
  return true;
}

}  // namespace qvrcom::desktop
