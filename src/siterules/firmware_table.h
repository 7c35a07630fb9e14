#pragma once

#include <string_view>

namespace qvrcom::siterules {

// What a firmware version means for a machine type. Versions are compared as exact texts, never as numbers:
// letter case and leading zeros count.
struct Firmware {
  int machine_type;
  std::string_view first;  // the versions from this to `last`, both with two decimals; any other text is
  std::string_view last;   // alone on its row
  bool is_current;         // otherwise it can be worked with as an older one
  bool has_old_statistics;
  bool has_rtqa_options;        // lines whose RTQA options are checked before a configuration is sent
  std::string_view generation;  // of the image components, see `image_generation`
};

// Nothing for a version that no row holds: it cannot be worked with.
const Firmware* firmware_of(int machine_type, std::string_view version);

// The same for any machine type.
const Firmware* firmware_of(std::string_view version);

// The generation of the image components that serve a device: one of "5_0", "5_1", "5_2", "6_0", "6_1",
// "6_3", "7_0", "7_1" and "7_2"; "" when the machine type is neither 2 nor 3. An unknown version has the
// newest generation. Fault when the machine type is not a 16-bit number.
std::string_view image_generation(std::string_view machine_type, std::string_view version);

}  // namespace qvrcom::siterules
