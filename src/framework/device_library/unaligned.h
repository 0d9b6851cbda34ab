// Numbers of the device library's records at offsets that their types' alignment does not allow.
#pragma once

#include <cstddef>
#include <cstring>

template <class Number>
struct Unaligned {
  std::byte bytes[sizeof(Number)];

  Number Value() const {
    Number value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }
};
