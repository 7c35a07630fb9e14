#include "desktop/same_logs.h"

#include <QFileInfo>
#include <algorithm>

#include "desktop/tables.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {

std::vector<SameLog> filed_same_logs(const platform::Files& files,
                                     const environment::FilesAndFolders& folders) {
  const std::string folder = folders.GetSAMELogsFolder();
  std::vector<SameLog> logs;
  if (!files.folder_exists(folder)) return logs;
  for (const std::string& name : files.list(folder)) {
    const QString shown = ui::qt_text(name);
    if (!shown.endsWith(QLatin1String(".log"), Qt::CaseInsensitive)) continue;
    const QFileInfo file(ui::qt_text(files.native(folder + name)));
    logs.push_back({folder + name, shown, static_cast<std::uint64_t>(file.size()), file.lastModified()});
  }
  // Of one second, the name decides: it begins with the moment of the job.
  std::sort(logs.begin(), logs.end(), [](const SameLog& a, const SameLog& b) {
    if (a.modified != b.modified) return a.modified > b.modified;
    return name_value(a.name).toString() > name_value(b.name).toString();
  });
  return logs;
}

}  // namespace qvrcom::desktop
