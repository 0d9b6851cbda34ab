// Preloaded into a program: a server that runs the program again and again, each time in a fork made right
// before its constructors and main(), and makes chosen resources give out. docs: README.md of this folder.
//
// EXHAUST_REQUESTS and EXHAUST_REPLIES are descriptors. A request is a struct Request, then standard input,
// words and environment of the run; the reply is a struct Reply, then standard output, standard error and the
// events, which refer to names that come first of all. An event is one use of a watched resource: a request
// for memory, or a system call.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <elf.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <link.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

enum { kMostFunctions = 512, kMostFrames = 64, kMostEvents = 1 << 20, kMostCallers = 24, kSecondsToEnd = 20 };
enum Watch { kWatchNothing, kWatchMemory, kWatchCalls };
enum Owner { kProgram = 1, kLibrary = 2 };
enum Fault { kNoFault, kFails, kShort };

// 64 bits each, so that Python packs it with one letter.
struct Request {
  int64_t watch;
  int64_t owners;     // whose events count: a sum of Owner
  int64_t at;         // the number of the event that fails, from 1 among those that count; 0: none
  int64_t onward;     // all that follow fail too
  int64_t fault;      // of a system call
  int64_t error;      // the errno
  int64_t only;       // number of the system call that counts; -1: each
  int64_t files;      // RLIMIT_NOFILE; these limits: -1 for none
  int64_t space;      // RLIMIT_AS, bytes above what is mapped at the start
  int64_t stack;      // RLIMIT_STACK
  int64_t file_size;  // RLIMIT_FSIZE
  int64_t closed;     // a sum of 1, 2, 4: standard input, output, error are closed
  int64_t warm;       // the device library is started once for all runs
  int64_t callers;    // note who asked at the failing event
  int64_t input_bytes, words, word_bytes, variables, variable_bytes;
};

struct Reply {
  int64_t status;   // of wait(); -1: no fork
  int64_t counted;  // events that count
  int64_t failed;   // how many of them failed
  int64_t last;     // index of the first event that failed; -1: none
  int64_t output_bytes, error_bytes, events, callers;
};

struct Event {
  uint32_t what;  // memory: 0 malloc, 1 calloc, 2 realloc, 3 aligned; else the number of the system call
  uint32_t owner;
  uint32_t via;     // function of another library that the program was in, an index of the names; 0: none
  uint32_t number;  // among those that count
  int64_t size;     // bytes; of a system call its first argument, of an opening its flags
};

struct Shared {
  int64_t events, counted, failed, first_failed, callers;
  uintptr_t caller[kMostCallers];
  struct Event event[kMostEvents];
};

static struct Shared* shared;
static struct Request request;
static int is_child;

// --- calls of the program into other libraries -------------------------------------------------------------

// The program's calls go through these: the table of its imported functions is replaced by thunks, which note
// where the program is. Called by name from the assembler below.
uintptr_t exhaust_real[kMostFunctions];
struct {
  uintptr_t back, function;
} exhaust_frames[kMostFrames];
uintptr_t exhaust_depth;
static const char* names[kMostFunctions] = {""};
static uint8_t is_library[kMostFunctions];
static uint32_t functions = 1;
static uintptr_t text_start, text_end, text_base;
static void* stack_start;

