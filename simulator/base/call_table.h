// The calls of the library by name, and the kind of answer that each gives, which a fault must fit.
#pragma once

#include <cstddef>
#include <string_view>

namespace lab {

enum class CallKind {
  kStatus,       // 0 or a failure
  kFlashUpdate,  // also 201 and 205 for success
  kValue,        // a small number that is the answer itself
  kPointer,      // a list, or null
  kRecord,       // a record by value, all zero on failure
};

struct CallInfo {
  const char* name;
  CallKind kind;
};

inline constexpr std::size_t kCallCount = 66;
extern const CallInfo kCalls[kCallCount];

// Null for a name that is no call.
const CallInfo* FindCall(std::string_view name);

}  // namespace lab
