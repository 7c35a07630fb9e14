#pragma once

#include <QString>
#include <vector>

class QLabel;
class QPushButton;

namespace qvrcom::desktop {

// Why a button cannot be pressed, as the end of a sentence; "" when it can.
struct Obstacle {
  QPushButton* button;
  QString reason;
};

// Enables the buttons that nothing is in the way of; the line tells of the others why, and so does each of
// them to a screen reader.
void show_obstacles(QLabel& line, const std::vector<Obstacle>& obstacles);

}  // namespace qvrcom::desktop
