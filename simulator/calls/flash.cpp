// Flash images written and flash versions read.
#include "calls/call.h"
#include "calls/play.h"
#include "framework/device_library/calls.h"
#include "images/flash_image.h"

using lab::Call;
using recording::ProtocolRecording;

namespace {

LibraryStatus Update(const char* name, const DeviceHandle* handle, const char* file, lab::ImageKind kind,
                     lab::Arguments arguments) {
  return lab::ServePort(name, handle, arguments, [=](Call& call) -> std::uint32_t {
    if (!file) return lab::kBadArgument;
    lab::Lab& lab = lab::Lab::Get();
    lab::Adapter& adapter = call.adapter();
    lab::FlashImage image;
    if (const std::uint32_t refusal = lab::ReadFlashImage(file, kind, adapter, image)) return refusal;
    lab::ApplyFlashImage(image, adapter);
    if (kind == lab::ImageKind::kMbi && adapter.family->memo_block) lab.StampUpdate(adapter.memo);
    if (const std::uint32_t unsaved = lab.Keep(adapter, image.result != lab::kSuccess)) return unsaved;
    return image.result;
  });
}

}  // namespace

LibraryStatus TORPI_doOptionROMUpdate(const DeviceHandle* handle, const char* file, std::uint32_t zero) {
  return Update("TORPI_doOptionROMUpdate", handle, file, lab::ImageKind::kMbi, {file, zero});
}

LibraryStatus TORPI_UpdateSpecificFlashRegionFromFile(const DeviceHandle* handle, const char* file) {
  return Update("TORPI_UpdateSpecificFlashRegionFromFile", handle, file, lab::ImageKind::kBoardConfig,
                {file});
}

LibraryStatus TORPI_UpdateAdapterFirmwareTableFromFile(const DeviceHandle* handle, const char* file) {
  return Update("TORPI_UpdateAdapterFirmwareTableFromFile", handle, file, lab::ImageKind::kFirmwarePreload,
                {file});
}

LibraryStatus TORPI_UpdateAdapterPEPCfgFromFile(const DeviceHandle* handle, const char* file) {
  return Update("TORPI_UpdateAdapterPEPCfgFromFile", handle, file, lab::ImageKind::kPepConfig, {file});
}

LibraryStatus TORPI_GetFlashComponentVersion(const DeviceHandle* handle, FlashComponentVersions* out) {
  const auto play = lab::Plays(&ProtocolRecording::flash_versions, out);
  return lab::ServeReading("TORPI_GetFlashComponentVersion", handle, {}, play, [=](Call& call) {
    if (!out) return lab::kBadArgument;
    // Only the components are written: the rest of the buffer is the caller's.
    for (const lab::FlashComponent& component : lab::kFlashComponents) {
      out->*component.field = call.adapter().flash.*component.field;
    }
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_GetAdapterFlashMemoBlock(const DeviceHandle* handle, FlashMemoBlock* out) {
  const auto play = lab::Plays(&ProtocolRecording::memo_block, out);
  return lab::ServeReading("TORPI_GetAdapterFlashMemoBlock", handle, {}, play, [=](Call& call) {
    if (!out) return lab::kBadArgument;
    if (!call.adapter().family->memo_block) return lab::kNotForThisAdapter;
    *out = call.adapter().memo;
    return lab::kSuccess;
  });
}
