// The NVMe boot entries of a port, whatever its memory holds, against a second implementation of
// `bootconfigext get` in the NVMe mode.
//
// The first byte of an input chooses the form of the document, the second one the family, the third the mode
// of the library; the rest is what the command reads.
#include "device/boot_library.h"

namespace {

constexpr Region kRecordRegions[] = {{100, 4}, {128, 4}, {140, 8}, {216, 4}};
constexpr Region kEntryRegions[] = {{0, 22}, {24, 1}};
constexpr Region kPortRegions[] = {{2160, 16}, {2176, 256}};

// A text of an entry: a byte of the input says how long it is.
void FillText(Input& input, std::uint8_t* text, std::size_t size) {
  const std::size_t length = input.Byte() % (size + 1);
  std::memset(text, 0, size);
  if (length > 0) input.Fill(text, length);
  if (length == 255) std::memset(text, 'q', size);  // the whole field, without a terminator
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kEntries = 16;
  constexpr std::size_t kEntryBytes = 284;
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  MakeBootPort(input);
  auto* const port = reinterpret_cast<std::uint8_t*>(Host().fc);
  for (const Region& region : kPortRegions) input.Fill(port + region.offset, region.size);
  FillRecord(input, boot_record, sizeof boot_record, kRecordRegions);
  std::memset(nvme_record, choice, sizeof nvme_record);
  for (std::size_t i = 0; i < 8; ++i) {
    std::uint8_t* const entry = nvme_record + kEntries + i * kEntryBytes;
    for (const Region& region : kEntryRegions) input.Fill(entry + region.offset, region.size);
    FillText(input, entry + 28, 256);
  }
  nvme_result = choice >= 0xF0 ? choice & 3U : kLibrarySuccess;
  CheckBoot(choice, true, reference::BootMode::kNvme);
  return 0;
}
