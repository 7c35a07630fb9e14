#pragma once

#include <string_view>

namespace qvrcom::images {

// The generation of the image components that serve a device: one of "5_0", "5_1", "5_2", "6_0", "6_1",
// "6_3", "7_0", "7_1" and "7_2"; "" when the machine type is neither 2 nor 3. Versions are compared as exact
// texts; an unknown one has the newest generation. Fault when the machine type is not a 16-bit number.
std::string_view image_generation(std::string_view machine_type, std::string_view firmware_version);

}  // namespace qvrcom::images
