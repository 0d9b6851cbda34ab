#include "adapter/adapter_update.h"

#include <string_view>

#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/files.h"
#include "framework/output_bracket.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "AdapterCmdsProcessor";

enum RebootState { kNoReboot, kWarmReboot, kColdReboot };
constexpr const char* kRebootTexts[] = {"false", "true", "Cold Boot Required"};

// In place of an answer, for an image type that the library cannot write.
constexpr auto kNoUpdate = static_cast<LibraryStatus>(-1);

constexpr LibraryAnswer kUpdateAnswers[] = {
    {kLibraryFileNotFound, kFileNotFound},
    {kLibraryNoMemory, kMemoryError},
    {kLibraryFileOpenError, kFileOpenError},
    {kLibraryFileReadError, kFileReadError},
    {kLibraryFileNotValid, kFileNotValid},
    {kLibraryWrongSsid, kInvalidSsid},
    {kLibraryFileCorrupted, kCorruptedFile},
    {kLibraryWrongFileSize, kInvalidFileSize},
    {kLibraryWrongChecksum, kChecksumError},
    {kLibraryInvalidData, kInvalidData},
    {kLibraryWrongSerialNumber, kInvalidSerialNumber},
    {kLibraryWrongSignature, kInvalidSignature},
    {kLibraryFeatureNotSupported, kFeatureNotSupported},
    {kLibraryAdapterNotFound, kAdapterNotFound},
    {kLibraryAdapterLacksFeature, kFeatureNotSupported},
    {kLibraryFirmwareLockdown, kFirmwareLockdown},
    {kLibraryImageSetInvalid, kImageSetValidation},
    {kLibraryImageSetMismatch, kImageSetConfig},
    {kLibraryComponentInvalid, kComponentValidation},
};

constexpr StatusMessage kMessages[] = {
    kSuccess,
    {kWrongWordCount, "Failed, Invalid Number of parameters"},
    kInvalidParameter,
    kFlashUpdateError,
    kHostNotFound,
    kComponentValidation,
    {kInvalidData, "Failed, Invalid data"},
    {kInvalidSerialNumber, "Failed, Invalid Serial Number"},
    kFileNotFound,
    kAdapterNotFound,
    kFileOpenError,
    kFileNotValid,
    kFileReadError,
    kInvalidSsid,
    kCorruptedFile,
    kInvalidFileSize,
    kChecksumError,
    kInvalidSignature,
    kFirmwareLockdown,
    kFeatureNotSupported,
    kMemoryError,
    kMaintenanceMode,
    kImageSetValidation,
    kImageSetConfig,
    kLibraryNotSupported,
};

// One kind of flash image and the adapters that take it. The library's function is called through `write`, so
// that it is bound only when used.
struct ImageType {
  const char* word;
  FamilySet families;  // kEveryAdapter: also those of no family
  LibraryStatus (*write)(const DeviceHandle* handle, const char* file);
};

constexpr FamilySet kEveryAdapter = 0;
constexpr const char* kMultiBootImage = "MBI";

constexpr ImageType kImageTypes[] = {
    {kMultiBootImage, kEveryAdapter,
     [](const DeviceHandle* handle, const char* file) { return TORPI_doOptionROMUpdate(handle, file, 0); }},
    {"BrdCfg", kElm | kHazel | kIris,
     [](const DeviceHandle* handle, const char* file) {
       return TORPI_UpdateSpecificFlashRegionFromFile(handle, file);
     }},
    {"FWPreload", kBirch | kElm | kHazel | kIris,
     [](const DeviceHandle* handle, const char* file) {
       return TORPI_UpdateAdapterFirmwareTableFromFile(handle, file);
     }},
    {"PEPCfg", kHazel | kIris,
     [](const DeviceHandle* handle, const char* file) {
       return TORPI_UpdateAdapterPEPCfgFromFile(handle, file);
     }},
};

const ImageType* FindImageType(std::string_view word) {
  for (const ImageType& type : kImageTypes) {
    if (EqualNoCase(word, type.word)) return &type;
  }
  return nullptr;
}

bool IsAllowed(const ImageType& type, const PciIdentity& pci) {
  return type.families == kEveryAdapter || IsAnyOf(pci, type.families);
}

bool IsSuccess(LibraryStatus result) {
  return result == kLibrarySuccess || result == kLibraryUpdatedRebootNeeded ||
         result == kLibraryUpdatedColdBootNeeded;
}

RebootState RebootStateOf(LibraryStatus result, bool is_multi_boot, const PciIdentity& pci) {
  if (!is_multi_boot) return kWarmReboot;
  if (result == kLibraryUpdatedColdBootNeeded) return kColdReboot;
  if (result == kLibraryUpdatedRebootNeeded) return kWarmReboot;
  return IsAnyOf(pci, kHazel | kIris | kDahlia) ? kNoReboot : kWarmReboot;
}

// Writes the document of a success or a failure and returns its code.
StatusCode DisplayUpdateInfo(Serializer& out, StatusCode code, OutputMode mode, RebootState reboot_state) {
  out.Open(mode);
  out.BeginStructure("FlashUpdate");
  out.WriteStringField("Reboot Required", kRebootTexts[reboot_state]);
  out.WriteStringField("Message", MessageFor(kMessages, code));
  out.EndStructure();
  out.Close();
  return code;
}

}  // namespace

StatusCode CmdUpdateCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplayUpdateInfo(out, code, mode, kNoReboot); };

  // Deliberately ahead of the help word: "update help" is one word too few.
  if (words.size() < 2) {
    DebugLogLevel(kDebugFailure, "%s::%s: Invalid number of arguments", kClassName, __func__);
    return fail(kWrongWordCount);
  }
  AdapterSelection selected;
  if (const StatusCode status = GetPhyPortFromAdapterString(words, selected); status != kSuccess) {
    DebugLogLevel(kDebugFailure, "%s::%s: GetPhyPortFromAdapterString failed with error=%u", kClassName,
                  __func__, status);
    return fail(status);
  }
  const char* const file = words[1].c_str();
  if (!FileExists(file)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Firmware file [%s] does not exist", kClassName, __func__, file);
    return fail(kFileNotFound);
  }
  // A missing type is an unknown type: the usage text names two words, the command needs three.
  const ImageType* const type = FindImageType(WordAt(words, 2));
  const PciIdentity& pci = selected.fc->pci;

  OutputBracket bracket(kClassName);
  if (!bracket.IsOpen()) return fail(kFileNotFound);
  if (type != nullptr && !IsAllowed(*type, pci)) {
    DebugLog("%s::%s: %s update not supported for this adapter", kClassName, __func__, type->word);
    bracket.Close();
    return fail(kFeatureNotSupported);
  }
  const LibraryStatus result = type == nullptr ? kNoUpdate : type->write(&selected.fc->handle, file);
  bracket.Close();

  if (!IsSuccess(result)) {
    DebugLogLevel(kDebugFailure, "%s::%s: Update operation failed. uReturnCode=%u", kClassName, __func__,
                  result);
    return fail(FromLibrary(result, kUpdateAnswers, kFlashUpdateError));
  }
  DebugLog("%s::%s: Update operation successful", kClassName, __func__);
  return DisplayUpdateInfo(out, kSuccess, mode, RebootStateOf(result, type->word == kMultiBootImage, pci));
}
