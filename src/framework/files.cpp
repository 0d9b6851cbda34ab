#include "framework/files.h"

#include <sys/stat.h>

bool FileExists(const char* path) {
  struct stat status;
  return stat(path, &status) == 0;
}
