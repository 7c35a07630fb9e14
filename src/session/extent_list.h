#pragma once

#include <string>

namespace qvrcom::session {

// A list box that scrolls sideways as far as it is told to.
class ExtentList {
 public:
  virtual ~ExtentList() = default;

  // In the dialog's scale, which has so many units a pixel: 1 where it counts in pixels itself.
  virtual double text_width(const std::string& text) const = 0;
  virtual double units_per_pixel() const { return 1; }

  virtual void set_horizontal_extent(int pixels) = 0;
};

}  // namespace qvrcom::session
