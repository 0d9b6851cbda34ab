// The remote targets that one port sees, with their LUNs or namespaces.
//
// A host can have hundreds of thousands of LUNs, so their records are written once, one after the other,
// into blocks that never move.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "framework/device_library/port_id.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/target_statistics_records.h"
#include "framework/device_library/unaligned.h"
#include "framework/device_library/world_wide_name.h"

namespace lab {

// LUNs or namespaces with the numbers `first` to `last`, alike but for number and identifier.
struct LunRange {
  LunEntry lun{};
  std::uint32_t first = 0;
  std::uint32_t last = 0;
  bool own_id = false;  // the host file gives the identifier of the first one
};

// Which remote-port record of a target the driver has filled.
enum class RemoteRecord : std::uint8_t { kNone, kCurrent, kOlder };

// Codes that a remote-port record has for the state of a session.
enum class Session : std::uint32_t { kNone = 0, kPending = 2, kFailed = 3, kComplete = 4, kTerminated = 5 };

struct RemotePort {
  RemoteRecord record = RemoteRecord::kCurrent;
  bool initiator = false;
  bool target = true;
  bool secure = false;
  std::uint32_t session = 0;  // a Session, or any other code
};

// Of one target: what calls read and set, beside the record that callers see.
struct TargetState {
  std::uint32_t link_speed = 0;  // code
  bool changed = false;          // the speed differs from the host file, so belongs in the state file
  TargetPortStatistics statistics{};
};

// `count` targets alike but for names, address, number and what is made from them.
struct TargetGroup {
  TargetEntry first{};
  std::uint32_t count = 1;
  std::optional<std::uint32_t> lun_count;  // what the record claims; without it, how many there are
  bool own_node_name = false;              // the host file gives the node name, and so on
  bool own_serial = false;
  bool own_nqn = false;
  RemotePort remote;
  TargetState state;
  std::vector<LunRange> luns;

  std::uint64_t LunsPerTarget() const;
};

// The targets of a port, in the order of their chain.
class TargetSet {
 public:
  TargetSet() = default;
  TargetSet(TargetSet&&) = default;
  TargetSet& operator=(TargetSet&&) = default;
  TargetSet(const TargetSet&) = delete;  // the records point at each other
  TargetSet& operator=(const TargetSet&) = delete;
  ~TargetSet() = default;

  // Appends the targets of the group and their LUNs, so far only as numbers.
  void Add(TargetGroup group);

  // Writes the records of all groups, each of which is added before. A host that is only checked does
  // without.
  void Build();

  std::uint32_t Count() const { return count_; }
  std::uint64_t LunCount() const { return lun_count_; }

  // The rest is about the records.
  const TargetEntry* First() const;

  // The state of the first target with this number, or with this port name; null when there is none.
  TargetState* Find(std::uint16_t number);
  TargetState* Find(const WorldWideName& port_name);

  // Zeroes the statistics of every target.
  void ForgetStatistics();

  // Calls visit(record, state) for every target.
  template <typename Visit>
  void Each(Visit visit) const {
    for (const Block& block : blocks_) {
      for (std::size_t i = 0; i < block.records.size(); ++i) visit(block.records[i], block.states[i]);
    }
  }

 private:
  // The records of one group. The vectors are reserved before they are filled.
  struct Block {
    std::vector<TargetEntry> records;
    std::vector<TargetState> states;
    std::vector<LunEntry> luns;
  };

  template <typename Wanted>
  TargetState* FindIf(Wanted wanted);
  void BuildGroup(const TargetGroup& group);

  std::vector<TargetGroup> groups_;  // whose records are not there yet
  std::vector<Block> blocks_;
  std::uint32_t count_ = 0;
  std::uint64_t lun_count_ = 0;
};

// A name and a port identifier, `steps` further on.
void CountUp(WorldWideName& name, std::uint64_t steps);
void CountUp(PortId& id, std::uint32_t steps);

// The name as a number that counts up with it.
std::uint64_t NameNumber(const WorldWideName& name);

template <class Number>
void StoreNumber(Unaligned<Number>& field, Number value) {
  std::memcpy(field.bytes, &value, sizeof value);
}

}  // namespace lab
