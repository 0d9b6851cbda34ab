#include "diag/diagnostic_messages.h"

#include <gtest/gtest.h>

namespace {

constexpr auto kMessages = DiagnosticMessages(kSuccess, kSpeedBelow16);

TEST(DiagnosticMessages, HoldsTheSharedRowsAndItsOwn) {
  EXPECT_STREQ(MessageFor(kMessages, kSuccess), "Success");
  EXPECT_STREQ(MessageFor(kMessages, kSpeedTooLow), "Failed, Feature supported for speeds 16 Gbps and above");
  EXPECT_STREQ(MessageFor(kMessages, kReadFailed), "Failed, DPortDiag read failed");
  EXPECT_STREQ(MessageFor(kMessages, kUpdateFailed), "Failed, DPortDiag update failed");
  EXPECT_STREQ(MessageFor(kMessages, kVirtualPort), "Failed, Feature not supported for virtual port");
}

TEST(DiagnosticMessages, HoldsNoOther) {
  EXPECT_STREQ(MessageFor(kMessages, kTargetNotFound), "Failed, Unknown");
  EXPECT_STREQ(MessageFor(DiagnosticMessages(), kSuccess), "Failed, Unknown");
}

}  // namespace
