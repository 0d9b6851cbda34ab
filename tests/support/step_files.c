// Runs a program, follows each system call of it and its children that changes files below some folders, and
// ends it at one of them:
//
//   step_files [--log FILE] [--end-at NUMBER] [--signal NUMBER] FOLDER... -- PROGRAM [WORD]...
//
// The steps count from 1; the program's own exit is the last. With --end-at everything is killed before the
// step with this number is made. With --signal the process that makes the step gets this signal while it
// makes it, and goes on as it answers it. The exit is the program's own: its status, or its signal.
//
// FILE gets one line for each step, with tabs between its fields: what was done, the result (0, or a negative
// error), the path, then for `rename` and `link` the new path, and for `make` (a file that was not there),
// `cut` (one that was there and is emptied) and `write` the whole content that the file has now, in
// hexadecimal. The other steps are `open` (for writing, of a file that is there), `sync`, `unlink`, `mkdir`,
// `rmdir`, `symlink`, `chmod`, `close` (of what was open for writing) and `exit`. A call that could change a
// file and is not known here ends the run with status 125.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/ptrace.h>
#include <signal.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

// The C library's own header of this name and the kernel's do not go together.
long ptrace(int request, ...);

enum { kOwnFault = 125, kMaxTracees = 64, kMaxFolders = 16 };

typedef struct {
  pid_t process;
  int in_call;  // between a step's entry and its exit
  const char* what;
  char path[PATH_MAX];
  char other[PATH_MAX];
  int descriptor;  // whose content the step changes; kFromResult: the one that it opens
} Tracee;

enum { kNoDescriptor = -1, kFromResult = -2 };

// Of private_paths.c, where that is preloaded: turns a private path back into the fixed one.
static void (*restore_path)(char* path);

static const char* folders[kMaxFolders];
static int folder_count;
static Tracee tracees[kMaxTracees];
static FILE* steps_log;
static long steps;
static long end_at;
static int end_signal = SIGKILL;

__attribute__((noreturn, format(printf, 1, 2))) static void Die(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  fprintf(stderr, "step_files: ");
  vfprintf(stderr, format, arguments);
  fprintf(stderr, "\n");
  va_end(arguments);
  exit(kOwnFault);
}

static int IsBelow(const char* path) {
  for (int i = 0; i < folder_count; ++i) {
    size_t length = strlen(folders[i]);
    if (strncmp(path, folders[i], length) == 0 && (path[length] == '/' || path[length] == '\0')) return 1;
  }
  return 0;
}

static void ReadLink(pid_t process, const char* which, char* path) {
  char place[64];
  snprintf(place, sizeof place, "/proc/%d/%s", process, which);
  ssize_t length = readlink(place, path, PATH_MAX - 1);
  path[length > 0 ? length : 0] = '\0';
}

static void PathOfDescriptor(pid_t process, int descriptor, char* path) {
  char which[32];
  snprintf(which, sizeof which, "fd/%d", descriptor);
  ReadLink(process, which, path);
}

// The path at an address of the process, from its root on.
static void ReadPath(pid_t process, uint64_t address, int folder, char* path) {
  char place[64];
  char name[PATH_MAX] = "";
  snprintf(place, sizeof place, "/proc/%d/mem", process);
  int memory = open(place, O_RDONLY | O_CLOEXEC);
  if (memory < 0) Die("cannot open %s", place);
  for (size_t i = 0; i + 1 < sizeof name; ++i) {
    if (pread(memory, name + i, 1, (off_t)(address + i)) != 1 || name[i] == '\0') break;
  }
  close(memory);
  char start[PATH_MAX] = "";
  if (name[0] != '/') {
    if (folder == AT_FDCWD) {
      ReadLink(process, "cwd", start);
    } else {
      PathOfDescriptor(process, folder, start);
    }
  }
  // "./" at the front, and a slash at the end, mean nothing.
  const char* rest = strncmp(name, "./", 2) == 0 ? name + 2 : name;
  if (snprintf(path, PATH_MAX, "%s%s%s", start, name[0] == '/' ? "" : "/", rest) >= PATH_MAX)
    Die("long path");
  size_t length = strlen(path);
  while (length > 1 && path[length - 1] == '/') path[--length] = '\0';
  if (restore_path) restore_path(path);
}

