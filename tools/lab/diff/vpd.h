// Vital Product Data (PCI 2.2, appendix I), taken apart.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "tools/lab/diff/report.h"

namespace diff {

struct Vpd {
  std::string name;  // the identifier string
  std::map<std::string, std::string>
      items;          // by their keyword: "PN", "SN", without check sum and reserved space
  std::string rest;   // all other resources, and what follows the last one
  bool whole = true;  // false for an image that ends within a resource
};

Vpd ReadVpd(std::span<const std::uint8_t> image);

// Reports what differs, item by item. True when that accounts for the difference of the images.
bool CompareVpd(Report& report, const Vpd& before, const Vpd& after);

}  // namespace diff
