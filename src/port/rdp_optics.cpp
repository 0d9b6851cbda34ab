#include "port/rdp_optics.h"
#include "framework/inline_text.h"
#include "framework/table.h"

#include <algorithm>

namespace {

// Scales of a 16-bit reading, as SFF-8472 has them.

double Volts(std::uint16_t reading) {
  return reading * 100.0 * 0.000001;
}

double Milliamperes(std::uint16_t reading) {
  return (reading * 2) * 0.001;
}

double Milliwatts(std::uint16_t reading) {
  return reading * 0.1 * 0.001;
}

// Intended: limits of the temperature have scales of their own, one for the high and one for the low ones.

double HighDegrees(std::uint16_t limit) {
  constexpr unsigned kNegative = 0x100;
  return (limit & kNegative) != 0 ? limit * 0.5 - 256.0 : limit & 0xffu;
}

double LowDegrees(std::uint16_t limit) {
  const unsigned value = limit & 0xffu;
  return value == 0 ? 0.0 : value - 256.0;
}

// A kind of transmitter: the flags under `mask` have this value.
struct TransmitterType {
  std::uint16_t mask;
  std::uint16_t value;
  InlineText<26> text;
};

// The first that fits. Intended: the last never shows, since its flags fit the second too.
constexpr TransmitterType kTransmitterTypes[] = {
    {0x000f, 0x0001, "Short Wave Laser"},
    {0x0002, 0x0002, "Long Wave Laser LC 1310 nm"},
    {0x0003, 0x0003, "Long Wave Laser LL 1550 nm"},
};

constexpr unsigned Bit(int number) {
  return 1u << number;
}

const char* OnOff(bool on) {
  return on ? "On" : "Off";
}

void ConnectorLine(ReportText& text, bool is_sfp_plus) {
  text.Line("\tConnector Type: %s\n", is_sfp_plus ? "SFP+" : "Other");
}

void DecodeSFPFlagInfo(CommandRun& run, std::uint16_t flags, ReportText& text) {
  const FunctionScope function(run, __func__);
  for (const TransmitterType& type : kTransmitterTypes) {
    if ((flags & type.mask) != type.value) continue;
    text.Line("\tPort Tx Type: %s\n", type.text.CString());
    break;
  }
  const auto is_set = [flags](int number) { return (flags & Bit(number)) != 0; };
  ConnectorLine(text, is_set(4) && is_set(6));
  text.Line("\tOptical Port: %s\n", OnOff(is_set(4)));
  text.Line("\tSFP Diagnostics Parameters not valid: %s\n", OnOff(is_set(5)));
  if (!is_set(7)) ConnectorLine(text, is_set(6));  // intended: a second line of this label
  // Intended: the two states have different labels.
  text.Line("\t%s: %s\n", is_set(15) ? "FEC Active Port" : "FEC Active", OnOff(is_set(15)));
}

// How the limits of one measured element are shown; `function` is the whole flag word.
struct OpticalElement {
  std::uint32_t function;
  int decimals;
  InlineText<11> name;
  double (*high)(std::uint16_t limit);
  double (*low)(std::uint16_t limit);
};

constexpr OpticalElement kOpticalElements[] = {
    {0x10000000, 2, "Temperature", &HighDegrees, &LowDegrees},
    {0x20000000, 9, "Voltage", &Volts, &Volts},
    {0x30000000, 9, "Tx Bias", &Milliamperes, &Milliamperes},
    {0x40000000, 9, "Tx Power", &Milliwatts, &Milliwatts},
    {0x50000000, 9, "Rx Power", &Milliwatts, &Milliwatts},
};

struct OpticalLimits {
  std::uint16_t high_alarm;
  std::uint16_t low_alarm;
  std::uint16_t high_warning;
  std::uint16_t low_warning;
};

void ScaledLimitLines(ReportText& text, const OpticalElement& element, const OpticalLimits& limits) {
  text.Line("%s High Alarm: %.*f\n", element.name.CString(), element.decimals,
            element.high(limits.high_alarm));
  text.Line("%s Low Alarm: %.*f\n", element.name.CString(), element.decimals, element.low(limits.low_alarm));
  text.Line("%s High Warning: %.*f\n", element.name.CString(), element.decimals,
            element.high(limits.high_warning));
  text.Line("%s Low Warning: %.*f\n", element.name.CString(), element.decimals,
            element.low(limits.low_warning));
}

void RawLimitLines(ReportText& text, std::uint32_t function, const OpticalLimits& limits) {
  const auto line = [&](const char* limit, std::uint16_t value) {
    text.Line("Optical Element Function Flag [0x%02x] %s: 0x%02x\n", function, limit, value);
  };
  line("High Alarm", limits.high_alarm);
  line("Low Alarm", limits.low_alarm);
  line("High Warning", limits.high_warning);
  line("Low Warning", limits.low_warning);
}

// The characters of a text in a descriptor, unchanged, up to its terminator if it has one.
std::string Characters(const RdpDescriptor& descriptor, std::size_t first_word, std::size_t words) {
  const auto bytes = descriptor.words.Part(first_word, words).Bytes();
  return {bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)};
}

