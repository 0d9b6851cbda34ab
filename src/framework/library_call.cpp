#include "framework/library_call.h"

StatusCode StatusOfCall(const CommandRun& run, const char* step, LibraryStatus result, StatusCode failure) {
  return StatusOfCall(run, step, result, {}, failure);
}

StatusCode StatusOfCall(const CommandRun& run, const char* step, LibraryStatus result,
                        std::span<const LibraryAnswer> answers, StatusCode failure) {
  if (result == kLibrarySuccess) return kSuccess;
  run.LogFailure("%s failed err=%d", step, static_cast<int>(result));
  return FromLibrary(result, answers, failure);
}
