// A host with a module in its port's cage, and the module's memory as calls give it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

#include "images/image_text.h"
#include "unit/simulator/lab_fixture.h"
#include "unit/simulator/source_path.h"

using Memory = std::array<std::uint8_t, 512>;

// Which memory a call reads: as the port knows it, read anew for the port too, or for this call alone.
inline constexpr std::uint32_t kAsKnown = 0, kRefreshed = 1, kStraight = 3;

// A host with one port of the Dahlia family, whose module the text describes.
inline std::string HostWithModule(const std::string& module) {
  return "adapters:\n  - family: dahlia\n    ports:\n      - wwpn: 21:00:00:0e:1e:11:22:33\n" +
         (module.empty() ? "" : "        sfp: " + module + "\n");
}

using Octets = std::vector<int>;

class SfpTest : public LabTest {
 protected:
  static Memory MemoryOf(const DeviceHandle* handle, std::uint32_t mode = kAsKnown) {
    Memory memory;
    memory.fill(0xEE);
    EXPECT_EQ(TORPI_GetSFPDataEx(handle, memory.data(), mode, 0), 0u);
    return memory;
  }

  Memory Composed(const std::string& module, std::uint32_t mode = kAsKnown) const {
    UseHost(HostWithModule(module));
    NextRun();
    return MemoryOf(HandleAt(0), mode);
  }

  std::string RealModule(const std::string& name) const {
    return SourcePath("examples/modules/" + name + ".hex");
  }

  // A firmware file of these lines, with the checksum that belongs to them.
  std::string Firmware(const std::string& lines, const std::string& first = "ZNFC SFP firmware") const {
    const std::string body = first + "\n" + lines;
    char checksum[32];
    std::snprintf(checksum, sizeof checksum, "checksum: %08X\n", lab::Crc32(body));
    return Write("module.fw", body + checksum);
  }

  static Octets Bytes(const Memory& memory, std::size_t offset, std::size_t count) {
    return {memory.begin() + static_cast<std::ptrdiff_t>(offset),
            memory.begin() + static_cast<std::ptrdiff_t>(offset + count)};
  }

  static std::string Text(const Memory& memory, std::size_t offset, std::size_t count) {
    return {memory.begin() + static_cast<std::ptrdiff_t>(offset),
            memory.begin() + static_cast<std::ptrdiff_t>(offset + count)};
  }

  static std::uint8_t Sum(const Memory& memory, std::size_t first, std::size_t place) {
    return static_cast<std::uint8_t>(std::accumulate(memory.begin() + static_cast<std::ptrdiff_t>(first),
                                                     memory.begin() + static_cast<std::ptrdiff_t>(place),
                                                     0u));
  }
};
