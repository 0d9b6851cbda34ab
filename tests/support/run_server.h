// Makes runs of private_run, one after the other, each in a fork of this process: what starts a run once is
// not done again for each.
//
// The server first writes whether this machine allows private mounts, a byte of 1 or 0. A request is a struct
// Request, then standard input, then texts, each with its terminator: the words of private_run and the
// environment. The reply is a struct Reply, then standard output and standard error. The server ends with the
// socket.
#ifndef TESTS_SUPPORT_RUN_SERVER_H_
#define TESTS_SUPPORT_RUN_SERVER_H_

#include <stdint.h>

// 64 bits each, so that Python packs it with one letter.
struct Request {
  int64_t size;  // of all that follows this record
  int64_t input_bytes, words, variables;
  int64_t mask;  // the umask
};

struct Reply {
  int64_t status;  // of wait()
  int64_t output_bytes, error_bytes;
};

typedef int RunMain(int argc, char** argv, char** variables);

// Serves until there are no more requests, and ends the process then. Returns in a fork alone, with what the
// function has returned for the run.
int ServeRuns(int socket, RunMain* main);

#endif  // TESTS_SUPPORT_RUN_SERVER_H_
