#include "support/unit_files.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include "framework/output_bracket.h"

// Also of a file for writing alone, such as the mirror of the shell's output, which root alone can read.
std::string ContentOf(const std::filesystem::path& path) {
  using std::filesystem::perms;
  std::error_code not_there;
  const std::filesystem::file_status status = std::filesystem::status(path, not_there);
  const bool lacks_reading =
      is_regular_file(status) && (status.permissions() & perms::owner_read) == perms::none;
  if (lacks_reading) std::filesystem::permissions(path, status.permissions() | perms::owner_read);
  std::ifstream file(path, std::ios::binary);
  if (lacks_reading) std::filesystem::permissions(path, status.permissions());
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteContent(const std::filesystem::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

int DescriptorOf(const std::filesystem::path& path) {
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    std::error_code no_such_descriptor;
    const auto open_file =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), no_such_descriptor);
    if (!no_such_descriptor && open_file == path) return descriptor;
  }
  return -1;
}

ScratchFolder::ScratchFolder() {
  char name[] = "/tmp/unit_test_XXXXXX";
  if (mkdtemp(name) == nullptr) std::abort();
  path_ = name;
}

ScratchFolder::~ScratchFolder() {
  std::filesystem::remove_all(path_);
}

NoLibraryOutputFile::NoLibraryOutputFile() {
  std::filesystem::remove_all(kLibraryOutputFile);
}

NoLibraryOutputFile::~NoLibraryOutputFile() {
  std::filesystem::remove_all(kLibraryOutputFile);
}
