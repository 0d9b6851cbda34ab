// A Vital Product Data image, whatever the adapter says.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "port/vpd_map.h"
#include "support/unit_command_run.h"

namespace {

constexpr std::size_t kVpdBytes = 1024;

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A copy of its own: a read past its end is an error.
  const std::vector<std::uint8_t> image(data, data + std::min(size, kVpdBytes));
  TestRun test;
  for (const auto& [keyword, value] : MapVpdData(test.run, image)) {
    Require(keyword.size() == 2 && value.size() <= image.size());
    Require(value.find('\0') == std::string::npos);
  }
  return 0;
}
