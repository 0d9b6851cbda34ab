// Linked as the executable is, and run by test_symbol_floor.py and scripts/try-old-host: shows that
// constructors run once before main and destructors once after it, and that the functions made for old C
// libraries do their work.
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace {

int constructed = 0;

struct Counted {
  Counted() { ++constructed; }
  ~Counted() { std::puts("destroyed"); }
};
Counted counted;

bool MutexCanBeTried() {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  return pthread_mutex_trylock(&mutex) == 0 && pthread_mutex_unlock(&mutex) == 0;
}

bool SignalCanBeBlocked() {
  sigset_t one;
  sigset_t now;
  sigemptyset(&one);
  sigaddset(&one, SIGUSR1);
  return pthread_sigmask(SIG_BLOCK, &one, nullptr) == 0 && pthread_sigmask(SIG_BLOCK, nullptr, &now) == 0 &&
         sigismember(&now, SIGUSR1) == 1;
}

bool FolderIsSeen() {
  struct stat status;
  return stat("/", &status) == 0 && S_ISDIR(status.st_mode) && stat("/none", &status) == -1;
}

void Say(const char* what, bool is_so) {
  std::printf("%s: %s\n", what, is_so ? "yes" : "no");
}

}  // namespace

int main(int argc, char** argv) {
  std::printf("arguments: %d, %s\n", argc, argv[argc - 1]);
  std::printf("constructed: %d\n", constructed);
  Say("mutex", MutexCanBeTried());
  Say("signal", SignalCanBeBlocked());
  Say("stat", FolderIsSeen());
  Say("thread", gettid() == getpid());
}
