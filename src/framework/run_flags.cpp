#include "framework/run_flags.h"

#include "framework/words.h"

std::atomic<std::uint32_t> gRunFlags{0};

std::uint32_t ParseProgramFlags(int argc, char** argv, int& first) {
  std::uint32_t flags = 0;
  for (first = 1; first < argc; ++first) {
    if (EqualNoCase(argv[first], "-debug")) {
      flags |= RUN_FLAG_DEBUG;
    } else if (EqualNoCase(argv[first], "-eng")) {
      flags |= RUN_FLAG_ENGINEERING;
    } else {
      break;
    }
  }
  return flags;
}
