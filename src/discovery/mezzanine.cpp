#include "discovery/mezzanine.h"

#include "framework/library_call.h"

StatusCode ReadIsMezzAdapter(const CommandRun& run, const FCProtocolEntry& fc, bool& is_mezz) {
  std::uint8_t flag = 0;
  const StatusCode status = CallLibraryWithOneStatus(run, "Is mezzanine adapter", kReadFailed,
                                                     [&] { return TORPI_IsMezzAdapter(&fc.handle, &flag); });
  is_mezz = flag == 1;
  return status;
}
