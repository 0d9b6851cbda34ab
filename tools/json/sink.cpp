#include "tools/json/sink.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace zfc_json {

void DescriptorSink::Write(std::string_view text) {
  constexpr std::size_t kPiece = 65536;
  if (gathered_.size() + text.size() < kPiece) {
    gathered_ += text;
    return;
  }
  Flush();
  WriteAll(text);
}

void DescriptorSink::Flush() {
  WriteAll(gathered_);
  gathered_.clear();
}

void DescriptorSink::WriteAll(std::string_view rest) {
  while (!rest.empty() && error_ == 0) {
    const ssize_t written = write(descriptor_, rest.data(), rest.size());
    if (written >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
}

}  // namespace zfc_json
