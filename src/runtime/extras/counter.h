#pragma once

#include <cstdint>

#include "runtime/locks.h"

// A counter that threads share. It wraps around at both ends of its 32 bits.
class KestCounter {
 public:
  explicit KestCounter(std::uint32_t value = 0) : m_uValue(value) {}

  // Count one up or down, and return the new value.
  std::uint32_t Increment();
  std::uint32_t Decrement();

  std::uint32_t Value() const;

  // Logs the members, each line headed by `prefix`.
  void Dump(const char* prefix) const;

 private:
  static CMutex m_Access;  // one lock for all counters

  std::uint32_t m_uValue;
};
