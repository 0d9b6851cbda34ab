// Images as text files: a first line that names the format, lines "key: value", a last line with a checksum.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lab {

// The formats, by their first lines: flash images, the NVRAM of a port, the firmware of a pluggable module.
inline constexpr std::string_view kFlashFirstLine = "ZNFC flash image";
inline constexpr std::string_view kNvramFirstLine = "ZNFC NVRAM image";
inline constexpr std::string_view kModuleFirstLine = "ZNFC SFP firmware";

// CRC-32 as in ISO 3309, the checksum of an image.
std::uint32_t Crc32(std::string_view bytes);

// The text with a right checksum as its last line. A checksum line that is there, empty lines after it
// included, gives way.
std::string Sealed(std::string_view text);

// True when `list`, words with commas between them, holds the word.
bool Lists(std::string_view list, std::string_view word);

class ImageText {
 public:
  struct Line {
    std::string_view key;
    std::string_view value;
  };

  ImageText() = default;
  ImageText(const ImageText&) = delete;
  ImageText& operator=(const ImageText&) = delete;

  // Reads the file and takes it apart. Returns 0 or why that failed: kFileNotFound, kFileOpenError,
  // kFileReadError; kNotAFlashImage for another first line; kImageSizeError when the file is larger than
  // kLargestFile; kImageCorrupted when its last line is no checksum line.
  std::uint32_t Load(const char* file, std::string_view first_line);

  // Returns 0, kImageSizeError when a key `size` differs from the size that the checksum covers,
  // kImageCorrupted when the checksum is no number, or kImageChecksumError.
  std::uint32_t CheckChecksum() const;

  // The value of the first line with this key, empty when there is none.
  std::string_view Find(std::string_view key) const;

  // All lines between the first and the last, without empty ones and remarks; and whether each had a key.
  const std::vector<Line>& Lines() const { return lines_; }
  bool WellFormed() const { return well_formed_; }

 private:
  void SplitLines(std::string_view rest);

  std::string text_;
  std::string_view body_;  // what the checksum covers
  std::string_view checksum_;
  std::vector<Line> lines_;
  bool well_formed_ = true;
};

}  // namespace lab