std::string VendorName(const RdpDescriptor& product) {
  return Characters(product, 0, 4);
}

}  // namespace

void DecodeSFPDiagParamDescriptorData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  for (std::size_t i = 0; i < descriptor.words.Count(); ++i) {
    const std::uint32_t word = descriptor.words[i];
    switch (i) {
      case 0:
        text.Line("Temperature: %d (C)\n", High(word) >> 8);
        text.Line("Vcc: %.09f V\n", Volts(Low(word)));
        break;
      case 1:
        text.Line("Tx Bias: %.09f mA\n", Milliamperes(High(word)));
        text.Line("Tx Power: %.09f mW\n", Milliwatts(Low(word)));
        break;
      case 2:
        text.Line("Rx Power: %.09f mW\n", Milliwatts(High(word)));
        text.Line("SFP Flag: 0x%04X\n", Low(word));
        DecodeSFPFlagInfo(run, Low(word), text);
        break;
      default:
        text.Line("Descriptor Value: 0x%08X\n", word);
    }
  }
}

void DecodeOpticalElementData(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  constexpr std::size_t kWords = 3;
  for (std::size_t i = kWords; i < descriptor.words.Count(); ++i) {
    text.Line("Optical Element Data Descriptor Value: 0x%08X\n", descriptor.words[i]);
  }
  const std::uint32_t alarms = descriptor.words[0];
  const std::uint32_t warnings = descriptor.words[1];
  const std::uint32_t function = descriptor.words[2];
  const OpticalLimits limits = {High(alarms), Low(alarms), High(warnings), Low(warnings)};
  for (const OpticalElement& element : TableOf<kOpticalElements>()) {
    if (element.function == function) return ScaledLimitLines(text, element, limits);
  }
  RawLimitLines(text, function, limits);
}

std::string DecodeSwitchVendorFromOpticalProductDescriptor(CommandRun& run, const RdpDescriptor& descriptor) {
  const DecoderScope decoder(run, __func__, descriptor);
  return VendorName(descriptor);
}

void DecodeOpticalProductDataDescriptor(CommandRun& run, const RdpDescriptor& descriptor, ReportText& text) {
  const DecoderScope decoder(run, __func__, descriptor);
  text.Line("Vendor Name: %s\n", VendorName(descriptor).c_str());
  text.Line("Part Number: %s\n", Characters(descriptor, 4, 4).c_str());
  text.Line("Serial Number: %s\n", Characters(descriptor, 8, 4).c_str());
  text.Line("Revision: %s", Characters(descriptor, 12, 1).c_str());
  text.Line("\nDate: %s\n", Characters(descriptor, 13, 2).c_str());
}
