// Files that tests read and write.
#pragma once

#include <filesystem>
#include <string>

// The content of a file; empty when there is none.
std::string ContentOf(const std::filesystem::path& path);

void WriteContent(const std::filesystem::path& path, const std::string& content);

// The lowest descriptor of this process that has the file open, -1 when none has.
int DescriptorOf(const std::filesystem::path& path);

// A folder of its own for one test, gone afterwards.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::filesystem::path operator/(const char* name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

// Sees to it that a test begins and ends without a library output file.
class NoLibraryOutputFile {
 public:
  NoLibraryOutputFile();
  ~NoLibraryOutputFile();
  NoLibraryOutputFile(const NoLibraryOutputFile&) = delete;
  NoLibraryOutputFile& operator=(const NoLibraryOutputFile&) = delete;
};
