#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// What an entry does with the bytes.
void fuzz(std::string_view bytes);

inline void require(bool holds) {
  if (!holds) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz({reinterpret_cast<const char*>(data), size});
  return 0;
}
