// Runs whole commands on a host of one port whose records a fuzz target fills.
//
// What the commands print goes to memory, and their output bracket opens no file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "framework/command_node.h"
#include "framework/device_library/adapter_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"

inline void Require(bool condition) {
  if (!condition) std::abort();
}

// What a fuzz input says, from front to back. Past its end every byte is the last one.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : data_(data), size_(size), length_(static_cast<std::uint8_t>(size)) {}

  std::uint8_t Byte() {
    if (size_ > 0) {
      last_ = *data_++;
      --size_;
    }
    return last_;
  }
  // A byte that the length of the whole input changes too: of what brings no new edges, as the family often
  // does, many inputs try many values.
  std::uint8_t SpreadByte() { return static_cast<std::uint8_t>(Byte() + length_); }
  void Fill(void* to, std::size_t size) {
    const std::size_t taken = size < size_ ? size : size_;
    if (taken > 0) {
      std::memcpy(to, data_, taken);
      last_ = data_[taken - 1];
      data_ += taken;
      size_ -= taken;
    }
    if (taken < size) std::memset(static_cast<std::uint8_t*>(to) + taken, last_, size - taken);
  }
  const std::uint8_t* Data() const { return data_; }
  std::size_t Size() const { return size_; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::uint8_t length_;
  std::uint8_t last_ = 0;
};

// The bytes of a record that a command reads.
struct Region {
  std::uint16_t offset;
  std::uint16_t size;
};

// Fills the regions from the input, and all else of the record with one byte, which must not show.
template <std::size_t kCount>
void FillRecord(Input& input, void* record, std::size_t size, const Region (&regions)[kCount]) {
  auto* const bytes = static_cast<std::uint8_t*>(record);
  std::memset(bytes, input.Byte(), size);
  for (const Region& region : regions) input.Fill(bytes + region.offset, region.size);
}

// Makes numbers of a record codes below `limit`, but for some of them: codes have meanings, and among all the
// numbers of their width they would be rare.
template <std::size_t kCount>
void ChooseCodes(Input& input, void* record, const Region (&codes)[kCount], std::uint8_t limit) {
  constexpr std::uint8_t kLeave = 0xF0;
  auto* const bytes = static_cast<std::uint8_t*>(record);
  for (const Region& code : codes) {
    const std::uint8_t choice = input.Byte();
    if (choice >= kLeave) continue;
    std::memset(bytes + code.offset, 0, code.size);
    bytes[code.offset] = choice % limit;  // little-endian
  }
}

// One adapter with one port, one target and one LUN, each record in a heap block of its own: a read past its
// end is an error. The lists are linked by Link().
struct DeviceHost {
  AdapterList list = {};
  PortList ports = {};
  ProtocolList protocols = {};
  AdapterEntry* adapter;
  PhyPortEntry* port;
  FCProtocolEntry* fc;
  TargetEntry* target;
  LunEntry* lun;

  DeviceHost();
  // Links the records, and makes the port one that this program serves.
  void Link();
};
DeviceHost& Host();

// The bytes of a PCI identity, for the families and the others: one of a table, by `choice`.
void ChoosePciIdentity(FCProtocolEntry& fc, std::uint8_t choice);

// Runs the command with this word of the class, and gives what it prints until the next run.
std::string_view RunCommand(NodeClass (*node_class)(), std::string_view word, Words words, bool xml);

// The identifiers of the host's port, its target and its LUN.
std::string PortIdentifier();
std::string TargetIdentifier();
std::string LunIdentifier();

// Ends with a report that shows both texts when they differ.
void RequireSame(std::string_view found, std::string_view expected);
