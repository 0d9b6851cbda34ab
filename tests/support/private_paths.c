// Preloaded by private_run where mount namespaces are refused: gives a process and all that it starts private
// folders in place of the fixed ones, by the names that it hands to the C library.
//
//   PRIVATE_PATHS_FOLDER     the folder with tmp, var_tmp, staging and opt, for the places of the table below
//   PRIVATE_PATHS_KEPT       paths that keep their names, each ended by a line end
//   PRIVATE_PATHS_READ_ONLY  a folder of these in which nothing can be changed
//   PRIVATE_PATHS_FULL       a folder of these in which files can be made, but not filled
//
// A name is compared as it is: `/var/../tmp` is not recognised. Calls of the C library among its own
// functions are not seen, so each function that opens files by itself is listed here. A program linked
// statically, and one that enters the kernel without the C library, sees the machine's own folders. Mounts
// are refused.
#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utime.h>

// In the functions below: the path to use, and the room for it.
#define THERE Rewrite(path, &room)
#define EXPORT __attribute__((visibility("default")))

// The next definition of a function, found once.
#define REAL(name)                                     \
  static __typeof__(&name) real;                       \
  if (!real) *(void**)&real = dlsym(RTLD_NEXT, #name); \
  if (!real) abort()

// The C library's checked forms, which its headers keep to themselves.
int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
int __openat_2(int folder, const char* path, int flags);
int __openat64_2(int folder, const char* path, int flags);
char* __realpath_chk(const char* path, char* resolved, size_t size);
ssize_t __readlink_chk(const char* path, char* target, size_t size, size_t room);
char* __getcwd_chk(char* path, size_t size, size_t room);

typedef struct {
  char text[PATH_MAX];
} Room;

typedef struct {
  const char* fixed;
  const char* private_name;
} Place;

// The first that fits counts.
static const Place kPlaces[] = {
    {"/opt/ZunaFcEsxcliPlugin/tmp", "staging"},
    {"/opt", "opt"},
    {"/var/tmp", "var_tmp"},
    {"/tmp", "tmp"},
};
enum { kPlaceCount = sizeof kPlaces / sizeof *kPlaces };

static int IsBelow(const char* path, const char* folder, size_t length) {
  return strncmp(path, folder, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

static int IsKept(const char* path) {
  const char* kept = getenv("PRIVATE_PATHS_KEPT");
  while (kept && *kept) {
    const size_t length = strcspn(kept, "\n");
    if (length > 0 && IsBelow(path, kept, length)) return 1;
    kept += length + (kept[length] == '\n');
  }
  return 0;
}

// The path to use instead of this one: itself, or one in the room.
static const char* Rewrite(const char* path, Room* room) {
  const char* folder = getenv("PRIVATE_PATHS_FOLDER");
  if (!path || path[0] != '/' || !folder) return path;
  for (int i = 0; i < kPlaceCount; ++i) {
    const size_t length = strlen(kPlaces[i].fixed);
    if (!IsBelow(path, kPlaces[i].fixed, length)) continue;
    if (IsKept(path)) return path;
    const int size =
        snprintf(room->text, sizeof room->text, "%s/%s%s", folder, kPlaces[i].private_name, path + length);
    return size >= 0 && (size_t)size < sizeof room->text ? room->text : path;
  }
  return path;
}

// Turns a private path in this buffer back into the fixed one, which is never longer than the folder's.
static void Restore(char* path) {
  const char* folder = getenv("PRIVATE_PATHS_FOLDER");
  const size_t folder_length = folder ? strlen(folder) : 0;
  if (!folder || !IsBelow(path, folder, folder_length)) return;
  for (int i = 0; i < kPlaceCount; ++i) {
    const char* rest = path + folder_length + 1;
    const size_t length = strlen(kPlaces[i].private_name);
    if (path[folder_length] != '/' || !IsBelow(rest, kPlaces[i].private_name, length)) continue;
    const size_t fixed_length = strlen(kPlaces[i].fixed);
    if (fixed_length > folder_length + 1 + length) return;
    memmove(path + fixed_length, rest + length, strlen(rest + length) + 1);
    memcpy(path, kPlaces[i].fixed, fixed_length);
    return;
  }
}

// For a program that reads the names of another one, which are private where the kernel sees them.
EXPORT void PrivatePathsRestore(char* path) {
  Restore(path);
}

static int IsBelowVariable(const char* path, const char* variable) {
  const char* folder = getenv(variable);
  return folder && path && IsBelow(path, folder, strlen(folder)) && !IsKept(path);
}

// Whether a change of this path has to fail; sets errno then.
static int IsReadOnly(const char* path) {
  if (!IsBelowVariable(path, "PRIVATE_PATHS_READ_ONLY")) return 0;
  errno = EROFS;
  return 1;
}

// What is there may be opened for reading alone; what is not there may not be made.
static int RefusesOpen(const char* path, int flags) {
  const int changes = flags & (O_WRONLY | O_RDWR | O_TRUNC);
  if (changes) return IsReadOnly(path);
  Room room;
  return (flags & O_CREAT) && syscall(SYS_access, Rewrite(path, &room), F_OK) != 0 && IsReadOnly(path);
}

static int RefusesStream(const char* path, const char* mode) {
  return (mode[0] != 'r' || strchr(mode, '+')) && IsReadOnly(path);
}

// An open file of a full folder: it is there, and what is written to it fails.
static int Filled(const char* path, int file) {
  if (file < 0 || !IsBelowVariable(path, "PRIVATE_PATHS_FULL")) return file;
  if ((fcntl(file, F_GETFL) & O_ACCMODE) == O_RDONLY) return file;
  const int closes = fcntl(file, F_GETFD) & FD_CLOEXEC;
  const long full = syscall(SYS_open, "/dev/full", O_RDWR | O_CLOEXEC, 0);
  if (full < 0 || dup3((int)full, file, closes ? O_CLOEXEC : 0) < 0) abort();
  close((int)full);
  return file;
}

static FILE* FilledStream(const char* path, FILE* stream) {
  if (stream) Filled(path, fileno(stream));
  return stream;
}

// Whether an opening has a mode after its flags.
static int HasMode(int flags) {
  return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
}

#define MODE_AFTER(flags)        \
  mode_t mode = 0;               \
  if (HasMode(flags)) {          \
    va_list more;                \
    va_start(more, flags);       \
    mode = va_arg(more, mode_t); \
    va_end(more);                \
  }

#define OPEN(name)                                    \
  EXPORT int name(const char* path, int flags, ...) { \
    REAL(name);                                       \
    MODE_AFTER(flags)                                 \
    Room room;                                        \
    if (RefusesOpen(path, flags)) return -1;          \
    return Filled(path, real(THERE, flags, mode));    \
  }
OPEN(open)
OPEN(open64)

#define OPENAT(name)                                              \
  EXPORT int name(int folder, const char* path, int flags, ...) { \
    REAL(name);                                                   \
    MODE_AFTER(flags)                                             \
    Room room;                                                    \
    if (RefusesOpen(path, flags)) return -1;                      \
    return Filled(path, real(folder, THERE, flags, mode));        \
  }
OPENAT(openat)
OPENAT(openat64)

#define FOPEN(name)                                       \
  EXPORT FILE* name(const char* path, const char* mode) { \
    REAL(name);                                           \
    Room room;                                            \
    if (RefusesStream(path, mode)) return NULL;           \
    return FilledStream(path, real(THERE, mode));         \
  }
FOPEN(fopen)
FOPEN(fopen64)

// WRAP(result, name, refusal, refuses, (parameters), (arguments)): a function of one path. `refuses` is the
// condition on which it fails, with `refusal`.
#define WRAP(result, name, refusal, refuses, parameters, arguments) \
  EXPORT result name parameters {                                   \
    REAL(name);                                                     \
    Room room;                                                      \
    if (refuses) return refusal;                                    \
    return real arguments;                                          \
  }
#define READS(result, name, parameters, arguments) WRAP(result, name, (result)0, 0, parameters, arguments)
#define CHANGES(name, parameters, arguments) WRAP(int, name, -1, IsReadOnly(path), parameters, arguments)

WRAP(int, __open_2, -1, RefusesOpen(path, flags), (const char* path, int flags), (THERE, flags))
WRAP(int, __open64_2, -1, RefusesOpen(path, flags), (const char* path, int flags), (THERE, flags))
WRAP(int, __openat_2, -1, RefusesOpen(path, flags), (int folder, const char* path, int flags),
     (folder, THERE, flags))
WRAP(int, __openat64_2, -1, RefusesOpen(path, flags), (int folder, const char* path, int flags),
     (folder, THERE, flags))
WRAP(FILE*, freopen, NULL, RefusesStream(path, mode), (const char* path, const char* mode, FILE* stream),
     (THERE, mode, stream))
WRAP(FILE*, freopen64, NULL, RefusesStream(path, mode), (const char* path, const char* mode, FILE* stream),
     (THERE, mode, stream))
WRAP(int, access, -1, (how & W_OK) && IsReadOnly(path), (const char* path, int how), (THERE, how))
WRAP(int, eaccess, -1, (how & W_OK) && IsReadOnly(path), (const char* path, int how), (THERE, how))
WRAP(int, euidaccess, -1, (how & W_OK) && IsReadOnly(path), (const char* path, int how), (THERE, how))
WRAP(int, faccessat, -1, (how & W_OK) && IsReadOnly(path), (int folder, const char* path, int how, int flags),
     (folder, THERE, how, flags))

READS(int, stat, (const char* path, struct stat* status), (THERE, status))
READS(int, stat64, (const char* path, struct stat64* status), (THERE, status))
READS(int, lstat, (const char* path, struct stat* status), (THERE, status))
READS(int, lstat64, (const char* path, struct stat64* status), (THERE, status))
READS(int, fstatat, (int folder, const char* path, struct stat* status, int flags),
      (folder, THERE, status, flags))
READS(int, fstatat64, (int folder, const char* path, struct stat64* status, int flags),
      (folder, THERE, status, flags))
READS(int, statx, (int folder, const char* path, int flags, unsigned mask, struct statx* status),
      (folder, THERE, flags, mask, status))
READS(int, statfs, (const char* path, struct statfs* status), (THERE, status))
READS(int, statfs64, (const char* path, struct statfs64* status), (THERE, status))
READS(int, statvfs, (const char* path, struct statvfs* status), (THERE, status))
READS(int, statvfs64, (const char* path, struct statvfs64* status), (THERE, status))
READS(ssize_t, getxattr, (const char* path, const char* name, void* value, size_t size),
      (THERE, name, value, size))
READS(ssize_t, lgetxattr, (const char* path, const char* name, void* value, size_t size),
      (THERE, name, value, size))
READS(ssize_t, listxattr, (const char* path, char* list, size_t size), (THERE, list, size))
READS(ssize_t, llistxattr, (const char* path, char* list, size_t size), (THERE, list, size))
READS(DIR*, opendir, (const char* path), (THERE))
READS(int, chdir, (const char* path), (THERE))
READS(int, execve, (const char* path, char* const* words, char* const* variables), (THERE, words, variables))
READS(int, execv, (const char* path, char* const* words), (THERE, words))
READS(int, execvp, (const char* path, char* const* words), (THERE, words))

CHANGES(creat, (const char* path, mode_t mode), (THERE, mode))
CHANGES(creat64, (const char* path, mode_t mode), (THERE, mode))
CHANGES(mkdir, (const char* path, mode_t mode), (THERE, mode))
CHANGES(mkdirat, (int folder, const char* path, mode_t mode), (folder, THERE, mode))
CHANGES(mkfifo, (const char* path, mode_t mode), (THERE, mode))
CHANGES(mkfifoat, (int folder, const char* path, mode_t mode), (folder, THERE, mode))
CHANGES(mknod, (const char* path, mode_t mode, dev_t device), (THERE, mode, device))
CHANGES(mknodat, (int folder, const char* path, mode_t mode, dev_t device), (folder, THERE, mode, device))
CHANGES(rmdir, (const char* path), (THERE))
CHANGES(unlink, (const char* path), (THERE))
CHANGES(unlinkat, (int folder, const char* path, int flags), (folder, THERE, flags))
CHANGES(remove, (const char* path), (THERE))
CHANGES(chmod, (const char* path, mode_t mode), (THERE, mode))
CHANGES(fchmodat, (int folder, const char* path, mode_t mode, int flags), (folder, THERE, mode, flags))
CHANGES(chown, (const char* path, uid_t user, gid_t group), (THERE, user, group))
CHANGES(lchown, (const char* path, uid_t user, gid_t group), (THERE, user, group))
CHANGES(fchownat, (int folder, const char* path, uid_t user, gid_t group, int flags),
        (folder, THERE, user, group, flags))
CHANGES(truncate, (const char* path, off_t size), (THERE, size))
CHANGES(truncate64, (const char* path, off64_t size), (THERE, size))
CHANGES(utime, (const char* path, const struct utimbuf* times), (THERE, times))
CHANGES(utimes, (const char* path, const struct timeval times[2]), (THERE, times))
CHANGES(utimensat, (int folder, const char* path, const struct timespec times[2], int flags),
        (folder, THERE, times, flags))

// Two paths. The target of a symbolic link is one too: the kernel follows it without this library.
#define CHANGES_TWO(name, parameters, arguments)             \
  EXPORT int name parameters {                               \
    REAL(name);                                              \
    Room room;                                               \
    Room room_of_new;                                        \
    if (IsReadOnly(path) || IsReadOnly(new_path)) return -1; \
    return real arguments;                                   \
  }
#define NEW_THERE Rewrite(new_path, &room_of_new)
CHANGES_TWO(rename, (const char* path, const char* new_path), (THERE, NEW_THERE))
CHANGES_TWO(renameat, (int folder, const char* path, int new_folder, const char* new_path),
            (folder, THERE, new_folder, NEW_THERE))
CHANGES_TWO(renameat2, (int folder, const char* path, int new_folder, const char* new_path, unsigned flags),
            (folder, THERE, new_folder, NEW_THERE, flags))
CHANGES_TWO(link, (const char* path, const char* new_path), (THERE, NEW_THERE))
CHANGES_TWO(linkat, (int folder, const char* path, int new_folder, const char* new_path, int flags),
            (folder, THERE, new_folder, NEW_THERE, flags))

EXPORT int symlink(const char* target, const char* new_path) {
  REAL(symlink);
  Room room;
  Room room_of_new;
  if (IsReadOnly(new_path)) return -1;
  return real(Rewrite(target, &room), NEW_THERE);
}

EXPORT int symlinkat(const char* target, int folder, const char* new_path) {
  REAL(symlinkat);
  Room room;
  Room room_of_new;
  if (IsReadOnly(new_path)) return -1;
  return real(Rewrite(target, &room), folder, NEW_THERE);
}

// The first bytes of a link's target, as the caller's buffer has room for them.
static ssize_t RestoredTarget(Room* found, ssize_t length, char* target, size_t size) {
  if (length < 0) return length;
  found->text[length] = '\0';
  Restore(found->text);
  const size_t restored = strlen(found->text);
  const size_t copied = restored < size ? restored : size;
  memcpy(target, found->text, copied);
  return (ssize_t)copied;
}

EXPORT ssize_t readlink(const char* path, char* target, size_t size) {
  REAL(readlink);
  Room room;
  Room found;
  return RestoredTarget(&found, real(THERE, found.text, sizeof found.text - 1), target, size);
}

EXPORT ssize_t __readlink_chk(const char* path, char* target, size_t size, size_t room) {
  if (size > room) abort();
  return readlink(path, target, size);
}

EXPORT ssize_t readlinkat(int folder, const char* path, char* target, size_t size) {
  REAL(readlinkat);
  Room room;
  Room found;
  return RestoredTarget(&found, real(folder, THERE, found.text, sizeof found.text - 1), target, size);
}

EXPORT char* realpath(const char* path, char* resolved) {
  REAL(realpath);
  Room room;
  const char* there = THERE;
  char* found = real(there, resolved);
  if (found && there != path) Restore(found);
  return found;
}

EXPORT char* __realpath_chk(const char* path, char* resolved, size_t size) {
  if (size < PATH_MAX) abort();
  return realpath(path, resolved);
}

EXPORT char* canonicalize_file_name(const char* path) {
  return realpath(path, NULL);
}

EXPORT char* getcwd(char* path, size_t size) {
  REAL(getcwd);
  char* found = real(path, size);
  if (found) Restore(found);
  return found;
}

EXPORT char* __getcwd_chk(char* path, size_t size, size_t room) {
  if (size > room) abort();
  return getcwd(path, size);
}

// The made-up letters that end a name, put into the caller's template.
static void CopyLetters(char* pattern, const char* made) {
  enum { kLetters = 6 };
  if (made != pattern) memcpy(pattern + strlen(pattern) - kLetters, made + strlen(made) - kLetters, kLetters);
}

// FROM_TEMPLATE(name, (parameters), (further arguments)): opens a file of a made-up name.
#define FROM_TEMPLATE(name, parameters, ...)                 \
  EXPORT int name parameters {                               \
    REAL(name);                                              \
    Room room;                                               \
    if (IsReadOnly(path)) return -1;                         \
    char* there = (char*)(uintptr_t)THERE;                   \
    const int made = real(there __VA_OPT__(, ) __VA_ARGS__); \
    if (made >= 0) CopyLetters(path, there);                 \
    return Filled(path, made);                               \
  }
FROM_TEMPLATE(mkstemp, (char* path))
FROM_TEMPLATE(mkstemp64, (char* path))
FROM_TEMPLATE(mkostemp, (char* path, int flags), flags)
FROM_TEMPLATE(mkostemp64, (char* path, int flags), flags)

EXPORT char* mkdtemp(char* path) {
  REAL(mkdtemp);
  Room room;
  if (IsReadOnly(path)) return NULL;
  char* there = (char*)(uintptr_t)THERE;
  if (!real(there)) return NULL;
  CopyLetters(path, there);
  return path;
}

// A mount would be one of the machine's own folders.
EXPORT int mount(const char* source, const char* target, const char* type, unsigned long flags,
                 const void* data) {
  (void)source, (void)target, (void)type, (void)flags, (void)data;
  errno = EPERM;
  return -1;
}

EXPORT int umount(const char* target) {
  (void)target;
  errno = EPERM;
  return -1;
}

EXPORT int umount2(const char* target, int flags) {
  (void)flags;
  return umount(target);
}

// The program enters the kernel through this for `stat`, which old C libraries lack.
EXPORT long syscall(long number, ...) {
  REAL(syscall);
  long words[6];
  va_list more;
  va_start(more, number);
  for (int i = 0; i < 6; ++i) words[i] = va_arg(more, long);
  va_end(more);
  Room room;
  if (number == SYS_stat || number == SYS_lstat) {
    words[0] = (long)(intptr_t)Rewrite((const char*)words[0], &room);
  }
  return real(number, words[0], words[1], words[2], words[3], words[4], words[5]);
}
