// Runs a program in a mount namespace of its own, so that the fixed paths it uses are private to the run:
//
//   private_run [--read-only-var-tmp] [--no-namespace] [--keep PATH]... FOLDER PROGRAM [WORD]...
//   private_run --has-namespace    prints nothing; ends with 1 and the reason where this machine refuses one
//   private_run --serve SOCKET     makes the runs that come over a descriptor: see run_server.h
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
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "private_mounts.h"
#include "run_server.h"

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
static void PreloadPaths(char* library, const struct PrivateRun* run) {
  MakePreloadable(library);
  const char* others = getenv("LD_PRELOAD");
  char preloaded[2 * kPathSize];
  snprintf(preloaded, sizeof preloaded, "%s%s%s", others ? others : "", others ? ":" : "", library);

  char opt[kPathSize];
  snprintf(opt, sizeof opt, "%s%s", run->folder, kStaging);
  MakeFolders(opt);

  char all_kept[kMaxKept * kPathSize] = "";
  for (int i = 0; i < run->kept_count; ++i) {
    const size_t used = strlen(all_kept);
    snprintf(all_kept + used, sizeof all_kept - used, "%s\n", run->kept[i]);
  }
  // The sanitizers' runtime refuses to start after another library unless it is asked not to look.
  const char* options = getenv("ASAN_OPTIONS");
  char sanitizer[kPathSize];
  snprintf(sanitizer, sizeof sanitizer, "%s%sverify_asan_link_order=0", options ? options : "",
           options ? ":" : "");

  SetVariable("PRIVATE_PATHS_FOLDER", run->folder);
  SetVariable("PRIVATE_PATHS_KEPT", all_kept);
  if (run->read_only) SetVariable("PRIVATE_PATHS_READ_ONLY", "/var/tmp");
  SetVariable("ASAN_OPTIONS", sanitizer);
  SetVariable("LD_PRELOAD", preloaded);
}

static int HasNamespace(void) {
  const char* refused = RefusedMounts();
  if (refused) fprintf(stderr, "private_run: this machine refuses %s: %s\n", refused, strerror(errno));
  return refused == NULL;
}

static int Execute(int argc, char** argv, char** variables) {
  (void)argc, (void)variables;
  execvp(argv[0], argv);
  Die("cannot run", argv[0]);
}

int main(int argc, char** argv) {
  if (argc == 3 && strcmp(argv[1], "--serve") == 0) return ServeRuns(atoi(argv[2]), &Execute);
  if (argc == 2 && strcmp(argv[1], "--has-namespace") == 0) return HasNamespace() ? 0 : 1;
  struct PrivateRun run;
  if (!ReadPrivateRun(argv + 1, &run)) {
    fprintf(stderr,
            "usage: private_run [--read-only-var-tmp] [--no-namespace] [--keep PATH]... FOLDER PROGRAM "
            "[WORD]...\n");
    return 125;
  }
  // Named in the namespace in which this program was started: in another its own path may not be known.
  char library[kPathSize];
  NameLibrary(library);
  if (!run.by_mounts || !MountPaths(&run)) PreloadPaths(library, &run);
  EnterWork(&run);

  return Execute(0, run.command, environ);
}
