// zfc-lab flash-image: the checksum line of flash images, NVRAM images and module firmware.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/file.h"
#include "framework/device_library/harmless_text.h"
#include "images/image_text.h"
#include "tools/lab/command.h"

namespace zfc_lab {
namespace {

constexpr char kHelp[] =
    "Usage: zfc-lab flash-image FILE...\n"
    "Writes the last line of flash images, NVRAM images and module firmware files anew: the checksum of the "
    "lines\n"
    "ahead of it, in place of one that is there. The file is replaced as a whole.\n";

constexpr char kName[] = "zfc-lab flash-image";

constexpr std::string_view kFirstLines[] = {lab::kFlashFirstLine, lab::kNvramFirstLine,
                                            lab::kModuleFirstLine};

bool IsImage(std::string_view text) {
  for (const std::string_view line : kFirstLines) {
    if (text.substr(0, text.find('\n')) == line) return true;
  }
  return false;
}

std::string ExpectedLines() {
  std::string lines;
  for (const std::string_view line : kFirstLines) {
    lines += (lines.empty() ? "'" : " or '") + std::string(line) + "'";
  }
  return lines;
}

// Reads an image. Returns an empty text, or the mistake.
std::string ReadImage(const std::string& file, std::string& text) {
  struct stat info {};
  if (stat(file.c_str(), &info) != 0) return file + ": can't be read: " + std::strerror(errno);
  if (!S_ISREG(info.st_mode)) return file + ": can't be read: not a regular file";
  if (lab::ReadFile(file.c_str(), text) != lab::FileResult::kRead) {
    return file + ": can't be read: " + std::strerror(errno);
  }
  if (!IsImage(text)) return file + ":1: expected " + ExpectedLines() + " as first line";
  return text.size() > lab::kLargestFile ? file + ": larger than 16 MiB" : "";
}

// Writes the checksum of one file. Returns an empty text, or the mistake.
std::string Seal(const std::string& file) {
  std::string text;
  std::string wrong = ReadImage(file, text);
  if (!wrong.empty()) return wrong;
  const std::string sealed = lab::Sealed(text);
  const std::string line = sealed.substr(sealed.rfind('\n', sealed.size() - 2) + 1);
  const bool right = sealed == text;
  if (!right) wrong = lab::ReplaceFile(file, sealed);
  if (wrong.empty()) {
    std::printf("%s: %.*s%s\n", file.c_str(), static_cast<int>(line.size() - 1), line.c_str(),
                right ? ", as it was" : "");
  }
  return wrong;
}

tools::ExitStatus Run(const tools::Words& words) {
  tools::Arguments arguments(kName, words, {});
  if (!arguments.Good()) return tools::kWrongUsage;
  if (arguments.Operands().empty()) return arguments.Refuse("expected a file");
  tools::ExitStatus status = tools::kGood;
  for (const std::string& file : arguments.Operands()) {
    const std::string wrong = Seal(file);
    if (wrong.empty()) continue;
    std::fprintf(stderr, "%s\n", Harmless(wrong, LineEnds::kKept).c_str());
    status = tools::kMistake;
  }
  return status;
}

}  // namespace

const Command kFlashImage = {"flash-image", "write the checksum line of images anew", kHelp, Run};

}  // namespace zfc_lab