static int WritesTo(pid_t process, int descriptor) {
  char place[64];
  char line[128];
  unsigned flags = 0;
  snprintf(place, sizeof place, "/proc/%d/fdinfo/%d", process, descriptor);
  FILE* info = fopen(place, "re");
  if (!info) return 0;
  while (fgets(line, sizeof line, info)) {
    if (strncmp(line, "flags:", 6) == 0) flags = (unsigned)strtoul(line + 6, NULL, 8);
  }
  fclose(info);
  return (flags & O_ACCMODE) != O_RDONLY;
}

static void OnDescriptor(Tracee* tracee, const char* what, int descriptor, int changes) {
  PathOfDescriptor(tracee->process, descriptor, tracee->path);
  if (!IsBelow(tracee->path)) return;
  tracee->what = what;
  tracee->descriptor = changes ? descriptor : kNoDescriptor;
}

static void OnPath(Tracee* tracee, const char* what, int folder, uint64_t name) {
  ReadPath(tracee->process, name, folder, tracee->path);
  if (IsBelow(tracee->path)) tracee->what = what;
}

static void OnTwoPaths(Tracee* tracee, const char* what, int from_folder, uint64_t from, int to_folder,
                       uint64_t to) {
  ReadPath(tracee->process, from, from_folder, tracee->path);
  ReadPath(tracee->process, to, to_folder, tracee->other);
  if (IsBelow(tracee->path) != IsBelow(tracee->other)) Die("%s into or out of the folders", what);
  if (IsBelow(tracee->path)) tracee->what = what;
}

static void OnOpen(Tracee* tracee, int folder, uint64_t name, uint64_t flags) {
  if ((flags & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC)) == 0) return;
  ReadPath(tracee->process, name, folder, tracee->path);
  if (!IsBelow(tracee->path)) return;
  struct stat there;
  if (stat(tracee->path, &there) != 0) {
    tracee->what = "make";
  } else if (!S_ISREG(there.st_mode)) {
    return;  // a folder or a pipe
  } else {
    tracee->what = flags & O_TRUNC ? "cut" : "open";
  }
  tracee->descriptor = kFromResult;
}