// On entry: the number of the function, below it the return address, below that the call's arguments. Keeps
// all registers that carry arguments or results.
__asm__(
    ".text\n"
    ".type exhaust_enter, @function\n"
    "exhaust_enter:\n"
    "  popq %r11\n"
    "  popq %r10\n"
    "  pushq %rax\n"
    "  pushq %rcx\n"
    "  movq exhaust_depth@GOTPCREL(%rip), %rax\n"
    "  movq (%rax), %rcx\n"
    "  incq (%rax)\n"
    "  shlq $4, %rcx\n"
    "  movq exhaust_frames@GOTPCREL(%rip), %rax\n"
    "  movq %r10, (%rax,%rcx)\n"
    "  movq %r11, 8(%rax,%rcx)\n"
    "  movq exhaust_real@GOTPCREL(%rip), %rax\n"
    "  movq (%rax,%r11,8), %r11\n"
    "  popq %rcx\n"
    "  popq %rax\n"
    "  call *%r11\n"
    "  movq exhaust_depth@GOTPCREL(%rip), %r10\n"
    "  decq (%r10)\n"
    "  movq (%r10), %rcx\n"
    "  shlq $4, %rcx\n"
    "  movq exhaust_frames@GOTPCREL(%rip), %r10\n"
    "  pushq (%r10,%rcx)\n"
    "  ret\n"
    ".size exhaust_enter, .-exhaust_enter\n");
extern void exhaust_enter(void) __attribute__((visibility("hidden")));

static int Begins(const char* text, const char* with) {
  return strncmp(text, with, strlen(with)) == 0;
}

// Functions that use nothing, and those that do not return to where they were called.
static int IsOfInterest(const char* name) {
  static const char* const kOthers[] = {"mem",    "str",       "is",      "__memcpy", "__errno", "__stack",
                                        "__cxa",  "__libc",    "_ITM",    "__gmon",   "_exit",   "abort",
                                        "malloc", "calloc",    "realloc", "free",     "sig",     "_Unwind",
                                        "_Z",     "__pthread", "pthread"};
  for (size_t i = 0; i < sizeof kOthers / sizeof *kOthers; ++i) {
    if (Begins(name, kOthers[i])) return 0;
  }
  return 1;
}

static void Die(const char* what) {
  fprintf(stderr, "exhaust: %s: %s\n", what, strerror(errno));
  _exit(125);
}

// Code that pushes the function's number and enters.
static void WriteThunk(uint8_t* code, uint32_t function) {
  const uintptr_t enter = (uintptr_t)&exhaust_enter;
  code[0] = 0x68;  // push
  memcpy(code + 1, &function, 4);
  code[5] = 0x49;  // movabs to r11
  code[6] = 0xBB;
  memcpy(code + 7, &enter, 8);
  code[15] = 0x41;  // jmp *%r11
  code[16] = 0xFF;
  code[17] = 0xE3;
}

enum { kThunkBytes = 32 };

static void ReplaceImport(uintptr_t* slot, const char* name, uint8_t* thunks) {
  if (functions == kMostFunctions) Die("too many functions");
  names[functions] = name;
  is_library[functions] = Begins(name, "TORPI_") ? 1 : 0;
  exhaust_real[functions] = *slot;
  uint8_t* const thunk = thunks + functions * kThunkBytes;
  WriteThunk(thunk, functions++);
  const uintptr_t page = (uintptr_t)slot & ~(uintptr_t)4095;
  if (mprotect((void*)page, 4096, PROT_READ | PROT_WRITE) != 0) Die("mprotect");
  *slot = (uintptr_t)thunk;
}

static uintptr_t Placed(uintptr_t base, uintptr_t address) {
  return address < base ? base + address : address;
}

