#pragma once

#include <cstdint>
#include <string_view>

namespace qvrcom::devicefiles {

// The CRC-32 of ISO 3309 (polynomial 0x04C11DB7 reflected, start and end inverted): "123456789" gives
// 0xCBF43926.
std::uint32_t crc32(std::string_view bytes);

}  // namespace qvrcom::devicefiles