// Fills in what the call is about to do; `what` stays null for a call that is no step.
static void Enter(Tracee* tracee, uint64_t number, const uint64_t* arguments) {
  const uint64_t* a = arguments;
  const int first = (int)a[0];
  tracee->what = NULL;
  tracee->descriptor = kNoDescriptor;
  tracee->other[0] = '\0';
  switch (number) {
#ifdef SYS_open
    case SYS_open:
      OnOpen(tracee, AT_FDCWD, a[0], a[1]);
      break;
    case SYS_creat:
      OnOpen(tracee, AT_FDCWD, a[0], O_CREAT | O_WRONLY | O_TRUNC);
      break;
    case SYS_rename:
      OnTwoPaths(tracee, "rename", AT_FDCWD, a[0], AT_FDCWD, a[1]);
      break;
    case SYS_link:
      OnTwoPaths(tracee, "link", AT_FDCWD, a[0], AT_FDCWD, a[1]);
      break;
    case SYS_unlink:
      OnPath(tracee, "unlink", AT_FDCWD, a[0]);
      break;
    case SYS_mkdir:
      OnPath(tracee, "mkdir", AT_FDCWD, a[0]);
      break;
    case SYS_rmdir:
      OnPath(tracee, "rmdir", AT_FDCWD, a[0]);
      break;
    case SYS_symlink:
      OnPath(tracee, "symlink", AT_FDCWD, a[1]);
      break;
    case SYS_chmod:
      OnPath(tracee, "chmod", AT_FDCWD, a[0]);
      break;
#endif
    case SYS_openat:
      OnOpen(tracee, first, a[1], a[2]);
      break;
    case SYS_renameat:
      OnTwoPaths(tracee, "rename", first, a[1], (int)a[2], a[3]);
      break;
    case SYS_renameat2:
      if ((a[4] & ~(uint64_t)RENAME_NOREPLACE) != 0) Die("renameat2 with flags");
      OnTwoPaths(tracee, "rename", first, a[1], (int)a[2], a[3]);
      break;
    case SYS_linkat:
      OnTwoPaths(tracee, "link", first, a[1], (int)a[2], a[3]);
      break;
    case SYS_unlinkat:
      OnPath(tracee, a[2] & AT_REMOVEDIR ? "rmdir" : "unlink", first, a[1]);
      break;
    case SYS_mkdirat:
      OnPath(tracee, "mkdir", first, a[1]);
      break;
    case SYS_symlinkat:
      OnPath(tracee, "symlink", (int)a[1], a[2]);
      break;
    case SYS_fchmodat:
      OnPath(tracee, "chmod", first, a[1]);
      break;
    case SYS_fchmod:
      OnDescriptor(tracee, "chmod", first, 0);
      break;
    case SYS_write:
    case SYS_writev:
    case SYS_pwrite64:
    case SYS_pwritev:
    case SYS_ftruncate:
    case SYS_fallocate:
    case SYS_sendfile:
      OnDescriptor(tracee, "write", first, 1);
      break;
    case SYS_copy_file_range:
      OnDescriptor(tracee, "write", (int)a[2], 1);
      break;
    case SYS_fsync:
    case SYS_fdatasync:
      OnDescriptor(tracee, "sync", first, 0);
      break;
    case SYS_close:
      OnDescriptor(tracee, "close", first, 0);
      if (tracee->what && !WritesTo(tracee->process, first)) tracee->what = NULL;
      break;
    case SYS_mmap:
      if ((a[2] & PROT_WRITE) == 0 || (a[3] & MAP_SHARED) == 0 || (a[3] & MAP_ANONYMOUS) != 0) break;
      OnDescriptor(tracee, "mmap", (int)a[4], 0);
      if (tracee->what) Die("mmap for writing of %s", tracee->path);
      break;
    case SYS_truncate:
    case SYS_sync:
    case SYS_syncfs:
    case SYS_mknodat:
#ifdef SYS_openat2
    case SYS_openat2:
#endif
      Die("system call %lu is not known here", (unsigned long)number);
    case SYS_exit_group:
      if (tracee != &tracees[0]) break;
      tracee->what = "exit";
      tracee->path[0] = '\0';
      break;
    default:
      break;
  }
}

static void LogContent(pid_t process, int descriptor) {
  char place[64];
  unsigned char block[4096];
  ssize_t count;
  snprintf(place, sizeof place, "/proc/%d/fd/%d", process, descriptor);
  int file = open(place, O_RDONLY | O_CLOEXEC);
  if (file < 0) Die("cannot read what %s is: %s", place, strerror(errno));
  while ((count = read(file, block, sizeof block)) > 0) {
    for (ssize_t i = 0; i < count; ++i) fprintf(steps_log, "%02x", block[i]);
  }
  close(file);
}

static void Leave(Tracee* tracee, int64_t result, int failed) {
  if (!steps_log) return;
  if (!failed && tracee->descriptor == kFromResult) {
    tracee->descriptor = (int)result;
    PathOfDescriptor(tracee->process, tracee->descriptor, tracee->path);  // past symbolic links
  }
  fprintf(steps_log, "%s\t%ld\t%s", tracee->what, failed ? (long)result : 0L, tracee->path);
  if (tracee->other[0] != '\0') fprintf(steps_log, "\t%s", tracee->other);
  if (!failed && tracee->descriptor >= 0) {
    fputc('\t', steps_log);
    LogContent(tracee->process, tracee->descriptor);
  }
  fputc('\n', steps_log);
}

__attribute__((noreturn)) static void KillAll(void) {
  for (int i = 0; i < kMaxTracees; ++i) {
    if (tracees[i].process != 0) kill(tracees[i].process, SIGKILL);
  }
  while (waitpid(-1, NULL, __WALL) > 0 || errno == EINTR) {
  }
  if (steps_log) fclose(steps_log);
  kill(getpid(), SIGKILL);
  _exit(kOwnFault);
}