static void ReplaceImports(uintptr_t base, const ElfW(Dyn) * dynamic) {
  uintptr_t tables[2] = {0, 0};
  size_t bytes[2] = {0, 0};
  const ElfW(Sym)* symbols = NULL;
  const char* texts = NULL;
  for (; dynamic->d_tag != DT_NULL; ++dynamic) {
    const uintptr_t value = dynamic->d_un.d_val;
    if (dynamic->d_tag == DT_JMPREL) tables[0] = Placed(base, value);
    if (dynamic->d_tag == DT_PLTRELSZ) bytes[0] = value;
    if (dynamic->d_tag == DT_RELA) tables[1] = Placed(base, value);
    if (dynamic->d_tag == DT_RELASZ) bytes[1] = value;
    if (dynamic->d_tag == DT_SYMTAB) symbols = (const ElfW(Sym)*)Placed(base, value);
    if (dynamic->d_tag == DT_STRTAB) texts = (const char*)Placed(base, value);
  }
  uint8_t* const thunks =
      mmap(NULL, kMostFunctions * kThunkBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (thunks == MAP_FAILED) Die("mmap");
  for (int table = 0; table < 2; ++table) {
    const ElfW(Rela)* at = (const ElfW(Rela)*)tables[table];
    for (const ElfW(Rela)* end = at + bytes[table] / sizeof *at; at < end; ++at) {
      const uint64_t type = ELF64_R_TYPE(at->r_info);
      if (type != R_X86_64_JUMP_SLOT && type != R_X86_64_GLOB_DAT) continue;
      const ElfW(Sym)* symbol = symbols + ELF64_R_SYM(at->r_info);
      const char* name = texts + symbol->st_name;
      uintptr_t* slot = (uintptr_t*)(base + at->r_offset);
      if (symbol->st_shndx != SHN_UNDEF || ELF64_ST_TYPE(symbol->st_info) != STT_FUNC) continue;
      if (*slot == 0 || !IsOfInterest(name)) continue;
      ReplaceImport(slot, name, thunks);
    }
  }
  if (mprotect(thunks, kMostFunctions * kThunkBytes, PROT_READ | PROT_EXEC) != 0) Die("mprotect");
}

// The program is the first object.
static int VisitProgram(struct dl_phdr_info* object, size_t size, void* replace) {
  (void)size;
  const ElfW(Dyn)* dynamic = NULL;
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)* part = &object->dlpi_phdr[i];
    if (part->p_type == PT_DYNAMIC) dynamic = (const ElfW(Dyn)*)(object->dlpi_addr + part->p_vaddr);
    if (part->p_type != PT_LOAD || !(part->p_flags & PF_X)) continue;
    text_base = object->dlpi_addr;
    text_start = object->dlpi_addr + part->p_vaddr;
    text_end = text_start + part->p_memsz;
  }
  if (replace != NULL && dynamic != NULL) ReplaceImports(object->dlpi_addr, dynamic);
  return 1;
}

// --- events ------------------------------------------------------------------------------------------------

static enum Owner OwnerNow(uint32_t* via) {
  *via = 0;
  if (exhaust_depth == 0) return kProgram;
  *via = (uint32_t)exhaust_frames[exhaust_depth - 1].function;
  for (uintptr_t frame = 0; frame < exhaust_depth; ++frame) {
    if (is_library[exhaust_frames[frame].function]) return kLibrary;
  }
  return kProgram;
}

// Whatever on the stack looks like an address in the program's code: good enough to find the place.
static void NoteCallers(void) {
  const uintptr_t* at = __builtin_frame_address(0);
  for (; at < (const uintptr_t*)stack_start && shared->callers < kMostCallers; ++at) {
    if (*at >= text_start && *at < text_end) shared->caller[shared->callers++] = *at - text_base;
  }
}

// Notes the event; whether it has to fail.
static int Happens(uint32_t what, int64_t size) {
  struct Event event = {.what = what, .size = size};
  event.owner = OwnerNow(&event.via);
  const int counts = (request.owners & (int64_t)event.owner) != 0;
  if (counts) event.number = (uint32_t)++shared->counted;
  const int64_t index = shared->events;
  if (index < kMostEvents) shared->event[shared->events++] = event;
  if (!counts || request.at == 0 || event.number < request.at) return 0;
  if (!request.onward && event.number != request.at) return 0;
  if (shared->failed++ == 0) {
    shared->first_failed = index;
    if (request.callers) NoteCallers();
  }
  return 1;
}

// --- memory ------------------------------------------------------------------------------------------------

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

static int Refused(uint32_t what, size_t size) {
  if (!is_child || request.watch != kWatchMemory || !Happens(what, (int64_t)size)) return 0;
  errno = ENOMEM;
  return 1;
}

