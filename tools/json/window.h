// A view on the bytes of a source that moves forward: as many bytes as the reader wants to see at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "tools/json/source.h"

namespace zfc_json {

class Window {
 public:
  explicit Window(Source& source);

  // The bytes that are in view. Take and More make older views invalid.
  std::string_view Bytes() const { return {buffer_.get() + begin_, end_ - begin_}; }

  // Reads further bytes into view. False at the end of the source.
  bool More();

  // Whether `literal` is at `offset`; reads as far as it takes to know.
  bool Matches(std::size_t offset, std::string_view literal);

  // Moves the front of the view forward.
  void Take(std::size_t count);

  // How many bytes are taken.
  std::uint64_t Position() const { return position_; }

 private:
  void MakeRoom();

  Source& source_;
  std::unique_ptr<char[]> buffer_;
  std::size_t size_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::uint64_t position_ = 0;
};

}  // namespace zfc_json
