// Results that a user asks calls to give: in place of their work, or after it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/call_table.h"

namespace lab {

struct Fault {
  std::uint32_t result;  // 0 for a null pointer
  bool once;
  bool performs;  // the call runs as usual, and `result` replaces its answer
};

class FaultQueue {
 public:
  // Appends a fault: `result` is a number, or "null" for a call that answers a pointer. Returns an empty
  // text, or what was expected and what was found.
  std::string Add(std::string_view call, std::string_view result, bool once);

  // Reads "TORPI_A=150,TORPI_B=205:once". Returns as Add does.
  std::string AddList(std::string_view text);

  // The fault that this call meets now. A fault meant once goes ahead of a lasting one, and is then used up.
  std::optional<Fault> Take(std::string_view call);

  // Adds the faults of `stronger`. They replace all earlier ones of the calls that they name.
  void Override(FaultQueue stronger);

 private:
  struct Entry {
    const CallInfo* call;
    Fault fault;
  };
  std::vector<Entry> entries_;
};

}  // namespace lab
