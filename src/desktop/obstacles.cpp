#include "desktop/obstacles.h"

#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <algorithm>
#include <utility>

namespace qvrcom::desktop {
namespace {

// The captions of the buttons that one thing is in the way of.
struct Line {
  QString reason;
  QStringList captions;
};

}  // namespace

void show_obstacles(QLabel& line, const std::vector<Obstacle>& obstacles) {
  std::vector<Line> lines;
  for (const auto& [button, reason] : obstacles) {
    button->setEnabled(reason.isEmpty());
    button->setAccessibleDescription(reason);
    if (reason.isEmpty()) continue;
    auto place =
        std::find_if(lines.begin(), lines.end(), [&](const Line& each) { return each.reason == reason; });
    if (place == lines.end()) place = lines.insert(lines.end(), {reason, {}});
    place->captions += button->accessibleName().remove(QStringLiteral("..."));
  }
  QStringList texts;
  for (const Line& each : lines)
    texts += each.captions.join(QStringLiteral(", ")) + QStringLiteral(": ") + each.reason + QLatin1Char('.');
  line.setText(texts.join(QLatin1Char(' ')));
}

}  // namespace qvrcom::desktop
