#include "reference/sfp_reference.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "reference/sfp_tables.h"
#include "reference/text.h"

namespace reference {

namespace {

constexpr Frame kFrame = {"DMIInformation", "Dmi Info", "DMIInfoList", "Dmi Data"};

void Pad(Pieces& text, std::string_view value, std::size_t width) {
  if (value.size() < width) text.Add(width - value.size(), ' ');
  text += value;
}

void Pad(Pieces& text, const char* value, std::size_t width) {
  std::size_t length = 0;
  while (value[length] != '\0') ++length;
  Pad(text, std::string_view(value, length), width);
}

bool IsBlank(const char* text) {
  while (*text == ' ') ++text;
  return *text == '\0';
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

class Image {
 public:
  Image(const std::uint8_t* bytes, std::size_t limit) : bytes_(bytes), limit_(limit) {}

  bool Has(std::size_t at, std::size_t size) const { return at + size <= limit_; }
  std::uint8_t operator[](std::size_t at) const { return at < limit_ ? bytes_[at] : std::uint8_t{0}; }
  // A big-endian number; 0 where a part of it is missing.
  std::uint16_t Word(std::size_t at) const {
    return Has(at, 2) ? static_cast<std::uint16_t>(bytes_[at] << 8 | bytes_[at + 1]) : std::uint16_t{0};
  }
  std::uint32_t DoubleWord(std::size_t at) const {
    return Has(at, 4) ? std::uint32_t{Word(at)} << 16 | Word(at + 2) : 0;
  }
  bool IsQsfp() const {
    const std::uint8_t kind = (*this)[0];
    return kind == 12 || kind == 13 || kind == 17 || kind == 18;
  }
  std::size_t Base() const { return IsQsfp() ? 128 : 0; }

  // The field as the walk shows it, with its trailing blank.
  std::string Ascii(std::size_t at, std::size_t size) const {
    std::string text;
    bool plain = false;
    for (std::size_t i = at; i < at + size && bytes_[i] != 0; ++i) {
      const char c = static_cast<char>(bytes_[i]);
      plain = plain || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
      text += c;
    }
    return (plain ? text : "0") + " ";
  }
  std::string Trimmed(std::size_t at, std::size_t size) const {
    if (!Has(at, size)) return "";
    std::string text = Ascii(at, size);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
  }

 private:
  const std::uint8_t* bytes_;
  std::size_t limit_;
};

void AddField(Pieces& text, const Image& image, const Field& field) {
  const std::uint8_t byte = image[field.offset];
  if (field.show == Show::kHeading) {
    text += field.label;
    text += '\n';
    return;
  }
  if (!image.Has(field.offset, field.size)) return;
  if (field.show == Show::kFlags) {
    Pad(text, field.label, 31);
    for (std::size_t i = 0; i < field.code_count; ++i) {
      if (i > 0) text += "\n                               ";
      text += " -";
      text += field.codes[i].text;
      text += ": 0x";
      text += (byte & field.codes[i].value) != 0 ? '1' : '0';
    }
    text += '\n';
    return;
  }
  Pad(text, field.label, 30);
  text += ": ";
  switch (field.show) {
    case Show::kCode:
      for (std::size_t i = 0; i < field.code_count; ++i) {
        if (field.codes[i].value == byte) {
          text += field.codes[i].text;
          break;
        }
      }
      break;
    case Show::kBits: {
      const std::size_t before = text.Size();
      for (std::size_t i = 0; i < field.code_count; ++i) {
        if ((byte & field.codes[i].value) == 0 || IsBlank(field.codes[i].text)) continue;
        if (text.Size() > before) text += ", ";
        text += field.codes[i].text;
      }
      if (text.Size() == before) text += "0x" + Hex(byte);
      break;
    }
    case Show::kHex:
      text += "0x";
      for (std::size_t i = 0; i < field.size; ++i) text.AddHexByte(image[field.offset + i]);
      break;
    case Show::kDump:
      for (std::size_t i = 0; i < field.size; ++i) {
        text += "0x";
        text.AddHexByte(image[field.offset + i]);
        text += ' ';
        if (i % 8 == 7 && i + 1 < field.size) text += "\n                                ";
      }
      break;
    default:
      text += image.Ascii(field.offset, field.size);
  }
  text += '\n';
}

// The parts of a media type or of the speeds.
class Parts {
 public:
  explicit Parts(std::string_view separator) : separator_(separator) {}

  void Add(std::string_view part) {
    if (IsBlank(part)) return;
    if (!text_.empty()) text_ += separator_;
    text_ += part;
  }
  void AddSet(const Code* codes, std::size_t count, std::uint8_t byte) {
    for (std::size_t i = 0; i < count; ++i) {
      if ((byte & codes[i].value) != 0) Add(codes[i].text);
    }
  }
  std::string Text() const { return text_.empty() ? "NA" : text_; }
  bool Empty() const { return text_.empty(); }

 private:
  std::string_view separator_;
  std::string text_;
};

template <std::size_t kCount>
void AddSet(Parts& parts, const Code (&codes)[kCount], unsigned byte) {
  parts.AddSet(codes, kCount, static_cast<std::uint8_t>(byte));
}

// The Fibre Channel speeds of a module, rising.
std::vector<int> FcSpeeds(const Image& image) {
  std::vector<int> speeds;
  const auto add = [&speeds](const auto& codes, std::uint8_t byte) {
    for (const Code& code : codes) {
      if ((byte & code.value) != 0 && !IsBlank(code.text))
        speeds.push_back(static_cast<int>(std::strtol(code.text, nullptr, 10)));
    }
  };
  const std::uint8_t byte = image[image.Base() + 10];
  add(kFcSpeedShortBits, byte);
  if (!image.IsQsfp() && (byte & 2) != 0) add(kFcSpeed2ShortBits, image[62]);
  std::sort(speeds.begin(), speeds.end());
  return speeds;
}

std::string MediaType(const Image& image) {
  const std::size_t base = image.Base();
  if (image[base + 7] == 0 && image[base + 8] == 0 && image[base + 9] == 0 && image[base + 10] == 0) {
    return "NA";
  }
  const std::vector<int> speeds = FcSpeeds(image);
  Parts media("/");
  Parts transmitter("/");
  Parts distance("/");
  AddSet(media, kFcMediaShortBits, image[base + 9]);
  AddSet(transmitter, kFcTechShortBits, image[base + 8]);
  AddSet(transmitter, kFcLengthShortBits, image[base + 7] & 0x03U);
  AddSet(distance, kFcLengthShortBits, image[base + 7] & 0xFCU);
  return (speeds.empty() ? "NA" : std::to_string(speeds.back())) + "-" + media.Text() + "-" +
         transmitter.Text() + "-" + distance.Text();
}

// A text that a list has already is not added again.
void AddOnce(std::vector<std::string_view>& texts, std::string_view text) {
  if (!IsBlank(text) && std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(text);
}

std::string Speed(const Image& image) {
  Parts parts(", ");
  for (const int speed : FcSpeeds(image)) parts.Add(std::to_string(speed));
  if (!parts.Empty()) return parts.Text() + " MBytes/Sec";
  std::vector<std::string_view> texts;
  const auto each_set = [](const auto& codes, std::uint8_t byte, const auto& visit) {
    for (const Code& code : codes) {
      if ((byte & code.value) != 0) visit(std::string_view(code.text));
    }
  };
  if (image.IsQsfp()) {
    each_set(kEthernetSpeedBitsQsfp, image[131], [&](std::string_view text) {
      if (text != "Extended") return AddOnce(texts, text);
      for (const Code& code : kExtendedEthernetSpeedCodes) {
        if (code.value == image[192]) AddOnce(texts, code.text);
      }
    });
  } else {
    each_set(kEthernetSpeedBitsSfp, image[3], [&](std::string_view text) { AddOnce(texts, text); });
  }
  for (const std::string_view text : texts) parts.Add(text);
  return parts.Text();
}

// The measured values, in the single precision in which users know them.

enum Row { kNow, kHighAlarm, kHighWarning, kLowWarning, kLowAlarm, kRows };

struct Quantity {
  float entries[kRows];
  float slope;
  float offset;
};

std::uint16_t Swapped(std::uint16_t number) {
  return static_cast<std::uint16_t>((number & 0xFF) << 8 | number >> 8);
}

float Slope(std::uint16_t number) {
  char text[24];
  std::snprintf(text, sizeof text, "%u.%u", number, number >> 8);
  return static_cast<float>(std::strtod(text, nullptr));
}

float Ieee(std::uint32_t pattern) {
  const float sign = pattern >> 31 != 0 ? -1.0F : 1.0F;
  const std::uint32_t exponent = pattern >> 23 & 0xFF;
  std::uint32_t mantissa = pattern & 0x7FFFFF;
  if (exponent == 255) return sign * 3.4028235e38F;
  auto scale = static_cast<float>(std::ldexp(1.0, static_cast<int>(exponent) - 150));
  if (exponent == 0) {
    scale *= 2.0F;
  } else {
    mantissa |= 0x800000;
  }
  return static_cast<float>(mantissa) * scale * sign;
}

float HighTemperature(std::uint16_t field) {
  const std::uint16_t t = Swapped(field);
  if ((t & 0x100) == 0) return t;
  return static_cast<float>(t * 0.5) - 256.0F;
}

float LowTemperature(std::int32_t t) {
  int highest = 0;
  for (int bit = 1; bit < 32; ++bit) {
    if ((static_cast<std::uint32_t>(t) >> bit & 1) != 0) highest = bit;
  }
  if (highest > 7) return static_cast<float>(t) - 512.0F;
  return (t & 0x80) != 0 ? static_cast<float>(t) - 256.0F : static_cast<float>(t);
}

float Scaled(int quantity, std::uint16_t n) {
  const float number = n;
  if (quantity == 1) return number * 100.0F * 0.000001F;
  if (quantity == 2) return (number + number) * 0.001F;
  return number * 0.1F * 0.001F;
}

struct Diagnostics {
  Quantity quantities[5] = {};
  float coefficients[5] = {};

  explicit Diagnostics(const Image& image) {
    constexpr std::size_t kThreshold[kRows] = {0, 0, 4, 6, 2};  // from a quantity's first one
    for (int q = 0; q < 5; ++q) {
      Quantity& quantity = quantities[q];
      const std::size_t first = 256 + static_cast<std::size_t>(q) * 8;
      const std::size_t value = 352 + static_cast<std::size_t>(q) * 2;
      for (int row = kHighAlarm; q > 0 && row < kRows; ++row) {
        quantity.entries[row] = Scaled(q, image.Word(first + kThreshold[row]));
      }
      const unsigned high = image[value];
      const unsigned low = image[value + 1];
      if (q > 0) quantity.entries[kNow] = Scaled(q, static_cast<std::uint16_t>(high << 8 | low));
    }
    Quantity& temperature = quantities[0];
    temperature.entries[kNow] = static_cast<float>(image[353]) * 0.00390625F + static_cast<float>(image[352]);
    temperature.entries[kHighAlarm] = HighTemperature(image.Word(256));
    temperature.entries[kHighWarning] = HighTemperature(image.Word(260));
    temperature.entries[kLowWarning] = LowTemperature(static_cast<std::int16_t>(Swapped(image.Word(262))));
    temperature.entries[kLowAlarm] = LowTemperature(Swapped(image.Word(258)));
    temperature.slope = Slope(Swapped(image.Word(340)));
    temperature.offset = Swapped(image.Word(342));
    quantities[1].slope = Slope(Swapped(image.Word(344)));
    quantities[1].offset = static_cast<std::int16_t>(image.Word(346));
    quantities[2].slope = Slope(image.Word(332) & 0xFF);
    quantities[2].offset = static_cast<float>(image.Word(334) & 0xFF);
    quantities[3].slope = Slope(Swapped(image.Word(336)));
    quantities[3].offset = static_cast<float>(std::uint32_t{Swapped(image.Word(336))} << 16);
    for (std::size_t i = 0; i < 5; ++i) coefficients[i] = Ieee(image.DoubleWord(328 - 4 * i));
  }

  float At(int q, Row row) const {
    const Quantity& quantity = quantities[q];
    const float r = quantity.entries[row];
    if (q < 4) return quantity.slope == 0.0F ? r : r * quantity.slope + quantity.offset;
    const float* const c = coefficients;
    if (c[0] == 0 && c[1] == 0 && c[2] == 0 && c[3] == 0 && c[4] == 0) return r + r + r + r;
    return c[4] * r + c[3] * r + c[2] * r + c[1] * r + c[0];
  }

  const char* Status(int q) const {
    const float value = At(q, kNow);
    if (value >= At(q, kHighAlarm)) return "Fault";
    if (At(q, q == 4 ? kLowAlarm : kLowWarning) >= value) return "Fault";
    if (value >= At(q, kHighWarning)) return "Warning";
    return q == 4 && At(q, kLowWarning) >= value ? "Warning" : "Normal";
  }
};

void AddTable(Pieces& text, const Image& image) {
  const Diagnostics d(image);
  text +=
      "\n                 Temperature   Voltage     Tx Bias    Tx Power    Rx Power\n"
      "\n                     (C)         (V)        (mA)        (mW)        (mW)\n"
      "\n              --------------   -------     -------    --------    --------\n";
  const auto values = [&](const char* label, Row row) {
    char line[512];
    std::snprintf(line, sizeof line, "\n%14s%10.2f%13.2f%12.2f%12.4f%12.4f\n", label, double{d.At(0, row)},
                  double{d.At(1, row)}, double{d.At(2, row)}, double{d.At(3, row)}, double{d.At(4, row)});
    text += line;
  };
  values("Value ", kNow);
  text += "\n       Status ";
  constexpr std::size_t kWidths[] = {10, 13, 12, 12, 12};
  for (int q = 0; q < 5; ++q) Pad(text, d.Status(q), kWidths[q]);
  text += '\n';
  values("High Alarm ", kHighAlarm);
  values("High Warning ", kHighWarning);
  values("Low Warning ", kLowWarning);
  values("Low Alarm ", kLowAlarm);
}

}  // namespace

std::string SfpReport(const std::uint8_t* bytes, std::size_t limit) {
  const Image image(bytes, limit);
  const std::size_t base = image.Base();
  Pieces text;
  text += "Media Information:\n";
  const auto line = [&text](const char* label, const std::string& value) {
    Pad(text, label, 30);
    text += ": ";
    text += value;
    text += '\n';
  };
  line("Media", "Installed");
  line("Vendor", image.Trimmed(base + 20, 16));
  line("Part Number", image.Trimmed(base + 40, 16));
  line("Revision", image.IsQsfp() ? image.Trimmed(184, 2) : image.Trimmed(56, 4));
  line("Serial Number", image.Trimmed(base + 68, 16));
  line("Media Type", MediaType(image));
  line("Speed", Speed(image));
  if (!image.IsQsfp() && (image[92] & 0x40) != 0) AddTable(text, image);
  if (image.IsQsfp()) {
    for (const Field& field : kQsfpFields) AddField(text, image, field);
  } else {
    for (const Field& field : kSfpFields) AddField(text, image, field);
  }
  return text.Text();
}

std::string SfpDocument(bool xml, const std::uint8_t* image) {
  if (Record(image).AllAre(0, 512, 0)) return ErrorDocument(xml, kFrame, "Failed, Data not available");
  return ReportDocument(xml, kFrame, SfpReport(image, 512));
}

std::string SfpRawDocument(bool xml, const std::uint8_t* image) {
  const Record record(image);
  if (record.AllAre(0, 512, 0)) return ErrorDocument(xml, kFrame, "Failed, Data not available");
  Writer writer(xml);
  writer.BeginStructure(kFrame.structure);
  writer.StringField("Message", "Success");
  writer.BeginField(kFrame.field);
  writer.BeginList();
  writer.BeginStructure(kFrame.list_structure);
  writer.StringField("Dmi A0Data In Hex", record.Octets(0, 256, " ") + " ");
  writer.StringField("Dmi A2Data In Hex", record.Octets(256, 256, " ") + " ");
  writer.End("structure");
  writer.End("list");
  writer.End("field");
  writer.End("structure");
  return writer.Text();
}

}  // namespace reference