void* malloc(size_t size) {
  return Refused(0, size) ? NULL : __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
  return Refused(1, count * size) ? NULL : __libc_calloc(count, size);
}
void* realloc(void* block, size_t size) {
  return Refused(2, size) ? NULL : __libc_realloc(block, size);
}
void* memalign(size_t alignment, size_t size) {
  return Refused(3, size) ? NULL : __libc_memalign(alignment, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
  return Refused(3, size) ? NULL : __libc_memalign(alignment, size);
}
int posix_memalign(void** block, size_t alignment, size_t size) {
  void* const made = Refused(3, size) ? NULL : __libc_memalign(alignment, size);
  if (made == NULL) return ENOMEM;
  *block = made;
  return 0;
}

// --- system calls ------------------------------------------------------------------------------------------

// Those from here are let through: the filter knows the address that follows the instruction.
long exhaust_call(long number, long a, long b, long c, long d, long e, long f);
__asm__(
    ".text\n"
    ".globl exhaust_call\n"
    ".hidden exhaust_call\n"
    ".type exhaust_call, @function\n"
    "exhaust_call:\n"
    "  movq %rdi, %rax\n"
    "  movq %rsi, %rdi\n"
    "  movq %rdx, %rsi\n"
    "  movq %rcx, %rdx\n"
    "  movq %r8, %r10\n"
    "  movq %r9, %r8\n"
    "  movq 8(%rsp), %r9\n"
    "  syscall\n"
    ".globl exhaust_called\n"
    ".hidden exhaust_called\n"
    "exhaust_called:\n"
    "  ret\n"
    ".size exhaust_call, .-exhaust_call\n");
extern const char exhaust_called[];

static const int kWatched[] = {
    SYS_read,
    SYS_write,
    SYS_open,
    SYS_openat,
    SYS_creat,
    SYS_close,
    SYS_stat,
    SYS_newfstatat,
    SYS_fstat,
    SYS_lseek,
    SYS_ioctl,
    SYS_pread64,
    SYS_pwrite64,
    SYS_readv,
    SYS_writev,
    SYS_access,
    SYS_poll,
    SYS_ppoll,
    SYS_select,
    SYS_nanosleep,
    SYS_clock_nanosleep,
    SYS_fcntl,
    SYS_flock,
    SYS_fsync,
    SYS_fdatasync,
    SYS_truncate,
    SYS_ftruncate,
    SYS_getdents64,
    SYS_rename,
    SYS_renameat,
    SYS_renameat2,
    SYS_mkdir,
    SYS_mkdirat,
    SYS_rmdir,
    SYS_unlink,
    SYS_unlinkat,
    SYS_link,
    SYS_linkat,
    SYS_symlink,
    SYS_readlink,
    SYS_chmod,
    SYS_fchmod,
    SYS_dup,
    SYS_dup2,
    SYS_dup3,
    SYS_pipe2,
    SYS_mmap,
    SYS_brk,
    SYS_copy_file_range,
    SYS_sendfile,
    SYS_statx,
    SYS_faccessat2,
    SYS_fchown,
    SYS_utimensat,
    SYS_wait4,
    SYS_pselect6,
};
enum { kWatchedCount = sizeof kWatched / sizeof *kWatched };

static int IsSleep(long number) {
  return number == SYS_nanosleep || number == SYS_clock_nanosleep;
}

static void OnSystemCall(int signal, siginfo_t* info, void* context) {
  (void)signal;
  const int saved = errno;
  greg_t* const registers = ((ucontext_t*)context)->uc_mcontext.gregs;
  const long number = info->si_syscall;
  long argument[6] = {registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                      registers[REG_R10], registers[REG_R8],  registers[REG_R9]};
  const int counts = request.only < 0 || request.only == number;
  const int fails = counts && Happens((uint32_t)number, argument[number == SYS_openat ? 2 : 0]);
  if (fails && request.fault == kFails) {
    // A descriptor is gone, even where its closing fails.
    if (number == SYS_close) exhaust_call(SYS_close, argument[0], 0, 0, 0, 0, 0);
    registers[REG_RAX] = -request.error;
  } else {
    if (fails && request.fault == kShort && argument[2] > 1) argument[2] /= 2;
    registers[REG_RAX] = IsSleep(number) ? 0
                                         : exhaust_call(number, argument[0], argument[1], argument[2],
                                                        argument[3], argument[4], argument[5]);
  }
  errno = saved;
}

static void WatchCalls(void) {
  struct sigaction action = {.sa_sigaction = &OnSystemCall, .sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK};
  if (sigaction(SIGSYS, &action, NULL) != 0) Die("sigaction");
  struct sock_filter filter[kWatchedCount + 16];
  unsigned short length = 0;
  const uint64_t allowed = (uint64_t)(uintptr_t)exhaust_called;
#define LOAD(field) BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, field))
  filter[length++] = (struct sock_filter)LOAD(instruction_pointer);
  filter[length++] = (struct sock_filter)BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, (uint32_t)allowed, 0, 3);
  filter[length++] = (struct sock_filter)BPF_STMT(BPF_LD | BPF_W | BPF_ABS,
                                                  offsetof(struct seccomp_data, instruction_pointer) + 4);
  filter[length++] = (struct sock_filter)BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, (uint32_t)(allowed >> 32), 0, 1);
  filter[length++] = (struct sock_filter)BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  filter[length++] = (struct sock_filter)LOAD(nr);
