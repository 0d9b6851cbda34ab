// What the sanitizers of every fuzz target keep, unless ASAN_OPTIONS says otherwise.

// The stack of each allocation and much released memory cost a fifth of a run. The quarantine holds more than
// most runs allocate; a finding is run again with malloc_context_size=30 for its stacks.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the sanitizer's.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=0:quarantine_size_mb=2:thread_local_quarantine_size_kb=64";
}
