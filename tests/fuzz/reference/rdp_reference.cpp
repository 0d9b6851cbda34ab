#include "reference/rdp_reference.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "reference/text.h"

namespace reference {

namespace {

constexpr std::size_t kResponseBytes = 508;
constexpr std::size_t kReportBytes = 16384;
constexpr const char* kRuler = "---------------------------------\n";

using Words = std::vector<std::uint32_t>;

class Decoder {
 public:
  explicit Decoder(const std::uint8_t* response) : report_(kReportBytes) {
    all_.reserve(kResponseBytes / 4);
    words_.reserve(kResponseBytes / 4);
    for (std::size_t i = 0; i < kResponseBytes; i += 4) {
      std::uint32_t word = 0;
      for (std::size_t byte = 0; byte < 4; ++byte) word = word * 256 + response[i + byte];
      all_.push_back(word);
    }
  }

  std::string Decode() {
    const std::uint32_t list_length = all_[0];
    if (list_length < 5) return "";
    for (std::size_t at = 1; at < all_.size() && at * 4 < list_length;) {
      const std::uint32_t tag = all_[at];
      if (Heading(tag) == nullptr) {
        ++at;
        continue;
      }
      length_ = at + 1 < all_.size() ? all_[at + 1] : 0;
      words_.clear();
      for (std::size_t i = 0; i < length_ / 4 && at + 2 + i < all_.size(); ++i)
        words_.push_back(all_[at + 2 + i]);
      report_.Add({tag == 1 ? "\n" : "", kRuler});
      report_.Add({Heading(tag), "\n"});
      report_.Add(kRuler);
      DecodeOne(tag);
      at += 2 + words_.size();
    }
    return report_.Text();
  }

 private:
  static const char* Heading(std::uint32_t tag) {
    switch (tag) {
      case 0x00000001:
        return "Diagnostics Parameters Information";
      case 0x00010000:
        return "SFP Diagnostics Param Information";
      case 0x00010001:
        return "Port Speed Information";
      case 0x00010002:
        return "Link Error Status Block Information";
      case 0x00010003:
        return "Port Name Information";
      case 0x00010005:
        return "FEC Status Information";
      case 0x00010006:
        return "Buffer Credits Status Information";
      case 0x00010007:
        return "Optical Element Data Information";
      case 0x00010008:
        return "Optical Product Data Information";
      default:
        return nullptr;
    }
  }

  void DecodeOne(std::uint32_t tag) {
    switch (tag) {
      case 0x00000001:
        return Parameters();
      case 0x00010000:
        return Sfp();
      case 0x00010001:
        return Speeds();
      case 0x00010002:
        return LinkErrors();
      case 0x00010003:
        return Names();
      case 0x00010005:
        return Fec();
      case 0x00010006:
        return Credits();
      case 0x00010007:
        return OpticalElement();
      default:
        return OpticalProduct();
    }
  }

  void Add(std::string_view line) { report_.Add(line); }
  void Value(std::string_view label, std::string_view value, std::string_view unit = "") {
    report_.Add({label, ": ", value, unit, "\n"});
  }
  void Signed(std::string_view label, std::uint32_t value, std::string_view unit = "") {
    Value(label, std::to_string(static_cast<std::int32_t>(value)), unit);
  }
  void Word(std::string_view label, std::uint32_t value) { Value(label, "0x" + UpperHex(value, 8)); }
  void Real(std::string_view label, int digits, double value, std::string_view unit = "") {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    Value(label, text, unit);
  }

  void Parameters() {
    Value("Descriptor Tag", "Link Service Request Information");
    Signed("Descriptor Len", length_, " Bytes");
    for (const std::uint32_t word : words_) Word("Descriptor Value", word);
  }

  void Speeds() {
    if (words_.empty()) return;
    constexpr int kCapabilities[16] = {0, 0, 0, 0, 0, 0, 256, 128, 64, 32, 16, 8, 10, 4, 2, 1};
    constexpr int kOperating[16] = {0, 0, 0, 0, 0, 0, 256, 128, 64, 32, 16, 10, 8, 4, 2, 1};
    std::string capabilities;
    int speed = 0;
    for (int bit = 0; bit < 16; ++bit) {
      if ((words_[0] >> (16 + bit) & 1) != 0 && bit >= 6) {
        capabilities += std::to_string(kCapabilities[bit]);
        capabilities += ' ';
      }
    }
    for (int bit = 15; bit >= 0; --bit) {
      if ((words_[0] >> bit & 1) != 0) speed = kOperating[bit];
    }
    Value("Port Speed Capabilities", capabilities + "Gbps");
    Value("Port Operating Speed", std::to_string(speed) + " Gbps");
  }

  void LinkErrors() {
    constexpr const char* kCounts[] = {"Link Failure Count",          "Loss Of Sync Count",
                                       "Loss Of Signal Count",        "Primary Sequence Error Count",
                                       "Invalid Transmit Word Count", "Invalid CRC Count"};
    for (std::size_t i = 0; i < words_.size(); ++i) {
      const std::uint32_t word = words_[i];
      if (i < 6) {
        Signed(kCounts[i], word);
      } else if (i > 6) {
        Word("Link Error Status Block Value", word);
      } else {
        Word("PN Port Physical Type", word);
        const bool lossless = (word & 0x80000000U) != 0;
        const bool framing = (word & 0x40000000U) != 0;
        if (lossless && !framing) Add("\tThe sending VN_Port uses a lossless Ethernet MAC\n");
        if (!lossless && framing) Add("\tThe sending VN_Port uses an FC-FS-3 PN_Port or PF Port\n");
        if (!lossless && !framing) Add("\tNo information about Phy Type provided\n");
      }
    }
  }