#undef LOAD
  for (int i = 0; i < kWatchedCount; ++i) {
    filter[length++] = (struct sock_filter)BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, (uint32_t)kWatched[i],
                                                    (unsigned char)(kWatchedCount - i), 0);
  }
  filter[length++] = (struct sock_filter)BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  filter[length++] = (struct sock_filter)BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP);
  struct sock_fprog program = {.len = length, .filter = filter};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) Die("no new rights");
  if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) Die("no filter of system calls");
}

// The signal of a watched call can't wait.
int sigprocmask(int how, const sigset_t* set, sigset_t* previous) {
  sigset_t without;
  if (set != NULL && how != SIG_UNBLOCK) {
    without = *set;
    sigdelset(&without, SIGSYS);
    set = &without;
  }
  const int result = pthread_sigmask(how, set, previous);
  if (result != 0) errno = result;
  return result == 0 ? 0 : -1;
}

// Nobody waits.
static int Sleep(long number, const struct timespec* time) {
  if (is_child && request.watch == kWatchCalls) return (int)syscall(number, time, NULL);
  return 0;
}
int nanosleep(const struct timespec* time, struct timespec* left) {
  if (left != NULL) *left = (struct timespec){0, 0};
  return Sleep(SYS_nanosleep, time);
}
unsigned sleep(unsigned seconds) {
  const struct timespec time = {.tv_sec = seconds};
  return Sleep(SYS_nanosleep, &time) == 0 ? 0 : seconds;
}

// --- the server --------------------------------------------------------------------------------------------

static int requests, replies, output_file, error_file, input_file;

