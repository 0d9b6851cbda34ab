// How large a host can be. Every limit has a message, so that no file, however short, keeps a program busy.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/file.h"

namespace lab {

struct Limits {
  // Of any file of YAML.
  std::size_t file_bytes = kLargestFile;
  std::size_t nesting = 64;
  std::size_t open_brackets = 65536;       // of one line, in texts and remarks too; see YamlTree::Read
  std::uint64_t values = 4'000'000;        // with every alias counted as what it names
  std::uint64_t image_bytes = 256u << 20;  // of all files that the file names
  // Of a host file.
  std::size_t adapters = 256;
  std::size_t ports = 64;           // of an adapter
  std::size_t virtual_ports = 255;  // of a port
  std::uint32_t targets = 4096;     // of a port
  std::uint64_t luns = 16384;       // of a target
  std::size_t faults = 4096;
  // Of a whole host, for its records are in memory all at once.
  std::uint64_t host_ports = 16384;  // virtual ones too
  std::uint64_t host_targets = 65536;
  std::uint64_t host_luns = 4'194'304;
};

inline constexpr Limits kLimits{};

}  // namespace lab
