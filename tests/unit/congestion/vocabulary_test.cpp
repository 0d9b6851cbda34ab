#include "congestion/vocabulary.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>

namespace {

using Words = std::map<unsigned, std::string>;

// Every code of the type, against the words told and `otherwise`.
template <class Number, class Text>
void ExpectWords(Text text, const Words& words, const std::string& otherwise) {
  for (unsigned code = 0; code <= std::numeric_limits<Number>::max(); ++code) {
    const auto found = words.find(code);
    ASSERT_EQ(text(static_cast<Number>(code)), found == words.end() ? otherwise : found->second) << code;
  }
}

constexpr PciIdentity kHazel = {0x1C9E, 0x3522, 0, 0, {}, 0, 0, {}};
constexpr PciIdentity kIris = {0x1C9E, 0x3150, 0, 0, {}, 0, 0, {}};
constexpr PciIdentity kDahlia = {0x1C9E, 0x3640, 0, 0, {}, 0, 0, {}};
constexpr PciIdentity kElm = {0x1C9E, 0x3432, 0, 0, {}, 0, 0, {}};

FCProtocolEntry PortOf(const PciIdentity& pci, std::uint32_t capabilities = 0) {
  FCProtocolEntry fc = {};
  fc.pci = pci;
  fc.capabilities = capabilities;
  return fc;
}

TEST(Vocabulary, LinkEvents) {
  ExpectWords<std::uint16_t>(&LinkEventText,
                             {{0, "Unknown"},
                              {1, "Link Failure"},
                              {2, "Loss Of Sync"},
                              {3, "Loss Of Signal"},
                              {4, "Primitive Sequence Protocol Error"},
                              {5, "Invalid Transmission Word"},
                              {6, "Invalid CRC"},
                              {15, "Device Specific"}},
                             "Reserved");
}

TEST(Vocabulary, DeliveryReasonsOfAPort) {
  ExpectWords<std::uint16_t>(
      &PortDeliveryReasonText,
      {{0, "Unknown"}, {1, "Timeout"}, {2, "Unable To Route"}, {15, "Device Specific"}}, "Reserved");
}

TEST(Vocabulary, DeliveryReasonsOfATargetLackDeviceSpecific) {
  ExpectWords<std::uint16_t>(&TargetDeliveryReasonText,
                             {{0, "Unknown"}, {1, "Timeout"}, {2, "Unable To Route"}}, "Reserved");
}

TEST(Vocabulary, CongestionEvents) {
  ExpectWords<std::uint16_t>(&CongestionEventText,
                             {{0, "Clear"},
                              {1, "Lost Credit"},
                              {2, "Credit Stall"},
                              {3, "Oversubscription"},
                              {15, "Device Specific"}},
                             "Reserved");
}

TEST(Vocabulary, Severities) {
  ExpectWords<std::uint8_t>(&CongestionSeverityText, {{0, "None"}, {0xF1, "Warning"}, {0xF7, "Alarm"}},
                            "Reserved");
}

TEST(Vocabulary, CongestionStates) {
  ExpectWords<std::uint8_t>(&CongestionStateText, {{0, "Healthy"}, {1, "Congested"}}, "Unknown");
}

TEST(Vocabulary, PortStates) {
  const auto text = [](std::uint8_t state) {
    FCProtocolEntry fc = {};
    fc.port_state = static_cast<PortState>(state);
    return PortStateText(fc);
  };
  ExpectWords<std::uint8_t>(text, {{1, "Online"}, {3, "Offline"}}, "Unknown");
}

TEST(Vocabulary, FabricConnectionFlagsReadCompletionFirst) {
  for (unsigned flags = 0; flags < 256; ++flags) {
    const char* const text = (flags & 1) == 0   ? "RDF Reject"
                             : (flags & 2) != 0 ? "RDF Completed (Brocade)"
                             : (flags & 4) != 0 ? "RDF Completed (Cisco)"
                                                : "RDF Completed";
    EXPECT_STREQ(FabricConnectionText(static_cast<std::uint8_t>(flags)), text) << flags;
  }
}

TEST(Vocabulary, VirtualLaneOfAPort) {
  const auto lane_of = [](const PciIdentity& pci) {
    return [fc = PortOf(pci, 0xFFFFFFFF)](std::uint8_t lane) mutable {
      fc.virtual_lane = lane;
      return PortVirtualLaneText(fc);
    };
  };
  ExpectWords<std::uint8_t>(lane_of(kDahlia), {{1, "Operational"}, {2, "Non-Operational"}}, "Disabled");
  ExpectWords<std::uint8_t>(lane_of(kHazel), {}, "Disabled");
  ExpectWords<std::uint8_t>(lane_of(kElm), {}, "Disabled");
}

TEST(Vocabulary, VirtualLaneOfATarget) {
  const auto lane_of = [](const PciIdentity& pci, std::uint32_t capabilities) {
    return [fc = PortOf(pci, capabilities)](std::uint8_t lane) {
      TargetEntry target = {};
      target.virtual_lane = lane;
      return TargetVirtualLaneText(fc, target);
    };
  };
  const Words lanes = {{1, "Slow"}, {2, "Normal"}, {3, "Fast"}};
  ExpectWords<std::uint8_t>(lane_of(kDahlia, 0x40000000), lanes, "Non-Operational");
  ExpectWords<std::uint8_t>(lane_of(kDahlia, 0xBFFFFFFF), lanes, "NA");
  ExpectWords<std::uint8_t>(lane_of(kIris, 0xFFFFFFFF), {}, "NA");
}

TEST(Vocabulary, ThrottlingOfAPort) {
  const auto throttling_of = [](const PciIdentity& pci, std::uint32_t capabilities) {
    return [fc = PortOf(pci, capabilities)](std::uint8_t state) mutable {
      fc.io_throttling = state;
      return PortThrottlingText(fc);
    };
  };
  for (const PciIdentity& pci : {kHazel, kIris, kDahlia}) {
    ExpectWords<std::uint8_t>(throttling_of(pci, 0x80000000), {{1, "None"}, {2, "Active"}}, "Disabled");
    ExpectWords<std::uint8_t>(throttling_of(pci, 0x7FFFFFFF), {{2, "Active"}}, "None");
  }
  ExpectWords<std::uint8_t>(throttling_of(kElm, 0xFFFFFFFF), {}, "NA");
}

TEST(Vocabulary, ThrottlingOfATargetIsNeverNA) {
  const auto throttling_of = [](const PciIdentity& pci, std::uint32_t capabilities) {
    return [fc = PortOf(pci, capabilities)](std::uint8_t state) {
      TargetEntry target = {};
      target.io_throttling = state;
      return TargetThrottlingText(fc, target);
    };
  };
  ExpectWords<std::uint8_t>(throttling_of(kHazel, 0x80000000), {{1, "None"}, {2, "Active"}}, "Disabled");
  ExpectWords<std::uint8_t>(throttling_of(kHazel, 0x7FFFFFFF), {{2, "Active"}}, "None");
  ExpectWords<std::uint8_t>(throttling_of(kElm, 0xFFFFFFFF), {}, "None");
}

}  // namespace
