// Images of modules for tests, built from named bytes.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "framework/report_text.h"
#include "port/sfp/sfp_image.h"

class TestImage {
 public:
  // All bytes zero but the identifier: 0x03 SFP, 0x0d QSFP+.
  static TestImage Sfp() { return TestImage(0x03); }
  static TestImage Qsfp() { return TestImage(0x0d); }

  TestImage& Set(std::size_t offset, std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) bytes_.at(offset++) = byte;
    return *this;
  }
  TestImage& Set(std::size_t offset, std::string_view text) {
    for (const char byte : text) bytes_.at(offset++) = static_cast<std::uint8_t>(byte);
    return *this;
  }

  // The first `limit` bytes, in memory that ends there: AddressSanitizer finds a read past them.
  SfpImage First(std::size_t limit) {
    cut_.assign(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(limit));
    cut_.shrink_to_fit();
    return cut_;
  }

  operator SfpImage() const { return bytes_; }  // NOLINT(google-explicit-constructor): it is its bytes

 private:
  explicit TestImage(std::uint8_t identifier) : bytes_(kSfpImageBytes) { bytes_[0] = identifier; }

  std::vector<std::uint8_t> bytes_;
  std::vector<std::uint8_t> cut_;
};

// What `display(text)` appends to an empty report.
template <class Display>
std::string Displayed(Display display, std::size_t buffer_size = 16384) {
  ReportText text(buffer_size);
  display(text);
  return text.Text();
}
