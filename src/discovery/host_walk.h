// The one walk over the device library's lists: adapters, their ports, the protocols on a port, its targets
// and their LUNs.
//
// A null pointer at any level is an empty level: it is skipped in silence.
#pragma once

#include <cstddef>
#include <iterator>

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"

// The entries of one chain, from `first` along their next pointers, for a range-based for and the
// algorithms that go once from front to back.
template <class Entry>
class Chain {
 public:
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Entry;
    using difference_type = std::ptrdiff_t;
    using pointer = const Entry*;
    using reference = const Entry&;

    explicit Iterator(const Entry* entry) : entry_(entry) {}
    const Entry& operator*() const { return *entry_; }
    Iterator& operator++() {
      entry_ = entry_->next;
      return *this;
    }
    bool operator==(const Iterator& other) const = default;

   private:
    const Entry* entry_;
  };

  explicit Chain(const Entry* first) : first_(first) {}
  Iterator begin() const { return Iterator(first_); }
  Iterator end() const { return Iterator(nullptr); }

 private:
  const Entry* first_;
};

inline Chain<AdapterEntry> AdaptersOf(const AdapterList& list) {
  return Chain<AdapterEntry>(list.first);
}

inline Chain<PhyPortEntry> PortsOf(const AdapterEntry& adapter) {
  return Chain<PhyPortEntry>(adapter.ports == nullptr ? nullptr : adapter.ports->first);
}

inline Chain<FCProtocolEntry> ProtocolsOf(const PhyPortEntry& port) {
  return Chain<FCProtocolEntry>(port.protocols == nullptr ? nullptr : port.protocols->first);
}

// True for the entries that this program serves: Fibre Channel, over Ethernet or not.
inline bool IsFcEntry(const FCProtocolEntry& entry) {
  return entry.protocol_type == ProtocolType::kFc || entry.protocol_type == ProtocolType::kFcoe;
}

inline Chain<TargetEntry> TargetsOf(const FCProtocolEntry& entry) {
  return Chain<TargetEntry>(entry.first_target);
}

inline Chain<LunEntry> LunsOf(const TargetEntry& target) {
  return Chain<LunEntry>(target.first_lun);
}

// Calls visit(adapter, port, entry) for every entry that this program serves, in the order of the lists,
// until it returns true. Returns whether it did.
template <class Visit>
bool VisitFcEntries(const AdapterList& list, Visit visit) {
  for (const AdapterEntry& adapter : AdaptersOf(list)) {
    for (const PhyPortEntry& port : PortsOf(adapter)) {
      for (const FCProtocolEntry& entry : ProtocolsOf(port)) {
        if (IsFcEntry(entry) && visit(adapter, port, entry)) return true;
      }
    }
  }
  return false;
}
