#include "runtime/extras/api_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>

#include "runtime/core_services.h"

namespace {

constexpr char kApiLogFile[] = "/tmp/APILog.txt";
constexpr std::size_t kCopySize = 512;
constexpr std::size_t kLineSize = 2048;

void ReportFailedOpen(int error) {
  std::printf("Cannot open APILog.txt from APILog errno:  0x%x, %d, %s\n", static_cast<unsigned>(error),
              error, std::strerror(error));
  char directory[PATH_MAX];
  if (getcwd(directory, sizeof directory) == nullptr) {
    std::perror("getcwd() error");
  } else {
    std::printf("Current working dir: %s\n", directory);
  }
}

}  // namespace

void ZNDM_DebugPrint(const char* tag, const char* text) {
  char tag_copy[kCopySize];
  char text_copy[kCopySize];
  std::snprintf(tag_copy, sizeof tag_copy, "%s", tag == nullptr ? "" : tag);
  std::snprintf(text_copy, sizeof text_copy, "%s", text == nullptr ? "" : text);
  CoreLogMessage(kCoreDebug, "ZNDM_DebugPrint: %s : %s\n", tag_copy, text_copy);
  char line[kLineSize];
  std::snprintf(line, sizeof line, "ZNDM_DebugPrint: %s : %s\n", tag_copy, text_copy);
  WriteApiLog(line);
}

void WriteApiLog(const char* line) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  const int file = open(kApiLogFile, kFlags, 0664);
  if (file < 0) {
    ReportFailedOpen(errno);
    return;
  }
  dprintf(file, "Debug:\"%s\" \n", line);
  close(file);
}
