#include "diag/diagnostic_messages.h"

#include <gtest/gtest.h>

namespace {

constexpr auto kMessages = DiagnosticMessages(kSuccess, kSpeedBelow16);
constexpr auto kSharedMessages = DiagnosticMessages();

TEST(DiagnosticMessages, HoldsTheSharedRowsAndItsOwn) {
  EXPECT_STREQ(MessageFor(TableOf<kMessages>(), kSuccess), "Success");
  EXPECT_STREQ(MessageFor(TableOf<kMessages>(), kSpeedTooLow),
               "Failed, Feature supported for speeds 16 Gbps and above");
  EXPECT_STREQ(MessageFor(TableOf<kMessages>(), kReadFailed), "Failed, DPortDiag read failed");
  EXPECT_STREQ(MessageFor(TableOf<kMessages>(), kUpdateFailed), "Failed, DPortDiag update failed");
  EXPECT_STREQ(MessageFor(TableOf<kMessages>(), kVirtualPort),
               "Failed, Feature not supported for virtual port");
}

TEST(DiagnosticMessages, HoldsNoOther) {
  EXPECT_STREQ(MessageFor(TableOf<kMessages>(), kTargetNotFound), "Failed, Unknown");
  EXPECT_STREQ(MessageFor(TableOf<kSharedMessages>(), kSuccess), "Failed, Unknown");
}

}  // namespace
