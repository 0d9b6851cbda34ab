// An input as a row of numbers and texts, for the targets that build something of it. At its end all are zero
// and empty.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }

  std::uint64_t Number() {
    std::uint64_t number = 0;
    for (int i = 0; i < 8; ++i) number = number << 8 | Byte();
    return number;
  }

  // As many bytes as the first one says. What is no terminated text loses its null bytes.
  std::string Text() {
    const std::size_t length = std::min<std::size_t>(Byte(), rest_.size());
    std::string text(rest_.substr(0, length));
    rest_.remove_prefix(length);
    std::erase(text, '\0');
    return text;
  }

  bool Empty() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};
