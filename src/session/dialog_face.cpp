#include "session/dialog_face.h"

namespace qvrcom::session {

void DialogFace::show_info(bool visible) {
  info_visible_ = visible;
  view_.set_info_visible(visible);
}

void DialogFace::offer(const std::string& caption) {
  caption_ = caption;
  view_.set_cancel(caption);
  enable_button(true);
  show_button(true);
}

void DialogFace::enable_button(bool enabled) {
  enabled_ = enabled;
  view_.set_cancel_enabled(enabled);
}

void DialogFace::show_button(bool visible) {
  visible_ = visible;
  view_.set_cancel_visible(visible);
}

}  // namespace qvrcom::session
