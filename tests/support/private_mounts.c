// See the header.
#define _GNU_SOURCE
#include "private_mounts.h"

#include <errno.h>
#include <fcntl.h>
#include <sched.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

const char kStaging[] = "/opt/ZunaFcEsxcliPlugin/tmp";

void Die(const char* what, const char* path) {
  fprintf(stderr, "private_run: %s %s: %s\n", what, path, strerror(errno));
  exit(125);
}

static int WriteFile(const char* path, const char* text) {
  int fd = open(path, O_WRONLY | O_CLOEXEC);
  if (fd < 0) return 0;
  const int written = write(fd, text, strlen(text)) >= 0;
  close(fd);
  return written;
}

static int EnterUserNamespace(void) {
  unsigned uid = geteuid();
  unsigned gid = getegid();
  char map[64];
  if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return 0;
  if (!WriteFile("/proc/self/setgroups", "deny")) return 0;
  snprintf(map, sizeof map, "0 %u 1", uid);
  if (!WriteFile("/proc/self/uid_map", map)) return 0;
  snprintf(map, sizeof map, "0 %u 1", gid);
  return WriteFile("/proc/self/gid_map", map);
}

// What the machine refuses of a mount namespace; NULL when the run is in one.
static const char* EnterNamespace(void) {
  if (unshare(CLONE_NEWNS) != 0 && !EnterUserNamespace()) return "a namespace";
  // In a root folder that is no mount of its own, mounts can't be kept from the machine.
  if (mount("none", "/", NULL, MS_REC | MS_PRIVATE, NULL) != 0) return "to make / private";
  return NULL;
}

static int HidesOpt(void) {
  return mount("none", "/opt", "tmpfs", 0, "size=1m") == 0;
}

// A place that stays reachable after a private folder has been mounted over the way to it.
static int OpenPlace(const char* path) {
  int fd = open(path, O_PATH | O_CLOEXEC);
  if (fd < 0) Die("cannot open", path);
  return fd;
}

static void Bind(int place, const char* target) {
  char source[64];
  snprintf(source, sizeof source, "/proc/self/fd/%d", place);
  if (mount(source, target, NULL, MS_BIND | MS_REC, NULL) != 0) Die("cannot mount on", target);
}

void MakeFolders(const char* path) {
  char part[kPathSize];
  snprintf(part, sizeof part, "%s", path);
  for (char* slash = strchr(part + 1, '/');; slash = strchr(slash + 1, '/')) {
    if (slash) *slash = '\0';
    if (mkdir(part, 0755) != 0 && errno != EEXIST) Die("cannot create", part);
    if (!slash) return;
    *slash = '/';
  }
}

static int IsCovered(const char* path) {
  return strncmp(path, "/tmp/", 5) == 0 || strncmp(path, "/var/tmp/", 9) == 0 ||
         strncmp(path, "/opt/", 5) == 0;
}

static void MakeReadOnly(const char* path) {
  struct statvfs info;
  if (statvfs(path, &info) != 0) Die("cannot ask", path);
  // A user namespace may not drop what the folder's file system already forbids.
  unsigned long flags = MS_REMOUNT | MS_BIND | MS_RDONLY;
  if (info.f_flag & ST_NOSUID) flags |= MS_NOSUID;
  if (info.f_flag & ST_NODEV) flags |= MS_NODEV;
  if (info.f_flag & ST_NOEXEC) flags |= MS_NOEXEC;
  if (info.f_flag & ST_NOATIME) flags |= MS_NOATIME;
  if (info.f_flag & ST_NODIRATIME) flags |= MS_NODIRATIME;
  if (info.f_flag & ST_RELATIME) flags |= MS_RELATIME;
  if (mount(NULL, path, NULL, flags, NULL) != 0) Die("cannot make read-only", path);
}

static int OpenBelow(const char* folder, const char* name) {
  char path[kPathSize];
  snprintf(path, sizeof path, "%s/%s", folder, name);
  return OpenPlace(path);
}

int ReadPrivateRun(char** words, struct PrivateRun* run) {
  *run = (struct PrivateRun){.by_mounts = 1};
  for (; *words; ++words) {
    if (strcmp(*words, "--read-only-var-tmp") == 0) {
      run->read_only = 1;
    } else if (strcmp(*words, "--no-namespace") == 0) {
      run->by_mounts = 0;
    } else if (strcmp(*words, "--keep") == 0 && words[1] && run->kept_count < kMaxKept - 1) {
      run->kept[run->kept_count++] = *++words;
    } else {
      break;
    }
  }
  if (!words[0] || !words[1]) return 0;
  run->folder = words[0];
  run->command = words + 1;
  run->kept[run->kept_count++] = run->folder;
  return 1;
}

// The places are opened in the namespace: from outside they could not be mounted.
int MountPaths(const struct PrivateRun* run) {
  int kept_places[kMaxKept];
  if (EnterNamespace() != NULL) return 0;
  int tmp = OpenBelow(run->folder, "tmp");
  int var_tmp = OpenBelow(run->folder, "var_tmp");
  int staging = OpenBelow(run->folder, "staging");
  for (int i = 0; i < run->kept_count; ++i) kept_places[i] = OpenPlace(run->kept[i]);

  if (!HidesOpt()) return 0;
  MakeFolders(kStaging);
  Bind(staging, kStaging);
  Bind(tmp, "/tmp");
  Bind(var_tmp, "/var/tmp");
  for (int i = 0; i < run->kept_count; ++i) {
    if (!IsCovered(run->kept[i])) continue;
    MakeFolders(run->kept[i]);
    Bind(kept_places[i], run->kept[i]);
  }
  if (run->read_only) MakeReadOnly("/var/tmp");
  return 1;
}

void EnterWork(const struct PrivateRun* run) {
  char path[kPathSize];
  snprintf(path, sizeof path, "%s/work", run->folder);
  if (chdir(path) != 0) Die("cannot enter", path);
}

const char* RefusedMounts(void) {
  const char* refused = EnterNamespace();
  if (refused) return refused;
  return HidesOpt() ? NULL : "to mount on /opt";
}
