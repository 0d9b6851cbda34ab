#include "tools/json/window.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zfc_json {
namespace {

// The cache of one core holds the buffer.
constexpr std::size_t kFirstSize = std::size_t{32} * 1024;
constexpr std::size_t kLeastRead = 4096;

}  // namespace

Window::Window(Source& source) : source_(source), buffer_(new char[kFirstSize]), size_(kFirstSize) {}

// Moves what is in view to the start of the buffer, or to a larger one where that gains too little.
void Window::MakeRoom() {
  const std::size_t held = end_ - begin_;
  if (held + held / 2 + kLeastRead <= size_) {
    std::memmove(buffer_.get(), buffer_.get() + begin_, held);
  } else {
    size_ *= 2;
    std::unique_ptr<char[]> larger(new char[size_]);
    std::memcpy(larger.get(), buffer_.get() + begin_, held);
    buffer_ = std::move(larger);
  }
  begin_ = 0;
  end_ = held;
}

bool Window::More() {
  if (size_ - end_ < kLeastRead) MakeRoom();
  const std::size_t count = source_.Read(buffer_.get() + end_, size_ - end_);
  end_ += count;
  return count > 0;
}

bool Window::Matches(std::size_t offset, std::string_view literal) {
  for (;;) {
    const std::string_view bytes = Bytes();
    const std::string_view there = bytes.substr(std::min(offset, bytes.size()), literal.size());
    if (there != literal.substr(0, there.size())) return false;
    if (there.size() == literal.size()) return true;
    if (!More()) return false;
  }
}

void Window::Take(std::size_t count) {
  begin_ += count;
  position_ += count;
  if (begin_ == end_) begin_ = end_ = 0;
}

}  // namespace zfc_json
