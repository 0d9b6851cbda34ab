#include "reference/vpd_reference.h"

#include "reference/text.h"

namespace reference {

namespace {

struct Pair {
  const char* keyword;
  const char* name;
  bool known;
  std::string value;
};

}  // namespace

std::string VpdDocument(bool xml, const std::uint8_t* image, std::size_t size) {
  // In the order of the document.
  Pair pairs[] = {
      {"EC", "Engineering Date Code", false, ""}, {"MN", "Manufacturing Id", false, ""},
      {"PI", "Product Identifier", false, ""},    {"PN", "Part Number", false, ""},
      {"RM", "Multi Boot Version", false, ""},    {"SN", "Serial Number", false, ""},
      {"V0", "Miscellaneous Info", false, ""},    {"V1", "Efi Driver Version", false, ""},
      {"V3", "Firmware Version", false, ""},      {"V4", "Bios Version", false, ""},
      {"V5", "FCode Version", false, ""},         {"V9", "Multi Boot Version", false, ""},
  };
  const auto byte = [image, size](std::size_t at) { return at < size ? image[at] : 0; };
  for (std::size_t at = 0; at < size;) {
    const int tag = byte(at);
    if (tag == 0x78) break;
    if (tag == 0x90 || tag == 0x91) {
      at += 3;
      continue;
    }
    const auto length =
        static_cast<std::size_t>(tag == 0x82 ? byte(at + 1) + byte(at + 2) * 256 : byte(at + 2));
    std::string value;
    for (std::size_t i = at + 3; i < at + 3 + length && byte(i) != 0; ++i)
      value += static_cast<char>(image[i]);
    for (Pair& pair : pairs) {
      const std::string keyword = {static_cast<char>(tag), static_cast<char>(byte(at + 1))};
      if (tag == 0x82 ? pair.keyword != std::string("PI") : pair.keyword != keyword) continue;
      pair.known = true;
      pair.value = value;
    }
    at += 3 + length;
  }
  Writer writer(xml);
  writer.BeginStructure("VPDInformation");
  writer.StringField("Message", "Success");
  writer.BeginField("VPD Data");
  writer.BeginList();
  for (const Pair& pair : pairs) {
    if (!pair.known) continue;
    writer.BeginStructure("TagList");
    writer.StringField("Tag", pair.name);
    writer.StringField("Value", pair.value);
    writer.End("structure");
  }
  writer.End("list");
  writer.End("field");
  writer.End("structure");
  return writer.Text();
}

}  // namespace reference