static int ReadAll(int file, void* into, size_t size) {
  for (char* at = into; size > 0;) {
    const ssize_t got = read(file, at, size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return 0;
    at += got;
    size -= (size_t)got;
  }
  return 1;
}

static void WriteAll(int file, const void* from, size_t size) {
  for (const char* at = from; size > 0;) {
    const ssize_t put = write(file, at, size);
    if (put <= 0) Die("write");
    at += put;
    size -= (size_t)put;
  }
}

static void SendFile(int from, int64_t size) {
  static char piece[65536];
  if (lseek(from, 0, SEEK_SET) != 0) Die("lseek");
  while (size > 0) {
    const size_t now = size < (int64_t)sizeof piece ? (size_t)size : sizeof piece;
    if (!ReadAll(from, piece, now)) Die("read");
    WriteAll(replies, piece, now);
    size -= (int64_t)now;
  }
}

static int MemoryFile(const char* name) {
  const int file = memfd_create(name, MFD_CLOEXEC);
  const int far = file < 0 ? -1 : fcntl(file, F_DUPFD_CLOEXEC, 100);
  if (far < 0) Die("memfd");
  close(file);
  return far;
}

static void Empty(int file) {
  if (ftruncate(file, 0) != 0 || lseek(file, 0, SEEK_SET) != 0) Die("cannot empty");
}

static int64_t Size(int file) {
  return lseek(file, 0, SEEK_END);
}

// Pointers to the texts in a block, in front of a null.
static char** Point(char** into, char* block, int64_t count) {
  for (; count > 0; --count) {
    *into++ = block;
    block += strlen(block) + 1;
  }
  *into++ = NULL;
  return into;
}

static long MappedBytes(void) {
  long pages = 0;
  FILE* file = fopen("/proc/self/statm", "re");
  if (file == NULL || fscanf(file, "%ld", &pages) != 1) Die("statm");
  fclose(file);
  return pages * 4096;
}

static void Limit(int which, int64_t value, long base) {
  if (value < 0) return;
  const struct rlimit limit = {(rlim_t)(value + base), (rlim_t)(value + base)};
  if (setrlimit(which, &limit) != 0) Die("setrlimit");
}

static void Redirect(int from, int to) {
  if (request.closed & (1 << to)) {
    close(to);
  } else if (dup2(from, to) < 0) {
    Die("dup2");
  }
}

static void BecomeRun(void) {
  Redirect(input_file, STDIN_FILENO);
  Redirect(error_file, STDERR_FILENO);
  Redirect(output_file, STDOUT_FILENO);
  const long mapped = request.space >= 0 ? MappedBytes() : 0;
  alarm(kSecondsToEnd);
  if (request.watch == kWatchCalls) WatchCalls();
  is_child = 1;
  Limit(RLIMIT_AS, request.space, mapped);
  Limit(RLIMIT_STACK, request.stack, 0);
  Limit(RLIMIT_FSIZE, request.file_size, 0);
  Limit(RLIMIT_NOFILE, request.files, 0);
}

static uintptr_t Quiet(void) {
  return 0;
}

// What is to be done at the end of the process.
struct Ending {
  void (*function)(void*);
  void* argument;
};

// Whether something that the device library asks for may give out.
static int TouchesLibrary(void) {
  return (request.owners & kLibrary) || request.files >= 0 || request.space >= 0 || request.stack >= 0 ||
         request.file_size >= 0;
}

static void End(void* ending) {
  const struct Ending* end = ending;
  if (!is_child || !request.warm || TouchesLibrary()) end->function(end->argument);
}

// The warm device library would take its host down at the end of each run, which is half of it: each page
// that is written to is copied for the run. Where nothing of the library's gives out, that is left away.
int __cxa_atexit(void (*function)(void*), void* argument, void* module) {
  typedef int AtExit(void (*)(void*), void*, void*);
  static AtExit* real;
  if (real == NULL) *(void**)&real = dlsym(RTLD_NEXT, "__cxa_atexit");
  struct Ending* ending = is_child ? NULL : __libc_malloc(sizeof *ending);
  if (ending == NULL) return real(function, argument, module);
  *ending = (struct Ending){function, argument};
  return real(&End, ending, module);
}

// Starts the device library here, for all runs; theirs start it no more.
static void WarmUp(void) {
  static int is_warm;
  if (is_warm) return;
  is_warm = 1;
  for (uint32_t i = 1; i < functions; ++i) {
    const int starts = strcmp(names[i], "TORPI_Initialize") == 0;
    const int lists = strcmp(names[i], "TORPI_GetAdapterList") == 0;
    const int ends = strcmp(names[i], "TORPI_Uninitialize") == 0;
    if (starts) ((int (*)(unsigned, unsigned))exhaust_real[i])(0, 0);
    if (lists) ((void* (*)(void))exhaust_real[i])();
    if (starts || ends) exhaust_real[i] = (uintptr_t)&Quiet;
  }
}

static void SendNames(void) {
  int64_t bytes = 0;
  for (uint32_t i = 0; i < functions; ++i) bytes += (int64_t)strlen(names[i]) + 1;
  WriteAll(replies, &bytes, sizeof bytes);
  for (uint32_t i = 0; i < functions; ++i) WriteAll(replies, names[i], strlen(names[i]) + 1);
}

// Serves until there are no more requests. Returns in a fork, as the run that was asked for.
static void Serve(int* argc, char*** argv) {
  SendNames();
  while (ReadAll(requests, &request, sizeof request)) {
    const size_t texts = (size_t)(request.input_bytes + request.word_bytes + request.variable_bytes);
    char* const block = __libc_malloc(texts + 1);
    if (block == NULL || !ReadAll(requests, block, texts)) Die("request");
    Empty(input_file);
    WriteAll(input_file, block, (size_t)request.input_bytes);
    Empty(output_file);
    Empty(error_file);
    lseek(input_file, 0, SEEK_SET);
    memset(shared, 0, offsetof(struct Shared, event));
    shared->first_failed = -1;

    char** const pointers = __libc_malloc((size_t)(request.words + request.variables + 2) * sizeof(char*));
    if (pointers == NULL) Die("request");
    char** const variables = Point(pointers, block + request.input_bytes, request.words);
    Point(variables, block + request.input_bytes + request.word_bytes, request.variables);
    environ = variables;
    if (request.warm) WarmUp();

    struct Reply reply = {.status = -1};
    const pid_t child = fork();
    if (child == 0) {
      *argc = (int)request.words;
      *argv = pointers;
      BecomeRun();
      return;
    }
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child) reply.status = status;
    reply.counted = shared->counted;
    reply.failed = shared->failed;
    reply.last = shared->first_failed;
    reply.output_bytes = Size(output_file);
    reply.error_bytes = Size(error_file);
    reply.events = request.at == 0 ? shared->events : 0;
    if (reply.last >= 0) reply.events = 1;
    reply.callers = shared->callers;
    WriteAll(replies, &reply, sizeof reply);
    SendFile(output_file, reply.output_bytes);
    SendFile(error_file, reply.error_bytes);
    const int64_t from = reply.last >= 0 ? reply.last : 0;
    WriteAll(replies, shared->event + from, (size_t)reply.events * sizeof(struct Event));
    WriteAll(replies, shared->caller, (size_t)reply.callers * sizeof(uintptr_t));
    free(block);
    free(pointers);
  }
  _exit(0);
}

