// The numbers of a port's NVRAM by their names in host files, state files and NVRAM images.
#pragma once

#include <cstdint>
#include <span>

#include "framework/device_library/config_records.h"
#include "host_file/yaml_value.h"

namespace lab {

struct ConfigField {
  enum Kind { kNumber, kFlag, kInverseFlag };

  const char* key;
  std::uint32_t HBAParamsInfo::*field;
  Kind kind = kNumber;
  std::span<const NamedNumber> names = {};  // besides plain numbers
};

// The parameters and the boot settings; the virtual lane, a byte, and the boot drives are told apart.
std::span<const ConfigField> ParameterFields();
std::span<const ConfigField> BootFields();

}  // namespace lab
