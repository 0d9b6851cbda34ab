// The image of a pluggable module of the QSFP kinds (SFF-8636).
#include "device/sfp_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckModule({data, size}, true);
  return 0;
}
