#include "tools/lab/diff/hosts.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "unit/tools/lab/recorded_host.h"

namespace {

using recording::HostRecording;

std::string TextOf(const HostRecording& before, const HostRecording& after) {
  return diff::CompareHosts(before, after).Text();
}

// The first change of this name; an empty one when there is none.
diff::Change ChangeNamed(std::string_view what, const HostRecording& before, const HostRecording& after) {
  const diff::Report report = diff::CompareHosts(before, after);
  for (const diff::Change& change : report.Changes()) {
    if (change.what == what) return change;
  }
  return {};
}

struct ChangeCase {
  const char* name;
  void (*change)(HostRecording& host);
  const char* text;
};

constexpr const char* kNothing = "";

const ChangeCase kChanges[] = {
    {"nothing", [](HostRecording&) {}, kNothing},
    {"seconds since an event",
     [](HostRecording& host) {
       FirstPort(host).record.seconds_since_event = 42;
       FirstPort(host).targets[0].record.seconds_since_event = 42;
     },
     kNothing},
    {"the handle of another session",
     [](HostRecording& host) { FirstPort(host).record.handle.sd_handle = 7; }, kNothing},
    {"2 degrees of the board", [](HostRecording& host) { FirstPort(host).temperature.record.celsius = 48; },
     kNothing},
    {"12 degrees of the board", [](HostRecording& host) { FirstPort(host).temperature.record.celsius = 58; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Board temperature changed from 46 C to 58 C.\n"},
    {"the link", [](HostRecording& host) { FirstPort(host).record.port_state = PortState::kOffline; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    The link went down.\n"},
    {"the speed", [](HostRecording& host) { FirstPort(host).record.port_speed = 0x08; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Link speed changed from 16 Gbps to 8 Gbps.\n"},
    {"firmware",
     [](HostRecording& host) {
       SetText(host.adapters[0].record.flash_firmware_version, "9.15.05");
       SetText(FirstPort(host).record.running_firmware_version, "9.15.05");
     },
     "Adapter ZX320 HZ00001\n  Flash firmware version changed from none to 9.15.05.\n"
     "  Port 0, 21:00:00:0e:1e:00:00:00\n    Running firmware version changed from none to 9.15.05.\n"},
    {"the slot", [](HostRecording& host) { host.adapters[0].record.bus_id = 0x18; },
     "Adapter ZX320 HZ00001\n  The adapter moved from PCI bus 0x0017 to PCI bus 0x0018.\n"},
    {"a counter", [](HostRecording& host) { FirstPort(host).record.firmware_counters[5] = 12; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Invalid CRC count rose by 12 to 12.\n"},
    {"a gap", [](HostRecording& host) { FirstPort(host).record.reserved_185[3] = std::byte{1}; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Other bytes of the port's record "
     "differ.\n"},
    {"a refusal", [](HostRecording& host) { FirstPort(host).lockdown.result = 150; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    The call for the lockdown status answered before and is refused with 150 (maintenance mode) "
     "now.\n"},
    {"a call that the library lacks",
     [](HostRecording& host) { FirstPort(host).beacon.asked = recording::Asked::kMissing; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    The call for the beacon answered before and is missing from the library now.\n"},
    {"no block of statistics any more",
     [](HostRecording& host) { FirstPort(host).firmware_statistics.record.is_null = true; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Firmware statistics changed from a block to no block.\n"},
    {"lockdown", [](HostRecording& host) { FirstPort(host).lockdown.record.config_flag = 1; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Config lockdown changed from off to "
     "on.\n"},
    {"a parameter in both answers of its record",
     [](HostRecording& host) {
       FirstPort(host).hba_params.record.info.frame_size = 2048;
       FirstPort(host).boot.record.frame_size = 2048;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Frame size changed from 0 to 2048.\n"},
    {"a boot drive in both answers of its record",
     [](HostRecording& host) {
       const BootDrive drive = {{{0x50, 0, 0, 0, 0, 0, 0, 1}}, 2};
       FirstPort(host).hba_params.record.info.primary_drive = drive;
       FirstPort(host).boot.record.primary_drive = drive;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Primary boot drive changed from none to 50:00:00:00:00:00:00:01 LUN 2.\n"},
    {"a parameter in the boot answer alone",
     [](HostRecording& host) { FirstPort(host).boot.record.frame_size = 2048; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Other bytes of the boot settings "
     "differ.\n"},
    {"a parameter in both answers, but the parameters are refused",
     [](HostRecording& host) {
       FirstPort(host).hba_params.result = 150;
       FirstPort(host).hba_params.record.info.frame_size = 2048;
       FirstPort(host).boot.record.frame_size = 2048;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    The call for the HBA parameters answered before and is refused with 150 (maintenance mode) now.\n"
     "    Other bytes of the boot settings differ.\n"},
    {"a boot drive in both answers, but the boot settings are refused",
     [](HostRecording& host) {
       const BootDrive drive = {{{0x50, 0, 0, 0, 0, 0, 0, 1}}, 2};
       FirstPort(host).hba_params.record.info.primary_drive = drive;
       FirstPort(host).boot.result = 150;
       FirstPort(host).boot.record.primary_drive = drive;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Other bytes of the HBA parameters differ.\n"
     "    The call for the boot settings answered before and is refused with 150 (maintenance mode) now.\n"},
    {"an NVMe boot entry",
     [](HostRecording& host) { FirstPort(host).nvme_boot.record.entries[1].namespace_id = 3; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    NVMe boot entry 2: namespace changed from 0 to 3.\n"},
    {"the profile of congestion management",
     [](HostRecording& host) { FirstPort(host).congestion_profile.record.activation = 3; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Congestion profile activation changed from monitor only to aggressive.\n"},
    {"a target's state", [](HostRecording& host) { FirstPort(host).targets[0].record.state_flags[2] = 0; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Target 50:06:0b:00:00:00:00:01\n"
     "      State changed from online to offline.\n"},
    {"a target that is gone",
     [](HostRecording& host) {
       FirstPort(host).targets.clear();
       FirstPort(host).record.target_count = 0;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Target 50:06:0b:00:00:00:00:01\n"
     "      The target is gone. It was online, 4 LUNs.\n"},
    {"a target that is new",
     [](HostRecording& host) {
       FirstPort(host).targets.push_back(TargetNumbered(2, 1));
       FirstPort(host).record.target_count = 2;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Target 50:06:0b:00:00:00:00:02\n"
     "      The target is new: online, 1 LUN.\n"},
    {"a count that does not count the list",
     [](HostRecording& host) { FirstPort(host).record.target_count = 9; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Target count changed from 1 to 9.\n"},
    {"LUNs that are gone",
     [](HostRecording& host) {
       recording::TargetRecording& target = FirstPort(host).targets[0];
       target.luns.erase(target.luns.begin() + 1, target.luns.begin() + 3);
       target.record.lun_count = 2;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Target 50:06:0b:00:00:00:00:01\n"
     "      LUNs 1 to 2: gone.\n"},
    {"a LUN of another size",
     [](HostRecording& host) {
       LunEntry& lun = FirstPort(host).targets[0].luns[3];
       lun.fcp_size_mb.bytes[1] = lun.nvme_size_mb.bytes[1] = std::byte{4};
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Target 50:06:0b:00:00:00:00:01\n"
     "      LUN 3: Size changed from 0 MB to 1,024 MB.\n"},
    {"credit recovery",
     [](HostRecording& host) {
       FirstPort(host).credit_recovery.record.configured = 7;
       FirstPort(host).credit_recovery.record.state = 1;
     },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Credit recovery count changed from 0 to 7.\n"
     "    Credit recovery state changed from offline to online.\n"},
    {"the activation of the congestion profile",
     [](HostRecording& host) { FirstPort(host).congestion_profile.record.activation = 2; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Congestion profile activation changed from monitor only to moderate.\n"},
    {"a target's counter",
     [](HostRecording& host) { FirstPort(host).targets[0].statistics.record.loss_of_sync = 2; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n    Target 50:06:0b:00:00:00:00:01\n"
     "      Loss of sync count rose by 2 to 2.\n"},
    {"a port with another name",
     [](HostRecording& host) { FirstPort(host).record.port_name.octets[7] = 0x99; },
     "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
     "    Port name changed from 21:00:00:0e:1e:00:00:00 to 21:00:00:0e:1e:00:00:99.\n"},
    {"a port that is gone", [](HostRecording& host) { host.adapters[0].ports.pop_back(); },
     "Adapter ZX320 HZ00001\n  Port 1, 21:00:00:0e:1e:00:00:01\n    The port is gone. It was link up, 16 "
     "Gbps.\n"},
    {"a port that is new", [](HostRecording& host) { host.adapters[0].ports.push_back(PhysicalPort(2)); },
     "Adapter ZX320 HZ00001\n  Port 2, 21:00:00:0e:1e:00:00:02\n    The port is new: link up, 16 Gbps.\n"},
    {"an adapter that is gone",
     [](HostRecording& host) {
       host.adapters.clear();
       host.list.count = 0;
     },
     "Adapter ZX320 HZ00001\n  The adapter is gone. It had 2 ports.\n"},
    {"ports in another order",
     [](HostRecording& host) { std::swap(host.adapters[0].ports[0], host.adapters[0].ports[1]); },
     "Adapter ZX320 HZ00001\n  The ports are listed in another order.\n"},
    {"the adapter list", [](HostRecording& host) { host.has_list = false; },
     "Adapter list changed from there to none.\n"},
    {"a reboot", [](HostRecording& host) { host.reboot_required.record = 1; },
     "Reboot required changed from no to yes.\n"},
};

TEST(Hosts, SayWhatChanged) {
  for (const ChangeCase& row : kChanges) {
    const HostRecording before = SmallHost();
    HostRecording after = SmallHost();
    row.change(after);
    EXPECT_EQ(TextOf(before, after), row.text) << row.name;
  }
}

TEST(Hosts, SayWhatChangedBackToo) {
  for (const ChangeCase& row : kChanges) {
    HostRecording before = SmallHost();
    row.change(before);
    EXPECT_EQ(TextOf(before, SmallHost()).empty(), std::string(row.text).empty()) << row.name;
  }
}

TEST(Hosts, SayWhenAnyCallOfAPortIsRefused) {
  int calls = 0;
  recording::VisitAnswers(FirstPort(*std::make_unique<HostRecording>(SmallHost())),
                          [&calls](const char*, const char*, auto&) { ++calls; });
  ASSERT_GT(calls, 20);
  for (int call = 0; call < calls; ++call) {
    HostRecording after = SmallHost();
    int at = 0;
    const char* name = "";
    recording::VisitAnswers(FirstPort(after), [&](const char* key, const char*, auto& answer) {
      if (at++ != call) return;
      answer.result = 121;
      name = key;
    });
    EXPECT_NE(TextOf(SmallHost(), after).find("is refused with 121 (the adapter lacks the feature) now"),
              std::string::npos)
        << name;
  }
}

TEST(Hosts, SayWhetherAPortHasProtocols) {
  const HostRecording with = SmallHost();
  HostRecording without = SmallHost();
  without.adapters[0].ports[1].protocols.clear();
  const diff::Change gone = ChangeNamed("Protocols", with, without);
  EXPECT_EQ(gone.before, "link up, 16 Gbps");
  EXPECT_EQ(gone.after, "without protocols");
  EXPECT_EQ(gone.sentence, "The port has no protocols any more.");
  const diff::Change come = ChangeNamed("Protocols", without, with);
  EXPECT_EQ(come.before, "without protocols");
  EXPECT_EQ(come.after, "link up, 16 Gbps");
  EXPECT_EQ(come.sentence, "The port has protocols now.");
}

// Flips each byte of a record in turn and returns the offsets at which nobody notices.
template <class Record>
std::set<std::size_t> SilentBytes(Record& (*record_of)(HostRecording& host)) {
  const HostRecording before = SmallHost();
  HostRecording after = SmallHost();
  auto* const bytes = reinterpret_cast<unsigned char*>(&record_of(after));
  std::set<std::size_t> silent;
  for (std::size_t i = 0; i < sizeof(Record); ++i) {
    bytes[i] ^= 0x40;
    if (diff::CompareHosts(before, after).Changes().empty()) silent.insert(i);
    bytes[i] ^= 0x40;
  }
  return silent;
}

std::set<std::size_t> Range(std::size_t first, std::size_t size) {
  std::set<std::size_t> range;
  for (std::size_t i = 0; i < size; ++i) range.insert(first + i);
  return range;
}

template <class... Ranges>
std::set<std::size_t> Joined(const Ranges&... ranges) {
  std::set<std::size_t> joined;
  (joined.insert(ranges.begin(), ranges.end()), ...);
  return joined;
}

using Offsets = std::set<std::size_t>;

// Only time, addresses and the handle may differ unsaid.
TEST(Hosts, HideNoByteOfARecord) {
  EXPECT_EQ(SilentBytes<AdapterList>([](HostRecording & host) -> auto& { return host.list; }),
            Range(offsetof(AdapterList, first), 8));
  EXPECT_EQ(SilentBytes<AdapterEntry>([](HostRecording & host) -> auto& { return host.adapters[0].record; }),
            Range(offsetof(AdapterEntry, ports), 16));
  EXPECT_EQ(
      SilentBytes<FCProtocolEntry>([](HostRecording & host) -> auto& { return FirstPort(host).record; }),
      Joined(Range(offsetof(FCProtocolEntry, handle), 12),
             Range(offsetof(FCProtocolEntry, seconds_since_event), 4),
             Range(offsetof(FCProtocolEntry, first_target), 8), Range(offsetof(FCProtocolEntry, next), 8)));
  EXPECT_EQ(SilentBytes<TargetEntry>(
                [](HostRecording & host) -> auto& { return FirstPort(host).targets[0].record; }),
            Joined(Range(offsetof(TargetEntry, seconds_since_event), 4),
                   Range(offsetof(TargetEntry, first_lun), 8), Range(offsetof(TargetEntry, next), 8)));
  EXPECT_EQ(
      SilentBytes<LunEntry>([](HostRecording & host) -> auto& { return FirstPort(host).targets[0].luns[1]; }),
      Range(offsetof(LunEntry, next), 8));
}

TEST(Hosts, HideNoByteOfAnAnswer) {
  EXPECT_EQ(SilentBytes<FlashComponentVersions>(
                [](HostRecording & host) -> auto& { return FirstPort(host).flash_versions.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<FlashMemoBlock>(
                [](HostRecording & host) -> auto& { return FirstPort(host).memo_block.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<BoardTemperature>(
                [](HostRecording & host) -> auto& { return FirstPort(host).temperature.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<LockdownStatus>(
                [](HostRecording & host) -> auto& { return FirstPort(host).lockdown.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<recording::HbaParamsAnswer>(
                [](HostRecording & host) -> auto& { return FirstPort(host).hba_params.record; }),
            Offsets());
  EXPECT_EQ(
      SilentBytes<HBAParamsInfo>([](HostRecording & host) -> auto& { return FirstPort(host).boot.record; }),
      Offsets());
  EXPECT_EQ(SilentBytes<recording::CreditRecoveryAnswer>(
                [](HostRecording & host) -> auto& { return FirstPort(host).credit_recovery.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<NVMeBootRecord>(
                [](HostRecording & host) -> auto& { return FirstPort(host).nvme_boot.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<SCMRProfile>(
                [](HostRecording & host) -> auto& { return FirstPort(host).congestion_profile.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<TargetPortStatistics>(
                [](HostRecording & host) -> auto& { return FirstPort(host).targets[0].statistics.record; }),
            Offsets());
  EXPECT_EQ(SilentBytes<FWPrivateStats>([](HostRecording & host) -> auto& {
              return FirstPort(host).firmware_statistics.record.block;
            }),
            Offsets());
}

TEST(Hosts, CompareCongestionStatisticsByTheirOwners) {
  HostRecording before = SmallHost();
  SCMRStatisticsEntry port{};
  port.kind = StatisticsElementKind::kPhysicalPort;
  port.port_name = FirstPort(before).record.port_name;
  port.throttled_down = 3;
  SCMRStatisticsEntry target{};
  target.port_name = {{0x50, 0, 0, 0, 0, 0, 0, 1}};
  FirstPort(before).congestion_statistics.record.elements = {port, target};
  HostRecording after = before;
  after.adapters[0].ports[0].protocols[0].congestion_statistics.record.elements[0].throttled_down = 5;
  after.adapters[0].ports[0].protocols[0].congestion_statistics.record.elements.pop_back();
  EXPECT_EQ(
      TextOf(before, after),
      "Adapter ZX320 HZ00001\n  Port 0, 21:00:00:0e:1e:00:00:00\n"
      "    Congestion statistics of port 21:00:00:0e:1e:00:00:00: throttled down count rose by 2 to 5.\n"
      "    Congestion statistics of target 50:00:00:00:00:00:00:01 are gone.\n");
}

TEST(Hosts, KeepAdaptersOfOneNameApart) {
  HostRecording before = SmallHost();
  before.adapters.push_back(before.adapters[0]);
  HostRecording after = before;
  after.adapters[1].record.chip_revision = 2;
  EXPECT_EQ(TextOf(before, after), "Adapter ZX320 HZ00001 #2\n  Chip revision changed from 0 to 2.\n");
}

TEST(Hosts, AreSortedByName) {
  HostRecording before = SmallHost();
  before.adapters.push_back(before.adapters[0]);
  SetText(before.adapters[0].record.serial_number, "HZ00009");
  HostRecording after = before;
  for (recording::AdapterRecording& adapter : after.adapters) adapter.record.chip_revision = 1;
  EXPECT_EQ(TextOf(before, after),
            "Adapter ZX320 HZ00001\n  Chip revision changed from 0 to 1.\n"
            "Adapter ZX320 HZ00009\n  Chip revision changed from 0 to 1.\n");
}

TEST(Hosts, AreJsonToo) {
  HostRecording after = SmallHost();
  FirstPort(after).record.firmware_counters[0] = 2;
  FirstPort(after).targets[0].luns.pop_back();
  FirstPort(after).targets[0].record.lun_count = 3;
  EXPECT_EQ(diff::CompareHosts(SmallHost(), after).Json(),
            "[\n"
            "  {\"adapter\": \"ZX320 HZ00001\", \"port\": \"21:00:00:0e:1e:00:00:00\", \"target\": null, "
            "\"lun\": null, "
            "\"what\": \"Link failure count\", \"before\": 0, \"after\": 2},\n"
            "  {\"adapter\": \"ZX320 HZ00001\", \"port\": \"21:00:00:0e:1e:00:00:00\", "
            "\"target\": \"50:06:0b:00:00:00:00:01\", \"lun\": 3, "
            "\"what\": \"LUN\", \"before\": \"there\", \"after\": null}\n"
            "]\n");
  EXPECT_EQ(diff::CompareHosts(SmallHost(), SmallHost()).Json(), "[]\n");
}

}  // namespace
