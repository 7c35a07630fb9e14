#pragma once

#include "platform/programs.h"

namespace qvrcom::adapters {

// Starts programs detached, with their standard streams closed. A name that ends in ".exe" means the program
// of that name without the ending where the system's programs have none.
class ProgramsQt : public platform::Programs {
 public:
  std::string start_hidden(const std::string& path) override;
};

}  // namespace qvrcom::adapters
