#include "runtime/extras/crc32.h"

#include <array>

namespace {

constexpr std::array<std::uint32_t, 256> MakeTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t remainder = byte;
    for (int bit = 0; bit < 8; ++bit) {
      remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? 0xedb88320U : 0U);
    }
    table[byte] = remainder;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> kTable = MakeTable();

}  // namespace

std::uint32_t Crc32(const void* data, std::size_t size, std::uint32_t start) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::uint32_t remainder = start;
  for (std::size_t i = 0; i < size; ++i)
    remainder = (remainder >> 8) ^ kTable[(remainder ^ bytes[i]) & 0xffU];
  return remainder;
}