  void Names() {
    const auto name = [this](const char* label, std::size_t first) {
      if (words_.size() < first + 2) return;
      std::string text = Hex(std::uint64_t{words_[first]} << 32 | words_[first + 1], 16);
      for (std::size_t colon = 14; colon > 0; colon -= 2) text.insert(colon, ":");
      Value(label, text);
    };
    name("Node WWN", 0);
    name("Port WWN", 2);
    for (std::size_t i = 4; i < words_.size(); ++i)
      Word("Descriptor Value (" + std::to_string(i) + ")", words_[i]);
  }

  void Sfp() {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      const std::uint32_t high = words_[i] >> 16;
      const std::uint32_t low = words_[i] & 0xFFFF;
      if (i == 0) {
        Value("Temperature", Decimal(high >> 8), " (C)");
        Real("Vcc", 9, low * 100.0 * 0.000001, " V");
      } else if (i == 1) {
        Real("Tx Bias", 9, low_bias(high), " mA");
        Real("Tx Power", 9, low * 0.1 * 0.001, " mW");
      } else if (i == 2) {
        Real("Rx Power", 9, high * 0.1 * 0.001, " mW");
        Value("SFP Flag", "0x" + UpperHex(low, 4));
        SfpFlags(low);
      } else {
        Word("Descriptor Value", words_[i]);
      }
    }
  }

  static double low_bias(std::uint32_t n) { return (n * 2) * 0.001; }

  void SfpFlags(std::uint32_t flags) {
    const auto bit = [flags](int number) { return (flags >> number & 1) != 0; };
    if ((flags & 15) == 1) {
      Value("\tPort Tx Type", "Short Wave Laser");
    } else if (bit(1)) {
      Value("\tPort Tx Type", "Long Wave Laser LC 1310 nm");
    }
    Value("\tConnector Type", bit(4) && bit(6) ? "SFP+" : "Other");
    Value("\tOptical Port", bit(4) ? "On" : "Off");
    Value("\tSFP Diagnostics Parameters not valid", bit(5) ? "On" : "Off");
    if (!bit(7)) Value("\tConnector Type", bit(6) ? "SFP+" : "Other");
    Add(bit(15) ? "\tFEC Active Port: On\n" : "\tFEC Active: Off\n");
  }

  void Fec() {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      Signed(i == 0   ? "Correctable Blocks"
             : i == 1 ? "UnCorreatable Blocks"
                      : "FEC Status Block Value",
             words_[i]);
    }
  }

  void Credits() {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      if (i == 0) Signed("FC Port Buffer To Buffer Credits", words_[i]);
      if (i == 1) Signed("Attached FC Port Buffer To Buffer Credits", words_[i]);
      if (i == 2) Signed("Nominal FC Port RTT", words_[i], " ns");
      if (i > 2) Word("Buffer Credits Status Value", words_[i]);
    }
  }

  void OpticalElement() {
    for (std::size_t i = 3; i < words_.size(); ++i) Word("Optical Element Data Descriptor Value", words_[i]);
    Words words = words_;
    words.resize(std::max<std::size_t>(words.size(), 3));
    const std::uint32_t limits[] = {words[0] >> 16, words[0] & 0xFFFF, words[1] >> 16, words[1] & 0xFFFF};
    constexpr const char* kLimits[] = {" High Alarm", " Low Alarm", " High Warning", " Low Warning"};
    for (std::size_t i = 0; i < 4; ++i) {
      const std::uint32_t n = limits[i];
      const std::uint32_t low = n & 0xFF;
      switch (words[2]) {
        case 0x10000000:
          if (i % 2 == 0) {
            Real(std::string("Temperature") + kLimits[i], 2, (n & 0x100) != 0 ? n * 0.5 - 256.0 : low);
          } else {
            Real(std::string("Temperature") + kLimits[i], 2, low == 0 ? 0.0 : low - 256.0);
          }
          break;
        case 0x20000000:
          Real(std::string("Voltage") + kLimits[i], 9, n * 100.0 * 0.000001);
          break;
        case 0x30000000:
          Real(std::string("Tx Bias") + kLimits[i], 9, (n * 2) * 0.001);
          break;
        case 0x40000000:
          Real(std::string("Tx Power") + kLimits[i], 9, n * 0.1 * 0.001);
          break;
        case 0x50000000:
          Real(std::string("Rx Power") + kLimits[i], 9, n * 0.1 * 0.001);
          break;
        default:
          Value("Optical Element Function Flag [0x" + Hex(words[2], 2) + "]" + kLimits[i], "0x" + Hex(n, 2));
      }
    }
  }

  // Characters up to a terminator; words that are missing are terminators.
  std::string Characters(std::size_t first, std::size_t count) const {
    std::string text;
    for (std::size_t i = first * 4; i < (first + count) * 4; ++i) {
      const char c = i / 4 < words_.size() ? static_cast<char>(words_[i / 4] >> (24 - i % 4 * 8)) : '\0';
      if (c == '\0') break;
      text += c;
    }
    return text;
  }

  void OpticalProduct() {
    Value("Vendor Name", Characters(0, 4));
    Value("Part Number", Characters(4, 4));
    Value("Serial Number", Characters(8, 4));
    Add("Revision: " + Characters(12, 1));
    Add("\nDate: " + Characters(13, 2) + "\n");
  }

  Words all_;
  std::uint32_t length_ = 0;
  Words words_;
  Report report_;
};

}  // namespace

std::string RdpDocument(bool xml, const std::uint8_t* response) {
  constexpr Frame kFrame = {"RDPInformation", "Read Diagnostics Parameters Data", "RDPDataList", "RDPInfo"};
  return ReportDocument(xml, kFrame, Decoder(response).Decode());
}

}  // namespace reference
