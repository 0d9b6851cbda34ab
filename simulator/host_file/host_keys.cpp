#include "host_file/host_keys.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>

#include "base/results.h"
#include "base/text.h"
#include "host_file/port_keys.h"
#include "state/port_state.h"

namespace lab {
namespace {

constexpr NamedNumber kPersonalities[] = {{"fc", 0}, {"cna", 1}};
constexpr NamedNumber kBootModes[] = {
    {"bios", kBootModeBios}, {"uefi", kBootModeUefi}, {"nvme", kBootModeNvme}};
constexpr NamedNumber kChatterWords[] = {{"false", static_cast<std::uint32_t>(Chatter::kOff)},
                                         {"true", static_cast<std::uint32_t>(Chatter::kAllCalls)},
                                         {"ports", static_cast<std::uint32_t>(Chatter::kPortCalls)}};

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
       if (!ReadDate(value.Text(64), into.mbi_build_date)) value.Expected("a date like 2026-03-14");
     }},
    {"tool-id", [](const Value& value, FlashMemoBlock& into) { StoreCharacters(value, into.tool_id); }},
    {"tool-version",
     [](const Value& value, FlashMemoBlock& into) {
       const std::string text = value.Text(64);
       if (!ReadToolVersion(text, into.tool_version)) value.Expected("four numbers like 1.9.0.0");
     }},
    {"updated",
     [](const Value& value, FlashMemoBlock& into) {
       if (!ReadTime(value.Text(64), into)) value.Expected("a time like \"2026-03-14 09:26:53\"");
     }},
};

void ReadFlash(const Value& map, Adapter& into) {
  map.EachKey([&](const Value& value) {
    const FlashComponent* component = FindFlashComponent(value.Key());
    if (component) {
      value.Into(into.flash.*component->field);
      return;
    }
    std::string names;
    for (const FlashComponent& known : kFlashComponents) {
      names += (names.empty() ? "" : ", ") + std::string(known.name);
    }
    value.UnknownKey(names);
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
  into.personality = static_cast<std::uint8_t>(value.ChoiceOrNumber(kPersonalities, 255));
}

constexpr KeyRow<Adapter> kStateKeys[] = {
    {"personality", ReadPersonality},
    {"versions", [](const Value& value, Adapter& into) { ReadMap(value, kVersionKeys, into); }},
    {"flash", ReadFlash},
    {"memo-block", ReadMemo},
};

void ReadElsewhere(const Value&, Adapter&) {}

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
    kStateKeys[0],
    kStateKeys[1],
    kStateKeys[2],
    kStateKeys[3],
    {"personality-change-allowed",
     [](const Value& value, Adapter& into) { value.Into(into.personality_change_allowed); }},
    {"firmware-lockdown", [](const Value& value, Adapter& into) { value.Into(into.firmware_lockdown); }},
    {"mezzanine", [](const Value& value, Adapter& into) { value.Into(into.mezzanine); }},
    {"ports", ReadElsewhere},
};

// What stands in a host while it is read.
struct HostReading {
  Host& host;
  std::set<std::string> port_names;
};

void ReadAdapter(const Value& map, HostReading& reading) {
  const Family* family = nullptr;
  map.EachKey([&](const Value& value) {
    if (value.Key() != "family") return;
    family = FindFamily(value.Text(64));
    if (!family) value.Expected("one of " + std::string(FamilyNames()));
  });
  if (!family) map.Missing("family");

  const std::size_t index = reading.host.adapters.size();
  Adapter& adapter = reading.host.adapters.emplace_back(MakeAdapter(*family, index));
  ReadMap(map, kAdapterKeys, adapter);
  map.EachKey([&](const Value& value) {
    if (value.Key() != "ports") return;
    adapter.has_list = true;
    value.EachItem([&](const Value& item) { ReadPort(item, adapter, index, reading.port_names); });
  });
}

struct FaultReading {
  std::string call;
  std::string result;
  bool once = false;
};

constexpr KeyRow<FaultReading> kFaultKeys[] = {
    {"call", [](const Value& value, FaultReading& into) { into.call = value.Text(256); }},
    {"result",
     [](const Value& value, FaultReading& into) { into.result = value.IsNull() ? "null" : value.Text(256); }},
    {"once", [](const Value& value, FaultReading& into) { value.Into(into.once); }},
};

void ReadFault(const Value& map, FaultQueue& faults) {
  FaultReading fault;
  ReadMap(map, kFaultKeys, fault);
  if (fault.call.empty()) map.Missing("call");
  if (fault.result.empty()) map.Missing("result");
  if (const std::string wrong = faults.Add(fault.call, fault.result, fault.once); !wrong.empty())
    map.Wrong(wrong);
}

constexpr KeyRow<HostReading> kHostKeys[] = {
    {"adapters",
     [](const Value& value, HostReading& into) {
       value.EachItem([&](const Value& item) { ReadAdapter(item, into); });
     }},
    {"no-list", [](const Value& value, HostReading& into) { value.Into(into.host.no_list); }},
    {"reboot-required", [](const Value& value, HostReading& into) { value.Into(into.host.reboot_required); }},
    {"boot-mode",
     [](const Value& value, HostReading& into) {
       into.host.boot_mode = value.ChoiceOrNumber(kBootModes, UINT32_MAX);
     }},
    {"chatter",
     [](const Value& value, HostReading& into) {
       into.host.chatter = static_cast<Chatter>(value.Choice(kChatterWords));
     }},
    {"faults",
     [](const Value& value, HostReading& into) {
       value.EachItem([&](const Value& item) { ReadFault(item, into.host.faults); });
     }},
};

}  // namespace

void ReadAdapterState(const Value& map, Adapter& adapter) {
  static constexpr KeyRow<Adapter> kKeys[] = {
      kStateKeys[0], kStateKeys[1], kStateKeys[2], kStateKeys[3], {"ports", ReadPortStates},
  };
  ReadMap(map, kKeys, adapter);
}

std::string ReadHost(const std::string& name, const std::string& text, Host& host) {
  return ReadDocument(name, text, [&host](const Value& document) {
    HostReading reading{host, {}};
    ReadMap(document, kHostKeys, reading);
  });
}

FileResult ReadFile(const char* path, std::string& out) {
  std::FILE* file = std::fopen(path, "rbe");
  if (!file) return FileResult::kNotOpened;
  char block[16384];
  std::size_t count = 0;
  while (out.size() <= kLargestFile && (count = std::fread(block, 1, sizeof block, file)) > 0) {
    out.append(block, count);
  }
  const bool good = !std::ferror(file);
  const int error = errno;
  std::fclose(file);
  errno = error;
  return good ? FileResult::kRead : FileResult::kNotRead;
}

std::uint32_t WriteFile(const char* path, const std::string& content) {
  std::FILE* const file = std::fopen(path, "wbe");
  if (file == nullptr) return errno == ENOENT || errno == ENOTDIR ? kFileNotFound : kFileOpenError;
  const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  const bool closed = std::fclose(file) == 0;
  return written && closed ? kSuccess : kFileOpenError;
}

}  // namespace lab
