#include "port/rdp_decoder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#include "framework/report_lines.h"
#include "port/rdp_optics.h"
#include "port/rdp_words.h"
#include "runtime/debug_log.h"

namespace {

void DecodeDiagParamsDescriptorData(const RdpDescriptor& descriptor, ReportText& text) {
  text.Line("Descriptor Tag: %s\n", "Link Service Request Information");
  text.Line("Descriptor Len: %d Bytes\n", Signed(descriptor.length));
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    text.Line("Descriptor Value: 0x%08X\n", descriptor.words[i]);
  }
}

// The speeds of the bits of a port speed word, from bit 6 on. The two tables deliberately disagree on the
// bits 11 and 12.
constexpr int kFirstSpeedBit = 6;
constexpr const char* kCapabilityTexts[] = {"256 ", "128 ", "64 ", "32 ", "16 ",
                                            "8 ",   "10 ",  "4 ",  "2 ",  "1 "};
constexpr int kOperatingSpeeds[] = {256, 128, 64, 32, 16, 10, 8, 4, 2, 1};

std::string DecodePortSpeedCapabilities(std::uint16_t capabilities) {
  std::string text;
  int bit = kFirstSpeedBit;
  for (const char* const speed : kCapabilityTexts) {
    if ((capabilities >> bit++ & 1) != 0) text += speed;
  }
  return text + "Gbps";
}

// The speed of the lowest bit that is set, in Gbps; 0 when that bit stands for none.
int DecodePortOperatingSpeed(std::uint16_t speed) {
  const int row = std::countr_zero(speed) - kFirstSpeedBit;
  return row >= 0 && row < std::ssize(kOperatingSpeeds) ? kOperatingSpeeds[row] : 0;
}

void DecodePortSpeedDescriptorData(const RdpDescriptor& descriptor, ReportText& text) {
  if (descriptor.words.Count() == 0) return;
  const std::uint32_t word = descriptor.words[0];
  text.Line("Port Speed Capabilities: %s\n", DecodePortSpeedCapabilities(High(word)).c_str());
  text.Line("Port Operating Speed: %d Gbps\n", DecodePortOperatingSpeed(Low(word)));
}

// What the two top bits of the physical type say; both together deliberately say nothing.
void DecodePNPortPhysicalType(std::uint32_t type, ReportText& text) {
  constexpr const char* kTypes[] = {
      "\tNo information about Phy Type provided\n",
      "\tThe sending VN_Port uses an FC-FS-3 PN_Port or PF Port\n",
      "\tThe sending VN_Port uses a lossless Ethernet MAC\n",
      "",
  };
  text.Line("%s", kTypes[type >> 30]);
}

void DecodeLinkErrorStatusDescriptorData(const RdpDescriptor& descriptor, ReportText& text) {
  constexpr const char* kCounts[] = {
      "Link Failure Count",           "Loss Of Sync Count",          "Loss Of Signal Count",
      "Primary Sequence Error Count", "Invalid Transmit Word Count", "Invalid CRC Count",
  };
  constexpr std::size_t kPhysicalType = std::size(kCounts);
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    const std::uint32_t word = descriptor.words[i];
    if (i < std::size(kCounts)) {
      text.Line("%s: %d\n", kCounts[i], Signed(word));
    } else if (i == kPhysicalType) {
      text.Line("PN Port Physical Type: 0x%08X\n", word);
      DecodePNPortPhysicalType(word, text);
    } else {
      text.Line("Link Error Status Block Value: 0x%08X\n", word);
    }
  }
}

void DecodePortNameDescriptorData(const RdpDescriptor& descriptor, ReportText& text) {
  constexpr const char* kLabels[] = {"Node WWN", "Port WWN"};
  constexpr std::size_t kWordsOfName = sizeof(WorldWideName) / RdpWords::kWordBytes;
  std::size_t next = 0;
  for (const char* const label : kLabels) {
    const RdpWords octets = descriptor.words.Part(next, kWordsOfName);
    if (octets.Count() < kWordsOfName) return;  // no name is ever half one
    WorldWideName name;
    std::memcpy(&name, octets.Bytes().data(), sizeof name);
    FirstNameLine(text, label, name);
    next += kWordsOfName;
  }
  for (std::size_t i = next; i < descriptor.words.Count(); ++i) {
    text.Line("Descriptor Value (%d): 0x%08X\n", static_cast<int>(i), descriptor.words[i]);
  }
}

void DecodeFECStatusDescriptorData(const RdpDescriptor& descriptor, ReportText& text) {
  constexpr const char* kLabels[] = {"Correctable Blocks",
                                     "UnCorreatable Blocks"};  // deliberately spelled so
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    const char* const label = i < std::size(kLabels) ? kLabels[i] : "FEC Status Block Value";
    text.Line("%s: %d\n", label, Signed(descriptor.words[i]));
  }
}

