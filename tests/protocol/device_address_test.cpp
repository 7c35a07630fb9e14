#include "protocol/device_address.h"

#include <gmock/gmock.h>

#include "base/fault.h"

namespace qvrcom::protocol {
namespace {

TEST(DeviceAddress, ReadsHostAndPorts) {
  const std::pair<std::string, DeviceAddress> accepted[] = {
      {"10.0.0.9", {"10.0.0.9", 21, 23}}, {" qvr-1.local ", {"qvr-1.local", 21, 23}},
      {"host:2121", {"host", 2121, 23}},  {"127.0.0.1:2121:2323", {"127.0.0.1", 2121, 2323}},
      {"[::1]", {"::1", 21, 23}},         {"[fe80::1%eth0]:65535:1", {"fe80::1%eth0", 65535, 1}},
  };
  for (const auto& [text, address] : accepted)
    EXPECT_EQ(parse_device_address(text), address) << text;
}

TEST(DeviceAddress, RefusesWhatIsNone) {
  for (const std::string text :
       {"", "::1", ":21", "host:", "host:0", "host:65536", "host:ftp", "host:1:2:3", "[::1", "[]", "[::1]21",
        "ho st", "host/x", "host:-1", "a\nb", "user@host"}) {
    EXPECT_THROW(parse_device_address(text), base::Fault) << text;
    EXPECT_NE(device_address_problem(text), "") << text;
  }
  EXPECT_THROW(parse_device_address(std::string(301, 'a')), base::Fault);
}

}  // namespace
}  // namespace qvrcom::protocol
