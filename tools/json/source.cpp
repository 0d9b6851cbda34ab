#include "tools/json/source.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace zfc_json {

std::size_t DescriptorSource::Read(char* target, std::size_t size) {
  for (;;) {
    const ssize_t count = read(descriptor_, target, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EINTR) continue;
    error_ = errno;
    return 0;
  }
}

std::size_t TextSource::Read(char* target, std::size_t size) {
  const std::string_view given = rest_.substr(0, std::min(size, piece_));
  given.copy(target, given.size());
  rest_.remove_prefix(given.size());
  return given.size();
}

}  // namespace zfc_json
