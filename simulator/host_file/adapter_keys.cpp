#include "host_file/adapter_keys.h"

#include <cstring>

#include "base/text.h"

namespace lab {
namespace {

constexpr NamedNumber kPersonalities[] = {{"fc", 0}, {"cna", 1}};

constexpr KeyRow<Adapter> kVersionKeys[] = {
    {"multiboot", [](const Value& value, Adapter& into) { value.Into(into.record.multiboot_version); }},
    {"firmware", [](const Value& value, Adapter& into) { value.Into(into.record.flash_firmware_version); }},
    {"bios", [](const Value& value, Adapter& into) { value.Into(into.record.flash_bios_version); }},
    {"efi", [](const Value& value, Adapter& into) { value.Into(into.record.flash_efi_version); }},
    {"fcode", [](const Value& value, Adapter& into) { value.Into(into.record.flash_fcode_version); }},
    {"driver",
     [](const Value& value, Adapter& into) {
       into.driver_version = value.Text(sizeof FCProtocolEntry{}.driver_version.bytes);
     }},
    {"running-firmware",
     [](const Value& value, Adapter& into) {
       into.running_firmware = value.Text(sizeof FCProtocolEntry{}.running_firmware_version.bytes);
     }},
    {"running-mpi", [](const Value& value, Adapter& into) { value.Into(into.running_mpi); }},
    {"running-pep", [](const Value& value, Adapter& into) { value.Into(into.running_pep); }},
};

// Texts of a fixed number of characters, without terminator.
template <std::size_t N>
void StoreCharacters(const Value& value, char (&field)[N]) {
  const std::string text = value.Text(N);
  std::memset(field, 0, N);
  std::memcpy(field, text.data(), text.size());
}

constexpr KeyRow<FlashMemoBlock> kMemoKeys[] = {
    {"signature", [](const Value& value, FlashMemoBlock& into) { StoreCharacters(value, into.signature); }},
    {"family-firmware", [](const Value& value, FlashMemoBlock& into) { value.Into(into.family_firmware); }},
    {"mbi-version", [](const Value& value, FlashMemoBlock& into) { value.Into(into.mbi_version); }},
    {"build-date",
     [](const Value& value, FlashMemoBlock& into) {
       if (!ReadDate(value.Word(), into.mbi_build_date)) value.Expected("a date like 2026-03-14");
     }},
    {"tool-id", [](const Value& value, FlashMemoBlock& into) { StoreCharacters(value, into.tool_id); }},
    {"tool-version",
     [](const Value& value, FlashMemoBlock& into) {
       if (!ReadToolVersion(value.Word(), into.tool_version)) value.Expected("four numbers like 1.9.0.0");
     }},
    {"updated",
     [](const Value& value, FlashMemoBlock& into) {
       if (!ReadTime(value.Word(), into)) value.Expected("a time like \"2026-03-14 09:26:53\"");
     }},
};

void ReadFlash(const Value& map, Adapter& into) {
  EachRow(map, kFlashComponents, [&](const FlashComponent& component, const Value& value) {
    value.Into(into.flash.*component.field);
  });
}

void ReadMemo(const Value& value, Adapter& into) {
  if (value.Is("none")) {
    into.memo = {};
  } else {
    ReadMap(value, kMemoKeys, into.memo);
  }
}

void ReadPersonality(const Value& value, Adapter& into) {
  value.CodeInto(kPersonalities, into.personality);
}

constexpr KeyRow<Adapter> kChangeableKeys[kChangeableKeyCount] = {
    {"personality", ReadPersonality},
    {"versions", [](const Value& value, Adapter& into) { ReadMap(value, kVersionKeys, into); }},
    {"flash", ReadFlash},
    {"memo-block", ReadMemo},
};

constexpr KeyRow<Adapter> kAdapterKeys[] = {
    {"family", ReadElsewhere},
    {"model", [](const Value& value, Adapter& into) { value.Into(into.record.model); }},
    {"serial", [](const Value& value, Adapter& into) { value.Into(into.record.serial_number); }},
    {"manufacturer", [](const Value& value, Adapter& into) { value.Into(into.record.manufacturer); }},
    {"type", [](const Value& value, Adapter& into) { value.Into(into.record.type); }},
    {"vendor-id", [](const Value& value, Adapter& into) { value.Into(into.record.vendor_id); }},
    {"device-id", [](const Value& value, Adapter& into) { value.Into(into.device_id); }},
    {"subsystem-vendor-id",
     [](const Value& value, Adapter& into) { value.Into(into.record.subsystem_vendor_id); }},
    {"subsystem-device-id",
     [](const Value& value, Adapter& into) { value.Into(into.record.subsystem_device_id); }},
    {"bus", [](const Value& value, Adapter& into) { value.Into(into.record.bus_id); }},
    {"chip-revision", [](const Value& value, Adapter& into) { value.Into(into.record.chip_revision); }},
    kChangeableKeys[0],
    kChangeableKeys[1],
    kChangeableKeys[2],
    kChangeableKeys[3],
    {"personality-change-allowed",
     [](const Value& value, Adapter& into) { value.Into(into.personality_change_allowed); }},
    {"firmware-lockdown", [](const Value& value, Adapter& into) { value.Into(into.firmware_lockdown); }},
    {"mezzanine", [](const Value& value, Adapter& into) { value.Into(into.mezzanine); }},
    {"ports", ReadElsewhere},
};

}  // namespace

void ReadAdapterKeys(const Value& map, Adapter& adapter) {
  ReadMap(map, kAdapterKeys, adapter);
}

std::span<const KeyRow<Adapter>, kChangeableKeyCount> ChangeableAdapterKeys() {
  return kChangeableKeys;
}

}  // namespace lab