void DecodeBufferCreditsStatusDescriptorData(const RdpDescriptor& descriptor, ReportText& text) {
  struct Credit {
    const char* label;
    const char* unit;
  };
  constexpr Credit kCredits[] = {
      {"FC Port Buffer To Buffer Credits", ""},
      {"Attached FC Port Buffer To Buffer Credits", ""},
      {"Nominal FC Port RTT", " ns"},
  };
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    const std::uint32_t word = descriptor.words[i];
    if (i < std::size(kCredits)) {
      text.Line("%s: %d%s\n", kCredits[i].label, Signed(word), kCredits[i].unit);
    } else {
      text.Line("Buffer Credits Status Value: 0x%08X\n", word);
    }
  }
}

constexpr std::uint32_t kOpticalProductTag = 0x00010008;

// A descriptor that can stand in the list. `lead` is written ahead of its heading.
struct RdpDecoder {
  std::uint32_t tag;
  const char* heading;
  void (*decode)(const RdpDescriptor& descriptor, ReportText& text);
  const char* lead = "";
};

constexpr RdpDecoder kDecoders[] = {
    {0x00000001, "Diagnostics Parameters Information", &DecodeDiagParamsDescriptorData, "\n"},
    {0x00010000, "SFP Diagnostics Param Information", &DecodeSFPDiagParamDescriptorData},
    {0x00010001, "Port Speed Information", &DecodePortSpeedDescriptorData},
    {0x00010002, "Link Error Status Block Information", &DecodeLinkErrorStatusDescriptorData},
    {0x00010003, "Port Name Information", &DecodePortNameDescriptorData},
    {0x00010005, "FEC Status Information", &DecodeFECStatusDescriptorData},
    {0x00010006, "Buffer Credits Status Information", &DecodeBufferCreditsStatusDescriptorData},
    {0x00010007, "Optical Element Data Information", &DecodeOpticalElementData},
    {kOpticalProductTag, "Optical Product Data Information", &DecodeOpticalProductDataDescriptor},
};

const RdpDecoder* FindDecoder(std::uint32_t tag) {
  for (const RdpDecoder& decoder : kDecoders) {
    if (decoder.tag == tag) return &decoder;
  }
  return nullptr;
}

void WriteHeading(const RdpDecoder& decoder, ReportText& text) {
  constexpr const char* kRule = "---------------------------------";
  text.Line("%s%s\n", decoder.lead, kRule);
  text.Line("%s\n", decoder.heading);
  text.Line("%s\n", kRule);
}

// The descriptor whose tag is the word at `index`.
RdpDescriptor DescriptorAt(const RdpWords& words, std::size_t index) {
  const std::uint32_t length = words[index + 1];
  return {words[index], length, words.Part(index + 2, length / RdpWords::kWordBytes)};
}

bool IsCiscoSwitch(const RdpWords& words, std::size_t end) {
  for (std::size_t i = 1; i < end; ++i) {
    if (words[i] != kOpticalProductTag) continue;
    const std::string vendor = DecodeSwitchVendorFromOpticalProductDescriptor(DescriptorAt(words, i));
    return vendor.find("CISCO") != std::string::npos;
  }
  return false;
}

}  // namespace

void ParseRDPDataBuffer(std::span<const std::uint8_t> response, ReportText& text, bool& is_cisco) {
  constexpr std::uint32_t kShortestList = 5;
  const RdpWords words(response);
  const std::uint32_t list_length = words[0];
  is_cisco = false;
  if (list_length < kShortestList) return;

  // The length deliberately bounds the positions in the response, as if it counted its own four bytes too.
  // What belongs to a descriptor that begins ahead of this end is read beyond it.
  const std::size_t end =
      std::min<std::size_t>(words.Count(), (std::size_t{list_length} + 3) / RdpWords::kWordBytes);
  is_cisco = IsCiscoSwitch(words, end);
  for (std::size_t i = 1; i < end; ++i) {
    const RdpDecoder* const decoder = FindDecoder(words[i]);
    if (decoder == nullptr) {
      DebugLogLevel(kDebugTrace, "%s: Unknown Descriptor Tag/Value 0x%08X", __func__, words[i]);
      continue;  // one word at a time, until a tag is found
    }
    const RdpDescriptor descriptor = DescriptorAt(words, i);
    DebugLogLevel(kDebugTrace, "%s: Tag 0x%08X Length %u", decoder->heading, descriptor.tag,
                  descriptor.length);
    WriteHeading(*decoder, text);
    decoder->decode(descriptor, text);
    i += 1 + descriptor.words.Count();  // on the last word that the decoder took: length and data
  }
}