static void OnCall(Tracee* tracee) {
  struct ptrace_syscall_info info;
  if (ptrace(PTRACE_GET_SYSCALL_INFO, tracee->process, sizeof info, &info) <= 0)
    Die("cannot see a system call");
  if (info.op == PTRACE_SYSCALL_INFO_ENTRY) {
    Enter(tracee, info.entry.nr, (const uint64_t*)info.entry.args);
    if (!tracee->what) return;
    ++steps;
    if (strcmp(tracee->what, "exit") == 0) Leave(tracee, 0, 0);
    if (steps != end_at) return;
    if (end_signal == SIGKILL) KillAll();
    kill(tracee->process, end_signal);
  } else if (info.op == PTRACE_SYSCALL_INFO_EXIT && tracee->what) {
    Leave(tracee, info.exit.rval, info.exit.is_error);
    tracee->what = NULL;
  }
}

static Tracee* Find(pid_t process) {
  for (int i = 0; i < kMaxTracees; ++i) {
    if (tracees[i].process == process) return &tracees[i];
  }
  return NULL;
}

// Follows all processes until the first one has ended; gives its wait status.
static int Follow(pid_t program) {
  int status;
  pid_t process;
  while ((process = waitpid(-1, &status, __WALL)) > 0) {
    Tracee* tracee = Find(process);
    if (WIFEXITED(status) || WIFSIGNALED(status)) {
      if (process == program) return status;
      if (tracee) tracee->process = 0;
      continue;
    }
    int signal = WSTOPSIG(status);
    if (!tracee) {  // a new child: stopped once before it runs
      tracee = Find(0);
      if (!tracee) Die("too many processes");
      tracee->process = process;
      tracee->what = NULL;
      if (signal == SIGSTOP) signal = 0;
    } else if (signal == (SIGTRAP | 0x80)) {
      OnCall(tracee);
      signal = 0;
    } else if (status >> 16 != 0) {  // an event: a child was made, another program begins
      signal = 0;
    }
    ptrace(PTRACE_SYSCALL, process, 0, signal);
  }
  Die("the program is lost");
}

static pid_t Start(char** words) {
  pid_t program = fork();
  if (program < 0) Die("cannot fork");
  if (program == 0) {
    // Whoever runs the tests in the background may have them ignored.
    for (int number = 1; number < NSIG; ++number) signal(number, SIG_DFL);
    if (ptrace(PTRACE_TRACEME, 0, 0, 0) != 0) _exit(kOwnFault);
    raise(SIGSTOP);
    execvp(words[0], words);
    fprintf(stderr, "step_files: cannot run %s: %s\n", words[0], strerror(errno));
    _exit(kOwnFault);
  }
  int status;
  if (waitpid(program, &status, __WALL) != program || !WIFSTOPPED(status))
    Die("no process can be followed here");
  const long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACEEXEC | PTRACE_O_TRACEFORK |
                       PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE;
  if (ptrace(PTRACE_SETOPTIONS, program, 0, options) != 0) Die("no process can be followed here");
  tracees[0].process = program;
  ptrace(PTRACE_SYSCALL, program, 0, 0);
  return program;
}

int main(int argc, char** argv) {
  int at = 1;
  *(void**)&restore_path = dlsym(RTLD_DEFAULT, "PrivatePathsRestore");
  for (; at < argc && strcmp(argv[at], "--") != 0; ++at) {
    if (strcmp(argv[at], "--log") == 0 && at + 1 < argc) {
      steps_log = fopen(argv[++at], "we");
      if (!steps_log) Die("cannot write %s", argv[at]);
    } else if (strcmp(argv[at], "--end-at") == 0 && at + 1 < argc) {
      end_at = strtol(argv[++at], NULL, 10);
    } else if (strcmp(argv[at], "--signal") == 0 && at + 1 < argc) {
      end_signal = (int)strtol(argv[++at], NULL, 10);
    } else if (folder_count < kMaxFolders) {
      folders[folder_count++] = argv[at];
    }
  }
  if (at + 1 >= argc || folder_count == 0) Die("which folders, and which program?");

  int status = Follow(Start(argv + at + 1));
  if (steps_log && fclose(steps_log) != 0) Die("cannot write the log");
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  const struct rlimit no_core = {0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  signal(WTERMSIG(status), SIG_DFL);
  kill(getpid(), WTERMSIG(status));
  return kOwnFault;
}
