#include "images/image_text.h"

#include <array>
#include <cerrno>
#include <cstdio>

#include "base/file.h"
#include "base/results.h"
#include "base/text.h"

namespace lab {
namespace {

constexpr std::string_view kChecksumKey = "checksum: ";
constexpr std::string_view kBareChecksumKey = "checksum:";

std::uint32_t ReadInto(const char* file, std::string& out) {
  switch (ReadFile(file, out)) {
    case FileResult::kRead:
      return kSuccess;
    case FileResult::kNotOpened:
      return errno == ENOENT ? kFileNotFound : kFileOpenError;
    case FileResult::kNotRead:
      return kFileReadError;
  }
  return kFileReadError;
}

}  // namespace

std::uint32_t ImageText::Load(const char* file, std::string_view first_line) {
  if (const std::uint32_t failure = ReadInto(file, text_)) return failure;
  const std::string_view text = text_;
  if (!text.starts_with(first_line) || text.substr(first_line.size(), 1) != "\n") return kNotAFlashImage;
  if (text.size() > kLargestFile) return kImageSizeError;

  const std::size_t last = text.rfind('\n', text.size() - (text.ends_with('\n') ? 2 : 1)) + 1;
  const std::string_view end = text.substr(last);
  if (!end.starts_with(kChecksumKey)) return kImageCorrupted;
  checksum_ = Trimmed(end.substr(kChecksumKey.size(), end.find('\n') - kChecksumKey.size()));
  body_ = text.substr(0, last);
  SplitLines(body_.substr(first_line.size() + 1));
  return kSuccess;
}

void ImageText::SplitLines(std::string_view rest) {
  while (!rest.empty()) {
    const std::size_t stop = rest.find('\n');
    const std::string_view line = Trimmed(rest.substr(0, stop));
    rest.remove_prefix(stop == std::string_view::npos ? rest.size() : stop + 1);
    if (line.empty() || line[0] == '#') continue;
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0) {
      well_formed_ = false;
    } else {
      lines_.push_back({line.substr(0, colon), Trimmed(line.substr(colon + 1))});
    }
  }
}

std::string_view ImageText::Find(std::string_view key) const {
  for (const Line& line : lines_) {
    if (line.key == key) return line.value;
  }
  return {};
}

std::uint32_t ImageText::CheckChecksum() const {
  std::uint64_t size = 0;
  const std::string_view stated = Find("size");
  if (!stated.empty() && (!ReadNumber(stated, kLargestFile, size) || size != body_.size()))
    return kImageSizeError;
  std::uint64_t checksum = 0;
  if (!ReadNumber("0x" + std::string(checksum_), UINT32_MAX, checksum)) return kImageCorrupted;
  return checksum == Crc32(body_) ? kSuccess : kImageChecksumError;
}

std::string Sealed(std::string_view text) {
  std::string body(text);
  const std::size_t end = text.find_last_not_of(" \t\r\n");
  const std::size_t last = end == std::string_view::npos ? end : text.rfind('\n', end);
  if (last != std::string_view::npos && text.substr(last + 1).starts_with(kBareChecksumKey)) {
    body.resize(last + 1);
  }
  if (!body.ends_with('\n')) body += '\n';
  char checksum[32];
  std::snprintf(checksum, sizeof checksum, "checksum: %08X\n", Crc32(body));
  return body + checksum;
}

bool Lists(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t comma = list.find(',');
    if (Trimmed(list.substr(0, comma)) == word) return true;
    list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
  }
  return false;
}

std::uint32_t Crc32(std::string_view bytes) {
  static constexpr auto kTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
      std::uint32_t word = i;
      for (int bit = 0; bit < 8; ++bit) word = (word >> 1) ^ ((word & 1) != 0 ? 0xEDB88320u : 0u);
      table[i] = word;
    }
    return table;
  }();
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) crc = (crc >> 8) ^ kTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
  return ~crc;
}

}  // namespace lab
