#include "framework/library_call.h"

#include "runtime/debug_log.h"

StatusCode StatusOfCall(const char* class_name, const char* step, LibraryStatus result, StatusCode failure) {
  return StatusOfCall(class_name, step, result, {}, failure);
}

StatusCode StatusOfCall(const char* class_name, const char* step, LibraryStatus result,
                        std::span<const LibraryAnswer> answers, StatusCode failure) {
  if (result == kLibrarySuccess) return kSuccess;
  DebugLogLevel(kDebugFailure, "%s: %s failed err=%u", class_name, step, result);
  return FromLibrary(result, answers, failure);
}
