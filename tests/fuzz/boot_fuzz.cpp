// The boot record of a port, whatever its memory holds, against a second implementation of `bootconfig get`
// and of `bootconfigext get` in the modes that read this record alone.
//
// The first byte of an input chooses the form of the document, the command and its mode, the second one the
// family, the third the mode of the library; the rest is what the commands read.
#include "device/boot_library.h"

namespace {

constexpr Region kRecordRegions[] = {{100, 8},  {116, 10}, {128, 4}, {140, 8}, {168, 10},
                                     {180, 10}, {192, 10}, {216, 4}, {244, 40}};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  MakeBootPort(input);
  FillRecord(input, boot_record, sizeof boot_record, kRecordRegions);
  nvme_result = kLibrarySuccess;
  CheckBoot(choice, (choice & 2) != 0,
            (choice & 4) != 0 ? reference::BootMode::kUefi : reference::BootMode::kBios);
  return 0;
}
