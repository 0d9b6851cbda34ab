#include "device/host.h"

#include <cstdio>
#include <cstring>

#include "base/text.h"

namespace lab {
namespace {

constexpr std::uint32_t kHandleCookie = 0x5A4E4643;
constexpr std::uint32_t kFirstHandleNumber = 0x100;

constexpr std::uint8_t kNodePort = 1;
constexpr std::uint16_t kPciSpeed3Width8 = (8 << 4) | 3;
constexpr WorldWideName kPrincipalFabric = {0x10, 0x00, 0xc4, 0xf5, 0x7c, 0x10, 0x20, 0x01};
constexpr WorldWideName kAdjacentFabric = {0x10, 0x00, 0xc4, 0xf5, 0x7c, 0x10, 0x20, 0x02};

// Ties a handle to its number, so that other bytes do not pass for a handle.
std::uint32_t CheckWord(std::uint32_t number) {
  return ~(kHandleCookie ^ (number * 0x9E3779B1u));
}

void SetStateKey(Host& host, std::size_t index) {
  Adapter& adapter = host.adapters[index];
  const std::string base =
      std::string(adapter.record.model.View()) + '/' + std::string(adapter.record.serial_number.View());
  std::size_t same = 1;
  for (std::size_t i = 0; i < index; ++i) {
    const std::string& key = host.adapters[i].state_key;
    if (key == base || key.starts_with(base + '#')) ++same;
  }
  adapter.state_key = same == 1 ? base : base + '#' + std::to_string(same);
}

FlashMemoBlock MakeMemo(const Family& family) {
  FlashMemoBlock memo{};
  std::memcpy(memo.signature, kMemoSignature, sizeof memo.signature);
  ReadVersion(family.firmware_version, memo.family_firmware);
  ReadVersion(family.multiboot_version, memo.mbi_version);
  std::memcpy(memo.mbi_build_date, "20260114", 8);
  std::memcpy(memo.tool_id, "ZMFG", 4);
  ReadTime("2026-02-03 14:05:09", memo);
  ReadToolVersion("2.1.0.0", memo.tool_version);
  return memo;
}

void StorePci(const Adapter& adapter, std::uint32_t port_number, FCProtocolEntry& entry) {
  entry.pci.vendor_id = adapter.record.vendor_id;
  entry.pci.device_id = adapter.device_id;
  entry.pci.subsystem_vendor_id = adapter.record.subsystem_vendor_id;
  entry.pci.subsystem_device_id = adapter.record.subsystem_device_id;
  entry.pci.link_capability = kPciSpeed3Width8;
  entry.pci.link_status = kPciSpeed3Width8;
  entry.pci_bus = static_cast<std::uint8_t>(adapter.record.bus_id);
  entry.pci_function = static_cast<std::uint8_t>(port_number);
}

void StoreRunningVersions(const Adapter& adapter, FCProtocolEntry& entry) {
  StoreText(entry.driver_version, adapter.driver_version);
  StoreText(entry.running_firmware_version, adapter.running_firmware);
  StoreVersion(entry.running_mpi_version, adapter.running_mpi);
  StoreVersion(entry.running_pep_version, adapter.running_pep);
}

void StoreLink(const Family& family, FCProtocolEntry& entry) {
  entry.port_type = kNodePort;
  entry.port_state = PortState::kLinkUp;
  entry.connection_mode = ConnectionMode::kPointToPoint;
  entry.port_speed = family.speed;
  entry.supported_speeds = family.supported_speeds;
  entry.principal_fabric_name = kPrincipalFabric;
  entry.adjacent_fabric_name = kAdjacentFabric;
  entry.protocol_type = family.fcoe ? ProtocolType::kFcoe : ProtocolType::kFc;
}

void StoreNvmeHost(FCProtocolEntry& entry) {
  constexpr std::uint8_t kHostId[16] = {0x6d, 0x1f, 0x40, 0x2a, 0x9b, 0x7c, 0x4e, 0x15,
                                        0x8a, 0x33, 0x5c, 0x0e, 0x71, 0xd2, 0x46, 0xb8};
  std::memcpy(entry.host_id, kHostId, sizeof kHostId);
  StoreText(entry.host_nqn, "nqn.2014-08.org.nvmexpress:uuid:6d1f402a-9b7c-4e15-8a33-5c0e71d246b8");
}

}  // namespace

Adapter MakeAdapter(const Family& family, std::size_t index) {
  Adapter adapter;
  adapter.family = &family;
  adapter.device_id = family.device_id;
  adapter.driver_version = family.driver_version;
  adapter.running_firmware = family.firmware_version;
  adapter.personality = family.personality;
  adapter.personality_change_allowed = family.personality_call;

  AdapterEntry& record = adapter.record;
  char serial[sizeof record.serial_number.bytes];
  std::snprintf(serial, sizeof serial, "LAB%05zu", index + 1);
  StoreText(record.serial_number, serial);
  StoreText(record.model, family.model);
  StoreText(record.manufacturer, "Sorvex");
  StoreText(record.multiboot_version, family.multiboot_version);
  StoreText(record.flash_firmware_version, family.firmware_version);
  StoreText(record.flash_bios_version, family.bios_version);
  StoreText(record.flash_efi_version, family.efi_version);
  StoreText(record.flash_fcode_version, family.fcode_version);
  record.type = family.type;
  record.vendor_id = kSorvexVendorId;
  record.subsystem_vendor_id = kSorvexVendorId;
  record.subsystem_device_id = family.subsystem_device_id;
  record.bus_id = static_cast<std::uint16_t>(4 + index);
  record.chip_revision = family.chip_revision;

  for (const FlashComponent& component : kFlashComponents) {
    if (family.components & component.group) adapter.flash.*component.field = component.initial;
  }
  if (family.components & kMpiPepComponents) {
    adapter.running_mpi = adapter.flash.mpi_firmware;
    adapter.running_pep = adapter.flash.pep_firmware;
  }
  if (family.memo_block) adapter.memo = MakeMemo(family);
  return adapter;
}

FCProtocolEntry MakeProtocolEntry(const Adapter& adapter, std::size_t index, std::uint32_t port_number) {
  const Family& family = *adapter.family;
  FCProtocolEntry entry{};
  entry.node_name = {0x20, 0x00,
                     0x00, 0x0e,
                     0x1e, static_cast<std::uint8_t>(0x11 + index),
                     0x00, static_cast<std::uint8_t>(port_number)};
  entry.port_name = entry.node_name;
  entry.port_name[0] = 0x21;
  entry.port_id = {0x01, static_cast<std::uint8_t>(index), static_cast<std::uint8_t>(port_number)};

  StorePci(adapter, port_number, entry);
  StoreRunningVersions(adapter, entry);
  StoreLink(family, entry);
  entry.capabilities = family.capabilities;
  entry.driver_flags = family.driver_flags;
  entry.interface_type = PortInterfaceType::kPhysical;
  entry.rom_flags = kBiosImage | kUefiImage;
  if (family.nvme) {
    FillCongestion(entry);
    StoreNvmeHost(entry);
  }
  return entry;
}

void StoreVersion(std::uint8_t (&field)[4], ComponentVersion version) {
  field[0] = version.major;
  field[1] = version.minor;
  field[2] = version.sub;
  field[3] = 0;
}

void RefreshPortVersions(Adapter& adapter) {
  const AdapterEntry& record = adapter.record;
  ComponentVersion firmware{}, efi{}, fcode{};
  ReadVersion(record.flash_firmware_version.View(), firmware);
  ReadVersion(record.flash_efi_version.View(), efi);
  ReadVersion(record.flash_fcode_version.View(), fcode);
  efi.sub = fcode.sub = 0;
  for (Port& port : adapter.ports) {
    for (Entry& of_port : port.entries) {
      FCProtocolEntry& entry = of_port.record;
      StoreText(entry.flash_bios_version, record.flash_bios_version.View());
      StoreVersion(entry.flash_firmware_version, firmware);
      StoreVersion(entry.flash_efi_version, efi);
      StoreVersion(entry.flash_fcode_version, fcode);
    }
  }
}

void LinkHost(Host& host) {
  std::uint32_t number = kFirstHandleNumber;
  const AdapterEntry** adapter_link = &host.list.first;
  host.list.count = static_cast<std::uint32_t>(host.adapters.size());
  for (std::size_t i = 0; i < host.adapters.size(); ++i) {
    Adapter& adapter = host.adapters[i];
    SetStateKey(host, i);
    *adapter_link = &adapter.record;
    adapter_link = &adapter.record.next;
    if (!adapter.has_list) continue;
    adapter.record.ports = &adapter.list;
    const PhyPortEntry** port_link = &adapter.list.first;
    for (Port& port : adapter.ports) {
      *port_link = &port.record;
      port_link = &port.record.next;
      const FCProtocolEntry** entry_link = &port.list.first;
      if (port.has_list) port.record.protocols = &port.list;
      for (Entry& of_port : port.entries) {
        FCProtocolEntry& entry = of_port.record;
        of_port.targets.Build();
        entry.target_count = of_port.targets.Count();
        entry.first_target = of_port.targets.First();
        *entry_link = &entry;
        entry_link = &entry.next;
        entry.handle = {kHandleCookie, number, CheckWord(number)};
        ++number;
      }
    }
    RefreshPortVersions(adapter);
  }
}

void ResetCounters(Entry& entry) {
  std::memset(entry.record.firmware_counters, 0, sizeof entry.record.firmware_counters);
  entry.reports.counters_reset = true;
}

bool FindPort(Host& host, const DeviceHandle& handle, PortRef& out) {
  if (handle.reserved_0 != kHandleCookie || handle.reserved_8 != CheckWord(handle.sd_handle)) return false;
  return FindPort(host, handle.sd_handle, out);
}

bool FindPort(Host& host, std::uint32_t sd_handle, PortRef& out) {
  for (Adapter& adapter : host.adapters) {
    for (Port& port : adapter.ports) {
      for (Entry& entry : port.entries) {
        if (entry.record.handle.sd_handle != sd_handle) continue;
        out = {&adapter, &entry};
        return true;
      }
    }
  }
  return false;
}

}  // namespace lab
