// See the header. Nothing here is allocated from the heap, so that a search for leaks finds the program's own
// blocks alone.
#define _GNU_SOURCE
#include "run_server.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <stdint.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "private_mounts.h"

// Bytes in pages of their own, which grow.
struct Buffer {
  char* bytes;
  size_t size, room;
};

static RunMain* program;
static int channel;

static void Reserve(struct Buffer* buffer, size_t room) {
  if (room <= buffer->room) return;
  size_t larger = buffer->room ? buffer->room : (size_t)1 << 16;
  while (larger < room) larger *= 2;
  void* bytes = buffer->bytes
                    ? mremap(buffer->bytes, buffer->room, larger, MREMAP_MAYMOVE)
                    : mmap(NULL, larger, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (bytes == MAP_FAILED) Die("no memory for", "a buffer");
  buffer->bytes = bytes;
  buffer->room = larger;
}

static void WriteFully(int file, const void* content, size_t size) {
  const char* from = content;
  while (size > 0) {
    const ssize_t written = write(file, from, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) Die("cannot write to", "the socket or a pipe");
    from += written;
    size -= (size_t)written;
  }
}

// Returns 0 at the end of the requests.
static int ReadFully(void* content, size_t size) {
  char* to = content;
  while (size > 0) {
    const ssize_t got = read(channel, to, size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return 0;
    to += got;
    size -= (size_t)got;
  }
  return 1;
}

// Texts that follow each other, as a list that a null ends.
static char** List(char** at, int64_t count) {
  static const size_t kPointer = sizeof(char*);
  char** list =
      mmap(NULL, ((size_t)count + 1) * kPointer, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (list == MAP_FAILED) Die("no memory for", "a list");
  for (int64_t i = 0; i < count; ++i) {
    list[i] = *at;
    *at += strlen(*at) + 1;
  }
  return list;
}

// As after the start of a program: nothing but the standard streams is open.
static void CloseAllOthers(void) {
  if (syscall(SYS_close_range, 3U, ~0U, 0U) == 0) return;
  for (int file = 3; file < 1024; ++file) close(file);
}

// The run, in the forked process. Its status is main's.
static int Run(const struct Request* request, char* texts, int input, int output, int errors, pid_t server) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != server) _exit(125);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  struct PrivateRun run;
  if (!ReadPrivateRun(List(&texts, request->words), &run)) Die("cannot read", "the words");
  environ = List(&texts, request->variables);
  if (!MountPaths(&run)) Die("no private folders for", run.folder);
  EnterWork(&run);
  CloseAllOthers();
  umask((mode_t)request->mask);
  int words = 0;
  while (run.command[words]) ++words;
  return program(words, run.command, environ);
}

static void MakePipe(int* ends) {
  if (pipe(ends) != 0) Die("cannot make", "a pipe");
}

// Fills the buffers with what comes from the pipes, up to their ends.
static void Collect(const int* files, struct Buffer* buffers) {
  struct pollfd polled[2] = {{.fd = files[0], .events = POLLIN}, {.fd = files[1], .events = POLLIN}};
  while (polled[0].fd >= 0 || polled[1].fd >= 0) {
    if (poll(polled, 2, -1) < 0) continue;
    for (int i = 0; i < 2; ++i) {
      if (polled[i].fd < 0 || !polled[i].revents) continue;
      struct Buffer* buffer = &buffers[i];
      Reserve(buffer, buffer->size + 65536);
      const ssize_t got = read(polled[i].fd, buffer->bytes + buffer->size, buffer->room - buffer->size);
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) {
        close(polled[i].fd);
        polled[i].fd = -1;
      } else {
        buffer->size += (size_t)got;
      }
    }
  }
}

// Returns 1 in the run, with what main has returned; 0 in the server.
static int Fork(const struct Request* request, char* content, int* status) {
  static struct Buffer output[2];
  output[0].size = output[1].size = 0;
  int input_ends[2], output_ends[2], error_ends[2];
  MakePipe(input_ends);
  MakePipe(output_ends);
  MakePipe(error_ends);
  WriteFully(input_ends[1], content, (size_t)request->input_bytes);  // fits the pipe
  close(input_ends[1]);
  const pid_t server = getpid();
  const pid_t child = fork();
  if (child < 0) Die("cannot", "fork");
  if (child == 0) {
    *status =
        Run(request, content + request->input_bytes, input_ends[0], output_ends[1], error_ends[1], server);
    return 1;
  }
  close(input_ends[0]);
  close(output_ends[1]);
  close(error_ends[1]);
  const int files[2] = {output_ends[0], error_ends[0]};
  Collect(files, output);
  int ended = 0;
  while (waitpid(child, &ended, 0) < 0) {
    if (errno != EINTR) Die("lost", "a run");
  }
  const struct Reply reply = {ended, (int64_t)output[0].size, (int64_t)output[1].size};
  WriteFully(channel, &reply, sizeof reply);
  WriteFully(channel, output[0].bytes, output[0].size);
  WriteFully(channel, output[1].bytes, output[1].size);
  return 0;
}

static char AllowsMounts(void) {
  const pid_t child = fork();
  if (child == 0) _exit(RefusedMounts() == NULL ? 0 : 1);
  int status = 1;
  while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status == 0;
}

int ServeRuns(int socket, RunMain* main) {
  channel = socket;
  program = main;
  const char allowed = AllowsMounts();
  WriteFully(channel, &allowed, 1);
  struct Buffer content = {0};
  for (struct Request request; ReadFully(&request, sizeof request);) {
    Reserve(&content, (size_t)request.size);
    if (!ReadFully(content.bytes, (size_t)request.size)) break;
    int status = 0;
    if (Fork(&request, content.bytes, &status)) return status;
  }
  _exit(0);  // without what belongs to the end of a run
}
