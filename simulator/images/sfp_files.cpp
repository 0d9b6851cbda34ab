#include "images/sfp_files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/file.h"
#include "base/results.h"
#include "base/text.h"
#include "images/image_text.h"

namespace lab {
namespace {

constexpr std::size_t kLineBytes = 16;

// One line of a memory's text at `offset`: "0010: 08 03 ...".
bool ReadMemoryLine(std::string line, std::size_t offset, SfpMemory& out) {
  char prefix[16];
  const int length = std::snprintf(prefix, sizeof prefix, "%04zx: ", offset);
  if (offset >= out.size() || !line.starts_with(prefix)) return false;
  line.erase(0, static_cast<std::size_t>(length));
  for (char& c : line) {
    if (c == ' ') c = ':';
  }
  return ReadOctets(line, {out.data() + offset, kLineBytes});
}

std::string ReadMemoryText(std::string_view text, SfpMemory& out) {
  std::size_t offset = 0;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t stop = text.find('\n');
    const std::string_view line = Trimmed(text.substr(0, stop));
    text.remove_prefix(stop == std::string_view::npos ? text.size() : stop + 1);
    if (line.empty() || line[0] == '#') continue;
    if (!ReadMemoryLine(std::string(line), offset, out)) {
      return "a file of 512 bytes or of 32 lines like '0010: 08 03 00 ...', which line " +
             std::to_string(number) + " is not";
    }
    offset += kLineBytes;
  }
  if (offset == out.size()) return {};
  return "a file of 512 bytes or of 32 lines like '0010: 08 03 00 ...', of which there are " +
         std::to_string(offset / kLineBytes);
}

// True when a firmware file, whose checksum is right, is made for the module.
bool FitsModule(const ImageText& content, const SfpModule& module) {
  if (!content.WellFormed() || content.Find("vendor") != kUpdatableVendor || IsQsfpMemory(module.now))
    return false;
  const std::string_view parts = content.Find("parts");
  return parts.empty() || Lists(parts, SfpPart(module.now));
}

}  // namespace

std::string SfpMemoryText(const SfpMemory& memory) {
  std::string text;
  for (std::size_t offset = 0; offset < memory.size(); offset += kLineBytes) {
    char prefix[24];
    std::snprintf(prefix, sizeof prefix, "%04zx: ", offset);
    std::string octets = OctetText({memory.data() + offset, kLineBytes});
    for (char& c : octets) {
      if (c == ':') c = ' ';
    }
    text += prefix + octets + '\n';
  }
  return text;
}

std::string ReadSfpMemory(const std::string& content, SfpMemory& out) {
  if (content.size() != out.size()) return ReadMemoryText(content, out);
  std::memcpy(out.data(), content.data(), out.size());
  return {};
}

std::uint32_t UpdateSfpFirmware(const char* file, SfpModule& module) {
  if (SfpVendor(module.now) != kUpdatableVendor) return kOtherModuleVendor;
  ImageText content;
  switch (content.Load(file, kModuleFirstLine)) {
    case kSuccess:
      break;
    case kFileNotFound:
    case kFileOpenError:
    case kFileReadError:
      return kFileOpenError;
    default:
      return kOtherModule;
  }
  if (const std::uint32_t failure = content.CheckChecksum()) {
    return failure == kImageChecksumError ? kImageChecksumError : kOtherModule;
  }
  std::pair<std::uint8_t, std::uint8_t> version;
  if (!FitsModule(content, module) || !ReadSfpVersion(content.Find("version"), version)) return kOtherModule;
  if (module.update_fails) return kModuleUpdateFailed;
  SetSfpFirmware(module, version);
  return kSuccess;
}

bool ReadSfpVersion(std::string_view text, std::pair<std::uint8_t, std::uint8_t>& out) {
  ComponentVersion version{};
  if (text.find('.') != text.rfind('.') || !ReadVersion(text, version)) return false;
  out = {version.major, version.minor};
  return true;
}

std::string SfpVersionText(const SfpMemory& memory) {
  char text[16];
  std::snprintf(text, sizeof text, "%u.%02u", memory[kSfpFirmwareVersion], memory[kSfpFirmwareVersion + 1]);
  return text;
}

}  // namespace lab
