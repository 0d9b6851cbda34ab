#include "adapter/adapter_update.h"

#include <string_view>

#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/files.h"
#include "framework/inline_text.h"
#include "framework/output_bracket.h"
#include "framework/table.h"

namespace {

enum RebootState { kNoReboot, kWarmReboot, kColdReboot };
constexpr InlineText<18> kRebootTexts[] = {"false", "true", "Cold Boot Required"};

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
  InlineText<9> word;
  InlineText<16> log_name;
  FamilySet families;  // kEveryAdapter: also those of no family
  LibraryStatus (*write)(const DeviceHandle* handle, const char* file);
};

constexpr FamilySet kEveryAdapter = 0;
constexpr char kMultiBootImage[] = "MBI";

constexpr ImageType kImageTypes[] = {
    {kMultiBootImage, "Multi-boot image", kEveryAdapter,
     [](const DeviceHandle* handle, const char* file) { return TORPI_doOptionROMUpdate(handle, file, 0); }},
    {"BrdCfg", "Board Config", kElm | kHazel | kIris,
     [](const DeviceHandle* handle, const char* file) {
       return TORPI_UpdateSpecificFlashRegionFromFile(handle, file);
     }},
    {"FWPreload", "FW Preload Table", kBirch | kElm | kHazel | kIris,
     [](const DeviceHandle* handle, const char* file) {
       return TORPI_UpdateAdapterFirmwareTableFromFile(handle, file);
     }},
    {"PEPCfg", "PEP Config", kHazel | kIris,
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
StatusCode DisplayUpdateInfo(CommandRun& run, StatusCode code, RebootState reboot_state) {
  const FunctionScope function(run, __func__);
  const char* const message = MessageFor(TableOf<kMessages>(), code);
  run.out.Open(run.mode);
  run.out.BeginStructure("FlashUpdate");
  run.out.WriteStringField("Reboot Required", kRebootTexts[reboot_state]);
  run.out.WriteStringField("Message", message);
  run.out.EndStructure();
  run.out.Close();
  run.Trace("%s=%s", "Message", message);
  return code;
}

}  // namespace

StatusCode CmdUpdateCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return DisplayUpdateInfo(run, code, kNoReboot); };

  // Before the help word is looked for: "update help" is one word too few.
  if (run.words.size() < 2) return fail(run.Refuse(kWrongWordCount, "Invalid number of arguments"));
  AdapterSelection selected;
  if (const StatusCode status = GetPhyPortFromAdapterString(run, selected); status != kSuccess) {
    return fail(
        run.Refuse(status, "GetPhyPortFromAdapterString failed with error=%d", static_cast<int>(status)));
  }
  const char* const file = run.words[1].c_str();
  if (!FileExists(file)) return fail(run.Refuse(kFileNotFound, "Firmware file [%s] does not exist", file));
  // A missing type is an unknown type: the usage text names two words, the command needs three.
  const ImageType* const type = FindImageType(WordAt(run.words, 2));
  const PciIdentity& pci = selected.fc->pci;

  OutputBracket bracket(run);
  if (!bracket.IsOpen()) return fail(kFileNotFound);
  if (type != nullptr && !IsAllowed(*type, pci)) {
    run.LogFailure("%s update not supported for this adapter", type->log_name.CString());
    bracket.Close();
    return fail(kFeatureNotSupported);
  }
  const LibraryStatus result = type == nullptr ? kNoUpdate : type->write(&selected.fc->handle, file);
  bracket.Close();

  if (!IsSuccess(result)) {
    run.LogFailure("Update operation failed. uReturnCode=%d", static_cast<int>(result));
    return fail(FromLibrary(result, kUpdateAnswers, kFlashUpdateError));
  }
  run.Trace("Update operation successful");
  return DisplayUpdateInfo(run, kSuccess, RebootStateOf(result, type->word == kMultiBootImage, pci));
}
