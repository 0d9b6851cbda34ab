// Times whole runs, from start to exit: the program against plain C programs that make the same library calls
// and write the same bytes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <string>
#include <vector>

namespace {

// Runs one command with standard output thrown away; false when it cannot run or fails.
bool Run(std::vector<std::string>& words) {
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  return spawned == 0 && waitpid(child, &status, 0) == child && status == 0;
}

void StartToExit(benchmark::State& state, std::vector<std::string> words) {
  for (auto _ : state) {
    if (!Run(words)) {
      state.SkipWithError("the command failed");
      break;
    }
  }
}

}  // namespace

BENCHMARK_CAPTURE(StartToExit, empty_program, {ZFC_BENCH "/bin/empty_program"})->UseRealTime();
BENCHMARK_CAPTURE(StartToExit, plain_adapter_list, {ZFC_BENCH "/bare/bin/plain_adapter_list"})->UseRealTime();
BENCHMARK_CAPTURE(StartToExit, adapter_list, {ZFC_BENCH "/bare/bin/zfcesxcli", "-t", "adapter", "list"})
    ->UseRealTime();

// The library's own share of the two behind it: it makes its records while the program runs.
BENCHMARK_CAPTURE(StartToExit, plain_lun_walk, {ZFC_BENCH "/luns/bin/plain_lun_list", "walk"})->UseRealTime();
BENCHMARK_CAPTURE(StartToExit, plain_lun_list, {ZFC_BENCH "/luns/bin/plain_lun_list"})->UseRealTime();
BENCHMARK_CAPTURE(StartToExit, lun_list, {ZFC_BENCH "/luns/bin/zfcesxcli", "-t", "lun", "list"})
    ->UseRealTime();

BENCHMARK_MAIN();
