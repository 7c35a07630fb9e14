#pragma once

#include "adapters/plain_file.h"
#include "platform/programs.h"

namespace qvrcom::adapters {

// Starts programs detached. Their standard streams are closed but for the error stream, which is kept in
// memory. A name that ends in ".exe" means the program of that name without the ending where the system's
// programs have none.
class ProgramsQt : public platform::Programs {
 public:
  std::string start_hidden(const std::string& path) override;
  std::string native(const std::string& path) const override;
  std::string said() const override;

 private:
  Descriptor words_{-1};
};

}  // namespace qvrcom::adapters
