#pragma once

#include <QString>

#include "control/control_view.h"

namespace qvrcom::ui {

// "description|pattern" as Qt's file dialogs write it: "Statistics Files (*.csv)".
QString qt_filter(const std::string& filter);

// The open-file dialog. It answers with native paths and starts in `folder`, later where it was left.
class FileChooserQt : public control::FileChooser {
 public:
  explicit FileChooserQt(QString folder = {}) : folder_(std::move(folder)) {}
  std::optional<std::string> open_file(const control::FileChoice& choice) override;

  // The path to write to; the user has agreed when it is there already.
  virtual std::optional<std::string> save_file(const std::string& filter, const std::string& name);

 private:
  QString folder_;
};

}  // namespace qvrcom::ui
