#include "reference/whole_file.h"

#include <cstdio>
#include <memory>

namespace reference {

std::string ReadWholeFile(const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(path.c_str(), "rb"), &std::fclose);
  std::string content;
  if (stream == nullptr) return content;
  char buffer[4096];
  std::size_t count = 0;
  while ((count = std::fread(buffer, 1, sizeof buffer, stream.get())) > 0) content.append(buffer, count);
  return content;
}

}  // namespace reference