static int Descriptor(const char* name) {
  const char* value = getenv(name);
  if (value == NULL) Die(name);
  const int far = fcntl((int)strtol(value, NULL, 10), F_DUPFD_CLOEXEC, 100);
  if (far < 0) Die(name);
  close((int)strtol(value, NULL, 10));
  return far;
}

typedef int Main(int, char**, char**);
typedef int StartMain(Main*, int, char**, void (*)(int, char**, char**), void (*)(void), void (*)(void),
                      void*);

// What the program's start calls: from here its constructors run, then main().
int __libc_start_main(Main* main, int argc, char** argv, void (*init)(int, char**, char**),
                      void (*fini)(void), void (*loader_fini)(void), void* stack_end) {
  StartMain* real;
  *(void**)&real = dlsym(RTLD_NEXT, "__libc_start_main");
  if (real == NULL) Die("__libc_start_main");
  stack_start = stack_end;
  requests = Descriptor("EXHAUST_REQUESTS");
  replies = Descriptor("EXHAUST_REPLIES");
  input_file = MemoryFile("input");
  output_file = MemoryFile("output");
  error_file = MemoryFile("error");
  shared = mmap(NULL, sizeof *shared, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) Die("mmap");
  dl_iterate_phdr(&VisitProgram, getenv("EXHAUST_IMPORTS") != NULL ? &requests : NULL);
  Serve(&argc, &argv);
  return real(main, argc, argv, init, fini, loader_fini, stack_end);
}
