#include "siterules/device_address.h"

#include "base/number.h"

namespace qvrcom::siterules {

std::string device_address(const std::string& method, const std::string& lan, const std::string& direct,
                           const std::string& modem) {
  switch (base::to_int16(method)) {
    case 1:
      return modem;
    case 2:
      return direct.empty() ? lan : direct;
    default:
      return lan;
  }
}

}  // namespace qvrcom::siterules
