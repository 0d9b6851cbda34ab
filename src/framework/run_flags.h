// The process-wide run flags and the words before a command that set them.
#pragma once

#include <atomic>
#include <cstdint>

enum RunFlag : std::uint32_t {
  RUN_FLAG_DEBUG = 1,        // "-debug" was given; recorded, without any effect
  RUN_FLAG_QUIT = 2,         // a request to leave; tested in several places although nothing sets it
  RUN_FLAG_BATCH = 4,        // the command came from the argument vector
  RUN_FLAG_ENGINEERING = 8,  // "-eng" was given: nodes with flag bit 0 are usable and listed
  RUN_FLAG_BREAK = 16,       // SIGQUIT arrived: an interrupted read is to be retried
};

// Zero at start. Atomic because the signal handler sets RUN_FLAG_BREAK.
extern std::atomic<std::uint32_t> gRunFlags;

inline bool RunFlagIsSet(RunFlag flag) {
  return (gRunFlags.load() & flag) != 0;
}

// Reads the run of leading "-debug" and "-eng" words, in any case, from index 1 on. Returns their flag bits
// and stores in `first` the index of the first other word, argc when there is none, 1 without arguments.
std::uint32_t ParseProgramFlags(int argc, char** argv, int& first);
