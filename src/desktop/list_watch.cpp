#include "desktop/list_watch.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <utility>

namespace qvrcom::desktop {
namespace {

constexpr qint64 kLongestTick = 2000;  // milliseconds, of the clocks that file systems keep

}  // namespace

bool ListWatch::changed(const QStringList& native_paths, const QDateTime& now) {
  std::vector<Seen> seen;
  for (const QString& path : native_paths) {
    const QFileInfo file(path);
    seen.push_back({path, file.exists() ? file.size() : -1, file.lastModified()});
  }
  const auto just_written = [&now](const Seen& file) {
    return file.length >= 0 && std::abs(file.modified.msecsTo(now)) < kLongestTick;
  };
  const bool look_again = std::exchange(just_written_, std::ranges::any_of(seen, just_written));
  return std::exchange(seen_, seen) != seen || look_again;
}

}  // namespace qvrcom::desktop
