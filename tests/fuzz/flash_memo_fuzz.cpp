// The flash memo block of an adapter, whatever the flash holds, against a second implementation.
//
// The first byte of an input chooses the form of the document, the second one the adapter; the rest is the
// block.
#include <cstdio>

#include "adapter/adapter_flash_info_cmds_processor.h"
#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "reference/flash_memo_reference.h"

namespace {

std::uint8_t block[48];

}  // namespace

LibraryStatus TORPI_GetAdapterFlashMemoBlock(const DeviceHandle*, FlashMemoBlock* out) {
  std::memcpy(static_cast<void*>(out), block, sizeof block);
  return kLibrarySuccess;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const bool xml = (input.Byte() & 1) == 0;
  DeviceHost& host = Host();
  std::snprintf(host.adapter->model.bytes, sizeof host.adapter->model.bytes, "%s", "ZX");
  std::snprintf(host.adapter->serial_number.bytes, sizeof host.adapter->serial_number.bytes, "%s", "1");
  ChoosePciIdentity(*host.fc, input.SpreadByte());
  input.Fill(block, sizeof block);
  RequireSame(RunCommand(&AdapterFlashInfoCmdsProcessor, "get", {"Adapter_ZX_1"}, xml),
              reference::FlashMemoDocument(xml, host.fc, block));
  return 0;
}
