#include "port/sfp/sff8636_codes.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Byte 129 of SFF-8636: power class in bits 7 and 6, or in bits 1 and 0 for the classes 5 to 7; CDR in Rx in
// bit 2, in Tx in bit 3.
TEST(ExtendedIdentifierCodesQsfp, SaysWhatTheBitsSay) {
  const char* const classes[] = {"Power Class 1 (1.5 W max)", "Power Class 2 (2.0 W max)",
                                 "Power Class 3 (2.5 W max)", "Power Class 4 (3.5 W max)",
                                 "Power Class 5 (4.0 W max)", "Power Class 6 (4.5 W max)",
                                 "Power Class 7 (5.0 W max)"};
  const char* const recovery[] = {"", ", CDR in Rx", ", CDR in Tx", ", CDR in Tx and Rx"};
  for (unsigned byte = 0; byte < 256; ++byte) {
    const unsigned high = byte >> 6;
    const unsigned low = byte & 3;
    const unsigned cdr = byte >> 2 & 3;
    const bool other_bits = (byte & 0x30) != 0;
    std::string expected;
    if (!other_bits && low == 0) expected = std::string(classes[high]) + recovery[cdr];
    if (!other_bits && low != 0 && high == 3 && (cdr == 0 || cdr == 3))
      expected = std::string(classes[3 + low]) + recovery[cdr];
    EXPECT_EQ(TextOfValue(ExtendedIdentifierCodesQsfp, static_cast<std::uint8_t>(byte)), expected) << byte;
  }
}

}  // namespace
