#include "config/staged/staged_file.h"

#include <string_view>

#include "config/options.h"

namespace {

// Made when the program is installed; nothing here creates it.
constexpr const char* kCacheFolder = "/opt/ZunaFcEsxcliPlugin/tmp";

StatusCode FileOpsFailed(const CommandRun& run) {
  return run.Refuse(kFileNotFound, "file ops failed");
}

}  // namespace

std::string StagedPath(const char* family, const std::string& port) {
  return std::string(kCacheFolder) + "/" + family + "_" + port;
}

bool StagedFile::IsPresent() const {
  return FileOps::IsFilePresent(path_.c_str()) == 1;
}

bool StagedFile::Find(const std::string& key, std::string& value) const {
  std::string buffer(value_size_, '\0');
  const int result =
      FileOps::GetKeyValueFromFile(path_.c_str(), key.c_str(), buffer.data(), buffer.size(), '=');
  if (result == FileOps::kNotReadable) is_unreadable_ = true;
  if (result != FileOps::kFound) return false;
  value = std::string_view(buffer.data());  // up to the terminator
  return true;
}

bool StagedFile::FindNumber(const std::string& key, std::uint32_t& number) const {
  std::string value;
  if (!Find(key, value)) return false;
  number = NumberOf(value);
  return true;
}

StatusCode StagedFile::Create(const CommandRun& run, const StagedValues& values) {
  reach_ = FileOps::kProcesses;
  return Write(run, values);
}

StatusCode StagedFile::CheckReads(const CommandRun& run) const {
  return is_unreadable_ ? FileOpsFailed(run) : kSuccess;
}

StatusCode StagedFile::Write(const CommandRun& run, const StagedValues& values) const {
  for (const auto& [key, value] : values) {
    if (FileOps::UpdateKeyValueInFile(path_.c_str(), key.c_str(), value.c_str(), reach_) == FileOps::kDone) {
      continue;
    }
    return FileOpsFailed(run);
  }
  return kSuccess;
}

StatusCode StagedFile::Sync(const CommandRun& run) const {
  return FileOps::SyncFile(path_.c_str()) == FileOps::kDone ? kSuccess : FileOpsFailed(run);
}

void StagedFile::Remove() const {
  FileOps::RemoveFile(path_.c_str());  // logs a failure itself
}
