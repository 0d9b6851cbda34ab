#include "images/vpd_image.h"

#include <map>

namespace lab {
namespace {

// Tags of the PCI standard.
constexpr char kIdentifierString = '\x82';
constexpr char kReadOnlyHeader = '\x90';
constexpr char kReadWriteHeader = '\x91';
constexpr char kEnd = '\x78';

constexpr const char* kChecksumKeyword = "RV";
constexpr const char* kReservedKeyword = "RW";
constexpr std::size_t kReservedBytes = 16;

void AppendLength(std::string& image, std::size_t length) {
  image += static_cast<char>(length & 0xff);
  image += static_cast<char>(length >> 8);
}

std::string Item(const std::string& keyword, const std::string& value) {
  return keyword + static_cast<char>(value.size()) + value;
}

// The items that an adapter's record gives. Those of the read-write resource begin with "V", but for V0.
std::map<std::string, std::optional<std::string>> ItemsOf(const Adapter& adapter) {
  const AdapterEntry& record = adapter.record;
  const auto text = [](const auto& field) { return std::string(field.View()); };
  return {
      {"PN", "SX" + text(record.model) + "-18"},   {"EC", std::string("AD0210402-05")},
      {"SN", text(record.serial_number)},          {"MN", std::string("0006")},
      {"V0", std::string("PWRSLT=10.5")},          {"V1", text(record.flash_efi_version)},
      {"V3", text(record.flash_firmware_version)}, {"V4", text(record.flash_bios_version)},
      {"V5", text(record.flash_fcode_version)},    {"V9", text(record.multiboot_version)},
  };
}

bool IsWritable(const std::string& keyword) {
  return keyword[0] == 'V' && keyword != "V0";
}

// Appends the checksum item: with it, all bytes from the start of the image on add up to 0.
void AppendChecksum(std::string& image) {
  image += kChecksumKeyword;
  image += '\x01';
  unsigned sum = 0;
  for (const char byte : image) sum += static_cast<unsigned char>(byte);
  image += static_cast<char>(-sum & 0xff);
}

}  // namespace

std::string ComposeVpd(const Adapter& adapter, const VpdSetup& setup) {
  if (setup.bytes) return *setup.bytes;
  auto items = ItemsOf(adapter);
  for (const auto& [keyword, value] : setup.items) items[keyword] = value;
  std::string read_only;
  std::string read_write;
  for (const auto& [keyword, value] : items) {
    if (value) (IsWritable(keyword) ? read_write : read_only) += Item(keyword, *value);
  }
  read_write += Item(kReservedKeyword, std::string(kReservedBytes, '\0'));

  const std::string model(adapter.record.model.View());
  const std::string name = setup.name.value_or("Sorvex " + model + " Fibre Channel Adapter");
  std::string image(1, kIdentifierString);
  AppendLength(image, name.size());
  image += name;
  image += kReadOnlyHeader;
  constexpr std::size_t kChecksumItem = 4;
  AppendLength(image, read_only.size() + kChecksumItem);
  image += read_only;
  AppendChecksum(image);
  image += kReadWriteHeader;
  AppendLength(image, read_write.size());
  return image + read_write + kEnd;
}

}  // namespace lab
