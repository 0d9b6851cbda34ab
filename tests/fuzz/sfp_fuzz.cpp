// The image of a pluggable module (SFF-8472, or SFF-8636 by its first byte).
#include "device/sfp_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckModule({data, size}, false);
  return 0;
}
