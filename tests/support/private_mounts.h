// Private folders in place of the fixed ones, in a mount namespace of the calling process: for private_run
// and for the start server.
#ifndef TESTS_SUPPORT_PRIVATE_MOUNTS_H_
#define TESTS_SUPPORT_PRIVATE_MOUNTS_H_

enum { kMaxKept = 16, kPathSize = 4096 };

// Prints what could not be done, with the reason in errno, and ends the process with status 125.
__attribute__((noreturn)) void Die(const char* what, const char* path);

// Creates a folder and all that lead to it.
void MakeFolders(const char* path);

// The place of the staged files.
extern const char kStaging[];

// What the words of private_run ask for.
struct PrivateRun {
  const char* folder;
  // Paths that stay reachable under their own names; the folder is the last of them.
  const char* kept[kMaxKept];
  int kept_count;
  int read_only;  // /var/tmp
  int by_mounts;
  char** command;  // the program and its words
};

// Reads the words, which a null ends. Returns 0 when they are not as private_run takes them.
int ReadPrivateRun(char** words, struct PrivateRun* run);

// Gives the process the private folders. Returns 0 where the machine refuses.
int MountPaths(const struct PrivateRun* run);

// Enters the working folder.
void EnterWork(const struct PrivateRun* run);

// What the machine refuses of these mounts, with the reason in errno; NULL when the calling process has taken
// the first steps of them.
const char* RefusedMounts(void);

#endif  // TESTS_SUPPORT_PRIVATE_MOUNTS_H_
