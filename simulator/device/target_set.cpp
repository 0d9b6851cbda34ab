#include "device/target_set.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include "base/text.h"
#include "device/host.h"

namespace lab {
namespace {

// Adds to a big-endian number, whose highest octet may overflow.
void AddToOctets(std::uint8_t* octets, std::size_t count, std::uint64_t steps) {
  for (std::size_t i = count; i-- > 0 && steps > 0;) {
    steps += octets[i];
    octets[i] = static_cast<std::uint8_t>(steps);
    steps >>= 8;
  }
}

// Sixteen octets that no other LUN of the host has: an identifier of the kind NAA 6 (SPC) or NGUID (NVM
// Express) from the node that the LUN belongs to and the LUN's number.
constexpr std::size_t kMadeIdLength = 16;

void MakeUniqueId(LunEntry& lun, const WorldWideName& node) {
  std::memcpy(lun.unique_id, &node, sizeof node);
  lun.unique_id[0] = 0x60;
  lun.unique_id[kMadeIdLength - 2] = static_cast<std::uint8_t>(lun.number >> 8);
  lun.unique_id[kMadeIdLength - 1] = static_cast<std::uint8_t>(lun.number);
  lun.fcp_unique_id_length = lun.nvme_unique_id_length = kMadeIdLength;
}

void AddLuns(const LunRange& range, const WorldWideName& node, std::vector<LunEntry>& luns) {
  for (std::uint32_t number = range.first; number <= range.last; ++number) {
    LunEntry& lun = luns.emplace_back(range.lun);
    lun.number = static_cast<std::uint16_t>(number);
    if (range.own_id) {
      const std::size_t length = std::min<std::size_t>(lun.fcp_unique_id_length, sizeof lun.unique_id);
      AddToOctets(lun.unique_id, length, number - range.first);
    } else {
      MakeUniqueId(lun, node);
    }
    lun.next = &lun + 1;
  }
}

void MakeTexts(const TargetGroup& group, TargetEntry& target) {
  char text[64];
  const WorldWideName& name = target.port_name;
  if (!group.own_serial) {
    std::snprintf(text, sizeof text, "LS%02X%02X%02X%02X", name[4], name[5], name[6], name[7]);
    StoreText(target.serial_number, text);
  }
  if (!group.own_nqn && IsNvmeTarget(target)) {
    const std::string node = OctetText(target.node_name.octets);
    std::snprintf(text, sizeof text, "nqn.2026-01.lab:subsystem:%s", node.c_str());
    StoreText(target.nqn, text);
  }
}

// The code of the older record's session states for one of the current record.
std::uint8_t OldSessionState(const RemotePort& remote) {
  constexpr std::uint8_t kFailed = 4;
  const bool failed = !remote.secure && remote.session == static_cast<std::uint32_t>(Session::kFailed);
  return failed ? kFailed : static_cast<std::uint8_t>(std::min<std::uint32_t>(remote.session, 255));
}

void FillRemoteRecord(const RemotePort& remote, TargetEntry& target) {
  constexpr std::uint8_t kSecure = 0x10;
  if (remote.record == RemoteRecord::kCurrent) {
    std::memcpy(&target.remote_port_id, &target.port_id, sizeof target.port_id);
    target.remote_port_name = target.port_name;
    target.remote_flags = static_cast<std::uint8_t>((remote.initiator ? 1 : 0) | (remote.target ? 2 : 0) |
                                                    (remote.secure ? kSecure : 0));
    target.remote_session_state = remote.session;
  } else if (remote.record == RemoteRecord::kOlder) {
    std::memcpy(&target.old_port_id, &target.port_id, sizeof target.port_id);
    target.old_port_name = target.port_name;
    target.old_remote_type = static_cast<std::uint8_t>((remote.target ? 1 : 0) | (remote.initiator ? 2 : 0));
    target.old_secure_mode = remote.secure ? 1 : 0;
    target.old_session_state = OldSessionState(remote);
  }
}

TargetEntry MakeTarget(const TargetGroup& group, std::uint32_t place) {
  TargetEntry target = group.first;
  CountUp(target.port_name, place);
  CountUp(target.node_name, place);
  CountUp(target.port_id, place);
  target.number = static_cast<std::uint16_t>(target.number + place);
  if (IsNvmeTarget(target)) target.controller_id = static_cast<std::uint16_t>(target.controller_id + place);
  target.lun_count = group.lun_count.value_or(static_cast<std::uint32_t>(group.LunsPerTarget()));
  MakeTexts(group, target);
  FillRemoteRecord(group.remote, target);
  return target;
}

}  // namespace

std::uint64_t TargetGroup::LunsPerTarget() const {
  std::uint64_t luns_per_target = 0;
  for (const LunRange& range : luns) luns_per_target += range.last - range.first + 1;
  return luns_per_target;
}

void TargetSet::Add(TargetGroup group) {
  count_ += group.count;
  lun_count_ += group.LunsPerTarget() * group.count;
  groups_.push_back(std::move(group));
}

void TargetSet::Build() {
  for (const TargetGroup& group : groups_) BuildGroup(group);
  groups_ = {};
}

void TargetSet::BuildGroup(const TargetGroup& group) {
  Block& block = blocks_.emplace_back();
  block.records.reserve(group.count);
  block.states.assign(group.count, group.state);
  block.luns.reserve(group.count * group.LunsPerTarget());
  for (std::uint32_t place = 0; place < group.count; ++place) {
    TargetEntry& target = block.records.emplace_back(MakeTarget(group, place));
    const std::size_t before = block.luns.size();
    for (const LunRange& range : group.luns) AddLuns(range, target.node_name, block.luns);
    if (block.luns.size() > before) {
      target.first_lun = &block.luns[before];
      block.luns.back().next = nullptr;
    }
    if (place > 0) block.records[place - 1].next = &target;
  }
  if (blocks_.size() > 1) blocks_[blocks_.size() - 2].records.back().next = &block.records.front();
}

const TargetEntry* TargetSet::First() const {
  return blocks_.empty() ? nullptr : &blocks_.front().records.front();
}

template <typename Wanted>
TargetState* TargetSet::FindIf(Wanted wanted) {
  for (Block& block : blocks_) {
    for (std::size_t i = 0; i < block.records.size(); ++i) {
      if (wanted(block.records[i])) return &block.states[i];
    }
  }
  return nullptr;
}

void TargetSet::ForgetStatistics() {
  for (Block& block : blocks_) {
    for (TargetState& state : block.states) state.statistics = {};
  }
}

TargetState* TargetSet::Find(std::uint16_t number) {
  return FindIf([number](const TargetEntry& target) { return target.number == number; });
}

TargetState* TargetSet::Find(const WorldWideName& port_name) {
  return FindIf([&port_name](const TargetEntry& target) { return target.port_name == port_name; });
}

void CountUp(WorldWideName& name, std::uint64_t steps) {
  AddToOctets(name.octets, sizeof name, steps);
}

void CountUp(PortId& id, std::uint32_t steps) {
  AddToOctets(id.octets, sizeof id, steps);
}

std::uint64_t NameNumber(const WorldWideName& name) {
  std::uint64_t number = 0;
  for (const std::uint8_t octet : name.octets) number = number << 8 | octet;
  return number;
}

}  // namespace lab
