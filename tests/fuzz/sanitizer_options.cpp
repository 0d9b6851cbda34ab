// What the sanitizers of every fuzz target keep, unless ASAN_OPTIONS says otherwise.

// The stack of each allocation, and released memory that is kept, cost a third of a run. What is kept is more
// than most runs allocate. A finding that is run again with malloc_context_size=30 has its stacks.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the sanitizer's.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=0:quarantine_size_mb=1:thread_local_quarantine_size_kb=16";
}
