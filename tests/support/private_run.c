// Runs a program in a mount namespace of its own, so that the fixed paths it uses are private to the run:
//
//   private_run [--read-only-var-tmp] [--no-namespace] [--keep PATH]... FOLDER PROGRAM [WORD]...
//   private_run --has-namespace    prints nothing; ends with 1 and the reason where this machine refuses one
//
// FOLDER/tmp, FOLDER/var_tmp and FOLDER/staging stand for /tmp, /var/tmp and /opt/ZunaFcEsxcliPlugin/tmp;
// FOLDER/work becomes the working folder. FOLDER itself and every PATH stay reachable under their own names,
// even where one of the private folders covers them. The program replaces this one, so it keeps the process
// ID and its exit is seen by the caller as it is. Without the right to mount, a user namespace of its own
// serves. Where both are refused, or with --no-namespace, a preloaded library gives the program the private
// folders instead: see private_paths.c.
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

static void SetVariable(const char* name, const char* value) {
  if (setenv(name, value, 1) != 0) Die("cannot set", name);
}

// The library beside this program.
static void NameLibrary(char* name) {
  const ssize_t length = readlink("/proc/self/exe", name, kPathSize - sizeof "private_paths.so");
  if (length <= 0) Die("cannot read", "/proc/self/exe");
  name[length] = '\0';
  snprintf(strrchr(name, '/') + 1, sizeof "private_paths.so", "private_paths.so");
}

// LD_PRELOAD ends a name at a blank and a colon: a name with one gives way to an open file.
static void MakePreloadable(char* name) {
  if (!strpbrk(name, " :")) return;
  int library = open(name, O_RDONLY);
  if (library < 0) Die("cannot open", name);
  snprintf(name, kPathSize, "/proc/self/fd/%d", library);
}

// Gives the program the private folders by a preloaded library, after those that are to be preloaded anyway.
static void PreloadPaths(char* library, const char* folder, const char** kept, int kept_count,
                         int read_only) {
  MakePreloadable(library);
  const char* others = getenv("LD_PRELOAD");
  char preloaded[2 * kPathSize];
  snprintf(preloaded, sizeof preloaded, "%s%s%s", others ? others : "", others ? ":" : "", library);

  char opt[kPathSize];
  snprintf(opt, sizeof opt, "%s%s", folder, kStaging);
  MakeFolders(opt);

  char all_kept[kMaxKept * kPathSize] = "";
  for (int i = 0; i < kept_count; ++i) {
    const size_t used = strlen(all_kept);
    snprintf(all_kept + used, sizeof all_kept - used, "%s\n", kept[i]);
  }
  // The sanitizers' runtime refuses to start after another library unless it is asked not to look.
  const char* options = getenv("ASAN_OPTIONS");
  char sanitizer[kPathSize];
  snprintf(sanitizer, sizeof sanitizer, "%s%sverify_asan_link_order=0", options ? options : "",
           options ? ":" : "");

  SetVariable("PRIVATE_PATHS_FOLDER", folder);
  SetVariable("PRIVATE_PATHS_KEPT", all_kept);
  if (read_only) SetVariable("PRIVATE_PATHS_READ_ONLY", "/var/tmp");
  SetVariable("ASAN_OPTIONS", sanitizer);
  SetVariable("LD_PRELOAD", preloaded);
}

// Returns 0 where the machine refuses. The places are opened in the namespace: from outside they could not be
// mounted.
static int MountPaths(const char* folder, const char** kept, int kept_count, int read_only) {
  int kept_places[kMaxKept];
  if (EnterNamespace() != NULL) return 0;
  int tmp = OpenBelow(folder, "tmp");
  int var_tmp = OpenBelow(folder, "var_tmp");
  int staging = OpenBelow(folder, "staging");
  for (int i = 0; i < kept_count; ++i) kept_places[i] = OpenPlace(kept[i]);

  if (!HidesOpt()) return 0;
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
  return 1;
}

static int HasNamespace(void) {
  const char* refused = EnterNamespace();
  if (!refused && !HidesOpt()) refused = "to mount on /opt";
  if (refused) fprintf(stderr, "private_run: this machine refuses %s: %s\n", refused, strerror(errno));
  return refused == NULL;
}

int main(int argc, char** argv) {
  const char* kept[kMaxKept];
  int kept_count = 0;
  int read_only = 0;
  int by_mounts = 1;
  int at = 1;
  if (argc == 2 && strcmp(argv[1], "--has-namespace") == 0) return HasNamespace() ? 0 : 1;
  for (; at < argc; ++at) {
    if (strcmp(argv[at], "--read-only-var-tmp") == 0) {
      read_only = 1;
    } else if (strcmp(argv[at], "--no-namespace") == 0) {
      by_mounts = 0;
    } else if (strcmp(argv[at], "--keep") == 0 && at + 1 < argc && kept_count < kMaxKept - 1) {
      kept[kept_count++] = argv[++at];
    } else {
      break;
    }
  }
  if (argc - at < 2) {
    fprintf(stderr,
            "usage: private_run [--read-only-var-tmp] [--no-namespace] [--keep PATH]... FOLDER PROGRAM "
            "[WORD]...\n");
    return 125;
  }
  const char* folder = argv[at];
  kept[kept_count++] = folder;

  // Named in the namespace in which this program was started: in another its own path may not be known.
  char library[kPathSize];
  NameLibrary(library);
  if (!by_mounts || !MountPaths(folder, kept, kept_count, read_only)) {
    PreloadPaths(library, folder, kept, kept_count, read_only);
  }
  char path[kPathSize];
  snprintf(path, sizeof path, "%s/work", folder);
  if (chdir(path) != 0) Die("cannot enter", path);

  execvp(argv[at + 1], argv + at + 1);
  Die("cannot run", argv[at + 1]);
}
