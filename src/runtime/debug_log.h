#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

// Debug levels: bits of the mask that the environment variable ZNFC_DEBUG_LEVEL sets.
inline constexpr std::int32_t kDebugTrace = 1;  // entry and exit of functions
inline constexpr std::int32_t kDebugWarning = 2;
inline constexpr std::int32_t kDebugFailure = 4;  // why a command failed
inline constexpr std::int32_t kDebugDetail = 8;   // steps of a calculation; its lines carry no tag
inline constexpr std::int32_t kDebugDiagError = 16;

namespace debug_log_detail {
extern std::atomic<std::int32_t> mask;
}

// Reads ZNFC_DEBUG_LEVEL, a decimal number, into the debug mask; a missing or non-numeric value gives 0. Only
// the low 32 bits of the number count. Called once, first thing in main.
void InitDebugLog();

// Returns the debug mask; 0 means that nothing is logged.
inline std::int32_t DebugMask() {
  return debug_log_detail::mask.load(std::memory_order_relaxed);
}

// True when DebugLogLevel would write at `level`. For callers whose arguments cost something to prepare.
inline bool IsDebugLevelOn(std::int32_t level) {
  return (level & DebugMask()) != 0;
}

// Appends a line to the debug log when the mask is nonzero. A null or empty format writes nothing, a failure
// to write loses the line silently, and errno is left as it was. Safe in a signal handler that interrupts any
// part of it.
void DebugLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

// As DebugLog, when one of the bits of `level` is set in the mask; the line carries the tag of the lowest
// such bit.
void DebugLogLevel(std::int32_t level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Returns the tag of the lowest of the tagged bits (1, 2, 4, 16) in `level`, padded to one width; "" without
// such a bit.
const char* DebugLevelTag(std::int32_t level);

// Logs one member of an object, for the Dump functions: its name qualified as "prefix::class.member", its
// size in bytes, its address, and its value, 0 where it is no plain number.
void DumpMember(const char* prefix, const char* class_name, const char* member, const void* address,
                std::size_t size, std::uint32_t value);
