#include "port/rdp_decoder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <string>

#include "framework/code_text.h"
#include "framework/inline_text.h"
#include "framework/report_lines.h"
#include "framework/table.h"
#include "port/rdp_descriptor.h"
#include "port/rdp_optics.h"

namespace {

void DecodeDiagParamsDescriptorData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  text.Line("Descriptor Tag: %s\n", "Link Service Request Information");
  text.Line("Descriptor Len: %d Bytes\n", Signed(descriptor.length));
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    text.Line("Descriptor Value: 0x%08X\n", descriptor.words[i]);
  }
}

struct SpeedBit {
  int bit;
  int gbps;
};

// Intended: the two tables disagree on the bits 11 and 12.
constexpr SpeedBit kCapabilities[] = {
    {6, 256}, {7, 128}, {8, 64}, {9, 32}, {10, 16}, {11, 8}, {12, 10}, {13, 4}, {14, 2}, {15, 1},
};
constexpr SpeedBit kOperatingSpeeds[] = {
    {6, 256}, {7, 128}, {8, 64}, {9, 32}, {10, 16}, {11, 10}, {12, 8}, {13, 4}, {14, 2}, {15, 1},
};

std::string DecodePortSpeedCapabilities(CommandRun& run, std::uint16_t capabilities) {
  const FunctionScope function(run, __func__);
  std::string text;
  for (const SpeedBit& speed : kCapabilities) {
    if ((capabilities >> speed.bit & 1) != 0) text += std::to_string(speed.gbps) + " ";
  }
  return text + "Gbps";
}

// The speed of the lowest bit that is set, in Gbps; 0 when that bit means none.
int DecodePortOperatingSpeed(CommandRun& run, std::uint16_t speed) {
  const FunctionScope function(run, __func__);
  for (const SpeedBit& row : kOperatingSpeeds) {
    if (std::countr_zero(speed) == row.bit) return row.gbps;
  }
  return 0;
}

void DecodePortSpeedDescriptorData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  if (descriptor.words.Count() == 0) return;
  const std::uint32_t word = descriptor.words[0];
  text.Line("Port Speed Capabilities: %s\n", DecodePortSpeedCapabilities(run, High(word)).c_str());
  text.Line("Port Operating Speed: %d Gbps\n", DecodePortOperatingSpeed(run, Low(word)));
}

// By the two top bits of the physical type. Intended: no line when both are set.
constexpr CodeText kPhysicalTypes[] = {
    {0b00, "No information about Phy Type provided"},
    {0b01, "The sending VN_Port uses an FC-FS-3 PN_Port or PF Port"},
    {0b10, "The sending VN_Port uses a lossless Ethernet MAC"},
};

void DecodePNPortPhysicalType(CommandRun& run, std::uint32_t type, ReportText& text) {
  const FunctionScope function(run, __func__);
  const char* const meaning = TextOfCode(kPhysicalTypes, type >> 30, nullptr);
  if (meaning != nullptr) text.Line("\t%s\n", meaning);
}

void DecodeLinkErrorStatusDescriptorData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
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
      DecodePNPortPhysicalType(run, word, text);
    } else {
      text.Line("Link Error Status Block Value: 0x%08X\n", word);
    }
  }
}

void DecodePortNameDescriptorData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  constexpr const char* kLabels[] = {"Node WWN", "Port WWN"};
  constexpr std::size_t kWordsOfName = sizeof(WorldWideName) / RdpWords::kWordBytes;
  std::size_t next = 0;
  for (const char* const label : kLabels) {
    const RdpWords octets = descriptor.words.Part(next, kWordsOfName);
    if (octets.Count() < kWordsOfName) return;  // no name is shown in part
    WorldWideName name;
    std::memcpy(&name, octets.Bytes().data(), sizeof name);
    FirstNameLine(text, label, name);
    next += kWordsOfName;
  }
  for (std::size_t i = next; i < descriptor.words.Count(); ++i) {
    text.Line("Descriptor Value (%d): 0x%08X\n", static_cast<int>(i), descriptor.words[i]);
  }
}

void DecodeFECStatusDescriptorData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  // Intended: the spelling of the second one.
  constexpr const char* kLabels[] = {"Correctable Blocks", "UnCorreatable Blocks"};
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    const char* const label = i < std::size(kLabels) ? kLabels[i] : "FEC Status Block Value";
    text.Line("%s: %d\n", label, Signed(descriptor.words[i]));
  }
}

void DecodeBufferCreditsStatusDescriptorData(CommandRun& run, const RdpDescriptor& descriptor,
                                             ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  struct Credit {
    InlineText<41> label;
    InlineText<3> unit;
  };
  static constexpr Credit kCredits[] = {
      {"FC Port Buffer To Buffer Credits", ""},
      {"Attached FC Port Buffer To Buffer Credits", ""},
      {"Nominal FC Port RTT", " ns"},
  };
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    const std::uint32_t word = descriptor.words[i];
    if (i < std::size(kCredits)) {
      text.Line("%s: %d%s\n", kCredits[i].label.CString(), Signed(word), kCredits[i].unit.CString());
    } else {
      text.Line("Buffer Credits Status Value: 0x%08X\n", word);
    }
  }
}

constexpr std::uint32_t kOpticalProductTag = 0x00010008;

// A kind of descriptor. `lead` comes before its heading.
struct RdpDecoder {
  std::uint32_t tag;
  const char* heading;
  void (*decode)(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text);
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

std::optional<RdpDecoder> FindDecoder(std::uint32_t tag) {
  for (const RdpDecoder& decoder : TableOf<kDecoders>()) {
    if (decoder.tag == tag) return decoder;
  }
  return std::nullopt;
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

bool IsCiscoSwitch(CommandRun& run, const RdpWords& words, std::size_t end) {
  for (std::size_t i = 1; i < end; ++i) {
    if (words[i] != kOpticalProductTag) continue;
    const std::string vendor = DecodeSwitchVendorFromOpticalProductDescriptor(run, DescriptorAt(words, i));
    return vendor.find("CISCO") != std::string::npos;
  }
  return false;
}

}  // namespace

void ParseRDPDataBuffer(CommandRun& run, std::span<const std::uint8_t> response, ReportText& text,
                        bool& is_cisco) {
  const FunctionScope function(run, __func__);
  constexpr std::uint32_t kShortestList = 5;
  const RdpWords words(response);
  const std::uint32_t list_length = words[0];
  is_cisco = false;
  if (list_length < kShortestList) return;

  // Intended: the length bounds the positions in the response, as if it counted its own four bytes too. A
  // descriptor that begins before this end can reach beyond it.
  const std::size_t end =
      std::min<std::size_t>(words.Count(), (std::size_t{list_length} + 3) / RdpWords::kWordBytes);
  is_cisco = IsCiscoSwitch(run, words, end);
  for (std::size_t i = 1; i < end; ++i) {
    const std::optional<RdpDecoder> decoder = FindDecoder(words[i]);
    if (!decoder.has_value()) {
      run.Trace("Unknown Descriptor Tag/Value 0x%08X", words[i]);
      continue;  // one word at a time, until a tag is found
    }
    const RdpDescriptor descriptor = DescriptorAt(words, i);
    WriteHeading(*decoder, text);
    decoder->decode(run, descriptor, text);
    i += 1 + descriptor.words.Count();  // on the last word that the decoder took: length and data
  }
}
