#include "tools/lab/private_staging.h"

#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace zfc_lab {
namespace {

std::string Failure(const std::string& what) {
  return what + ": " + std::strerror(errno);
}

bool WriteText(const char* path, const std::string& text) {
  const int descriptor = open(path, O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool good = write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(descriptor);
  return good;
}

// Without the right to mount, a user namespace gives it. Users and groups keep their numbers.
std::string EnterNamespace() {
  const std::string user = std::to_string(geteuid()) + ' ' + std::to_string(geteuid()) + " 1";
  const std::string group = std::to_string(getegid()) + ' ' + std::to_string(getegid()) + " 1";
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return Failure("unshare");
    if (!WriteText("/proc/self/setgroups", "deny") || !WriteText("/proc/self/uid_map", user) ||
        !WriteText("/proc/self/gid_map", group)) {
      return Failure("/proc/self/uid_map");
    }
  }
  if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return Failure("mount /");
  return {};
}

bool IsFolder(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// The last folder on the way to `path` that is there.
std::string LastFolder(std::string path) {
  while (!path.empty() && !IsFolder(path)) path.erase(path.rfind('/'));
  return path;
}

std::string MountEmpty(const std::string& place) {
  const bool good = mount("none", place.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "mode=0755") == 0;
  return good ? "" : Failure("mount " + place);
}

std::string Bind(int source, const std::string& place) {
  char path[64];
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", source);
  const bool good = mount(path, place.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0;
  return good ? "" : Failure("mount " + place);
}

// An entry of a folder that an empty file system is about to cover.
struct Kept {
  std::string name;
  mode_t kind;       // S_IFDIR, S_IFLNK or any other
  int place;         // the entry itself, open; -1 for a symbolic link
  std::string link;  // what a symbolic link holds
};

std::vector<Kept> EntriesOf(const std::string& folder) {
  std::vector<Kept> kept;
  DIR* const list = opendir(folder.c_str());
  if (list == nullptr) return kept;
  while (const dirent* const entry = readdir(list)) {
    const std::string name = entry->d_name;
    struct stat info {};
    if (name == "." || name == ".." || fstatat(dirfd(list), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) {
      continue;
    }
    Kept found = {name, info.st_mode & S_IFMT, -1, ""};
    if (found.kind == S_IFLNK) {
      char link[PATH_MAX];
      const ssize_t length = readlinkat(dirfd(list), name.c_str(), link, sizeof link);
      if (length > 0) found.link.assign(link, static_cast<std::size_t>(length));
    } else {
      found.place = openat(dirfd(list), name.c_str(), O_PATH | O_CLOEXEC | O_NOFOLLOW);
    }
    kept.push_back(std::move(found));
  }
  closedir(list);
  return kept;
}

std::string PutBack(const Kept& entry, const std::string& folder) {
  const std::string path = folder + '/' + entry.name;
  if (entry.kind == S_IFLNK) {
    return symlink(entry.link.c_str(), path.c_str()) == 0 ? "" : Failure(path);
  }
  if (entry.kind == S_IFDIR) {
    if (mkdir(path.c_str(), 0755) != 0) return Failure(path);
  } else {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0) return Failure(path);
    close(file);
  }
  return Bind(entry.place, path);
}

// Puts the missing folders of `path` after `folder`, which is there, into an empty file system over that
// folder. What the folder has held is there as before.
std::string AddFolders(const std::string& folder, const std::string& path) {
  const std::vector<Kept> kept = EntriesOf(folder);
  std::string wrong = MountEmpty(folder);
  for (const Kept& entry : kept) {
    if (wrong.empty()) wrong = PutBack(entry, folder);
    if (entry.place >= 0) close(entry.place);
  }
  for (std::size_t end = folder.size(); wrong.empty() && end < path.size();) {
    end = std::min(path.find('/', end + 1), path.size());
    if (mkdir(path.substr(0, end).c_str(), 0755) != 0) wrong = Failure(path.substr(0, end));
  }
  return wrong;
}

// Where the program's library output goes. Each run needs to append to it, and the run that came first on
// this machine may have been another user's.
constexpr char kLibraryOutput[] = "/var/tmp/torpi-output.log";

// Fills an empty file system over the staging folder: the folder itself, and a library output file where the
// machine's can't be written.
std::string FillStaging(const std::string& staging) {
  std::string wrong = MountEmpty(staging);
  const std::string inner = staging + "/staging";
  const std::string output = staging + "/output";
  if (wrong.empty() && access(kLibraryOutput, F_OK) == 0 && access(kLibraryOutput, W_OK) != 0) {
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) return Failure(output);
    wrong = Bind(file, kLibraryOutput);
    close(file);
  }
  if (wrong.empty() && mkdir(inner.c_str(), 0755) != 0) wrong = Failure(inner);
  if (!wrong.empty()) return wrong;
  const int place = open(inner.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (place < 0) return Failure(inner);
  wrong = Bind(place, staging);
  close(place);
  return wrong;
}

}  // namespace

std::string MakeStagingPrivate(const std::string& folder) {
  const std::string there = LastFolder(kStagingFolder);
  if (there.empty()) return std::string(kStagingFolder) + ": its first folder is not there";
  if (std::string wrong = EnterNamespace(); !wrong.empty()) return wrong;
  // Opened in the new namespace, from which alone it can be mounted, and before anything covers the way to
  // it.
  const int place = folder.empty() ? -1 : open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (!folder.empty() && place < 0) return Failure(folder);
  const bool adds = there != kStagingFolder;
  std::string wrong = adds ? AddFolders(there, kStagingFolder) : "";
  if (wrong.empty()) wrong = FillStaging(kStagingFolder);
  if (wrong.empty() && place >= 0) wrong = Bind(place, kStagingFolder);
  if (!wrong.empty() && adds) umount2(there.c_str(), MNT_DETACH);
  if (place >= 0) close(place);
  return wrong;
}

}  // namespace zfc_lab
