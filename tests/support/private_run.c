// Runs a program in a mount namespace of its own, so that the fixed paths it uses are private to the run:
//
//   private_run [--read-only-var-tmp] [--keep PATH]... FOLDER PROGRAM [WORD]...
//
// FOLDER/tmp, FOLDER/var_tmp and FOLDER/staging stand for /tmp, /var/tmp and /opt/ZunaFcEsxcliPlugin/tmp;
// FOLDER/work becomes the working folder. FOLDER itself and every PATH stay reachable under their own names,
// even where one of the private folders covers them. The program replaces this one, so it keeps the process
// ID and its exit is seen by the caller as it is. Without the right to mount, a user namespace of its own
// serves.
#define _GNU_SOURCE
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

enum { kMaxKept = 16, kPathSize = 4096 };

static const char kStaging[] = "/opt/ZunaFcEsxcliPlugin/tmp";

static void Die(const char* what, const char* path) {
  fprintf(stderr, "private_run: %s %s: %s\n", what, path, strerror(errno));
  exit(125);
}

static void WriteFile(const char* path, const char* text) {
  int fd = open(path, O_WRONLY | O_CLOEXEC);
  if (fd < 0 || write(fd, text, strlen(text)) < 0) Die("cannot write", path);
  close(fd);
}

static void EnterNamespace(void) {
  unsigned uid = geteuid();
  unsigned gid = getegid();
  if (unshare(CLONE_NEWNS) != 0) {
    char map[64];
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) Die("no mount namespace for", "this run");
    WriteFile("/proc/self/setgroups", "deny");
    snprintf(map, sizeof map, "0 %u 1", uid);
    WriteFile("/proc/self/uid_map", map);
    snprintf(map, sizeof map, "0 %u 1", gid);
    WriteFile("/proc/self/gid_map", map);
  }
  if (mount("none", "/", NULL, MS_REC | MS_PRIVATE, NULL) != 0) Die("cannot make private", "/");
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

static void MakeFolders(const char* path) {
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

int main(int argc, char** argv) {
  const char* kept[kMaxKept];
  int kept_places[kMaxKept];
  int kept_count = 0;
  int read_only = 0;
  int at = 1;
  for (; at < argc; ++at) {
    if (strcmp(argv[at], "--read-only-var-tmp") == 0) {
      read_only = 1;
    } else if (strcmp(argv[at], "--keep") == 0 && at + 1 < argc && kept_count < kMaxKept - 1) {
      kept[kept_count++] = argv[++at];
    } else {
      break;
    }
  }
  if (argc - at < 2) {
    fprintf(stderr, "usage: private_run [--read-only-var-tmp] [--keep PATH]... FOLDER PROGRAM [WORD]...\n");
    return 125;
  }
  const char* folder = argv[at];
  kept[kept_count++] = folder;

  EnterNamespace();
  int tmp = OpenBelow(folder, "tmp");
  int var_tmp = OpenBelow(folder, "var_tmp");
  int staging = OpenBelow(folder, "staging");
  for (int i = 0; i < kept_count; ++i) kept_places[i] = OpenPlace(kept[i]);

  if (mount("none", "/opt", "tmpfs", 0, "size=1m") != 0) Die("cannot mount on", "/opt");
  MakeFolders(kStaging);
  Bind(staging, kStaging);
  Bind(tmp, "/tmp");
  Bind(var_tmp, "/var/tmp");
  for (int i = 0; i < kept_count; ++i) {
    if (!IsCovered(kept[i])) continue;
    MakeFolders(kept[i]);
    Bind(kept_places[i], kept[i]);
  }
  if (read_only) MakeReadOnly("/var/tmp");
  char path[kPathSize];
  snprintf(path, sizeof path, "%s/work", folder);
  if (chdir(path) != 0) Die("cannot enter", path);

  execvp(argv[at + 1], argv + at + 1);
  Die("cannot run", argv[at + 1]);
}
