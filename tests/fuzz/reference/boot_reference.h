// The boot configuration of a port, a second time.
#pragma once

#include <cstdint>
#include <string>

namespace reference {

enum class BootMode : std::uint8_t { kBios = 1, kUefi = 2, kNvme = 4 };

struct BootAnswer {
  std::string document;
  std::uint32_t mode_set = 0;  // the mode that the library is given; 0: none
};

// The answers of `bootconfig get` and `bootconfigext get` with this mode. `port_bytes` is its record of 2688
// bytes, `record` the 512 bytes of the boot record, `nvme` the 2560 of the NVMe entries, null when they
// cannot be read.
BootAnswer BootConfig(bool xml, const void* port_bytes, BootMode mode, std::uint8_t library_mode,
                      const void* record);
BootAnswer BootConfigExt(bool xml, const void* port_bytes, BootMode mode, std::uint8_t library_mode,
                         const void* record, const void* nvme);

}  // namespace reference
