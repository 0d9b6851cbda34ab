// The adapters in host files, but for their ports.
#pragma once

#include <cstddef>
#include <span>

#include "device/host.h"
#include "host_file/yaml_value.h"

namespace lab {

// Reads the map of an adapter that MakeAdapter has made. Skips the keys `family` and `ports`.
void ReadAdapterKeys(const Value& map, Adapter& adapter);

// The keys of what calls can change, which the state file has too: personality, versions, flash, memo-block.
inline constexpr std::size_t kChangeableKeyCount = 4;
std::span<const KeyRow<Adapter>, kChangeableKeyCount> ChangeableAdapterKeys();

}  // namespace lab
