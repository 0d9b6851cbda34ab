#include "port/physical_port_dmi_cmds_processor.h"

#include <algorithm>
#include <array>
#include <string>

#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/files.h"
#include "framework/inline_text.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"
#include "port/sfp/dmi_report.h"
#include "port/sfp/sfp_image.h"
#include "runtime/text.h"

namespace {

constexpr ReportFrame kFrame = {"DMIInformation", "Dmi Info", "DMIInfoList", "Dmi Data"};
constexpr std::size_t kReportBytes = 16384;

using ImageBuffer = std::array<std::uint8_t, kSfpImageBytes>;

// How the library reads the module.
enum ReadMode : std::uint32_t { kReadDefault = 0, kReadRefreshed = 1, kReadRaw = 3 };

// The one kind of module whose firmware can be updated, and what the library calls that kind.
constexpr const char* kUpdatableVendor = "WTD";
constexpr std::uint32_t kUpdatableKind = 2;

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kDataNotAvailable, "Failed, Data not available"},
    {kReadFailed, "Failed, SFP DMI data read failed"},
    kHostNotFound,
    kFileNotFound,
    kAdapterNotFound,
    kFeatureNotSupported,
    kMaintenanceMode,
};

constexpr StatusMessage kSaveMessages[] = {
    kSuccess,
    kInvalidParameter,
    {kDataNotAvailable, "Failed, Data not available"},
    {kReadFailed, "Failed, SFP DMI data read failed"},
    kHostNotFound,
    kFileNotFound,
    kAdapterNotFound,
    kFileOpenError,
    kFeatureNotSupported,
    kMemoryError,
    kVirtualPort,
    kMaintenanceMode,
};

constexpr StatusMessage kUpdateMessages[] = {
    kSuccess,
    kInvalidParameter,
    {kDataNotAvailable, "Failed, Data not available"},
    kHostNotFound,
    kFileNotFound,
    kAdapterNotFound,
    kFileOpenError,
    kChecksumError,
    kFeatureNotSupported,
    {kNotSupportedByDriver, "Failed, Feature not supported by driver"},
    kSfpFileNotSupported,
    kSfpVendorNotSupported,
    kSfpUpdateFailed,
    kMaintenanceMode,
};

constexpr LibraryAnswer kSaveAnswers[] = {
    {kLibraryFileNotFound, kFileNotFound},
    {kLibraryNoMemory, kMemoryError},
    {kLibrarySfpOfVirtualPort, kVirtualPort},
    {kLibraryFileOpenError, kFileOpenError},
    {kLibraryFeatureNotSupported, kFeatureNotSupported},
    {kLibraryAdapterNotFound, kAdapterNotFound},
    {kLibraryAdapterLacksFeature, kFeatureNotSupported},
};

constexpr LibraryAnswer kUpdateAnswers[] = {
    {kLibraryFileOpenError, kFileOpenError},
    {kLibraryWrongChecksum, kChecksumError},
    {kLibraryFeatureNotSupported, kFeatureNotSupported},
    {kLibraryAdapterNotFound, kAdapterNotFound},
    {kLibraryDriverLacksFeature, kNotSupportedByDriver},
    {kLibrarySfpUpdateFailed, kSfpUpdateFailed},
    {kLibrarySfpVendorNotSupported, kSfpVendorNotSupported},
    {kLibrarySfpFileNotSupported, kSfpFileNotSupported},
};

// One kind of file that the library writes. Its function is called through `write`, so that it is bound only
// when used.
struct SaveMode {
  InlineText<6> word;
  LibraryStatus (*write)(const DeviceHandle* handle, const char* file);
};

constexpr SaveMode kSaveModes[] = {
    {"Binary",
     [](const DeviceHandle* handle, const char* file) { return TORPI_SaveSFPDataToFile(handle, file); }},
    {"Text",
     [](const DeviceHandle* handle, const char* file) { return TORPI_SaveSFPDataToTextFile(handle, file); }},
};

const SaveMode* FindSaveMode(std::string_view word) {
  for (const SaveMode& mode : kSaveModes) {
    if (EqualNoCase(word, mode.word)) return &mode;
  }
  return nullptr;
}

// These two write the document of an outcome and return its code.

StatusCode DisplaySfpSave(CommandRun& run, StatusCode code) {
  const FunctionScope function(run, __func__);
  const Document document(run, "SaveSFPData", MessageFor(TableOf<kSaveMessages>(), code));
  return code;
}

StatusCode DisplaySfpUpdate(CommandRun& run, StatusCode code) {
  const FunctionScope function(run, __func__);
  const Document document(run, "SFPFirmwareUpdate", MessageFor(TableOf<kUpdateMessages>(), code));
  return code;
}

bool IsAllZero(const ImageBuffer& image) {
  return std::all_of(image.begin(), image.end(), [](std::uint8_t byte) { return byte == 0; });
}

// A port without a module reads as zeros. Intended: that is a failure's document and yet a success.
StatusCode DisplayNoData(CommandRun& run) {
  run.DisplayError(run.Refuse(kDataNotAvailable, "Got all 0's data"));
  return kSuccess;
}

StatusCode DisplayDMIInfo(CommandRun& run, const ImageBuffer& image) {
  const FunctionScope function(run, __func__);
  if (IsAllZero(image)) return DisplayNoData(run);
  ReportDocument document(run, kFrame);
  ReportText text(kReportBytes);
  if (!text.Allocated()) return run.Refuse(kMemoryError, "Output memory alloc failed");
  AppendDmiReport(text, image);
  document.Write(text);
  return kSuccess;
}

std::string HexBytes(SfpImage bytes) {
  std::string text;
  std::string octet;
  for (const std::uint8_t byte : bytes) {
    FormatString(octet, "%02hhx ", byte);
    text += octet;
  }
  return text;
}

StatusCode DisplayRawDMIInfo(CommandRun& run, const ImageBuffer& image) {
  const FunctionScope function(run, __func__);
  if (IsAllZero(image)) return DisplayNoData(run);
  const SfpImage bytes(image);
  const Document document(run, kFrame.structure, "Success");
  const ListField list(run.out, kFrame.field);
  const ListStructure element(run.out, kFrame.list_structure);
  run.out.WriteStringField("Dmi A0Data In Hex", HexBytes(bytes.first(kSfpAddressBytes)).c_str());
  run.out.WriteStringField("Dmi A2Data In Hex", HexBytes(bytes.last(kSfpAddressBytes)).c_str());
  return kSuccess;
}

StatusCode ReadImage(const CommandRun& run, const FCProtocolEntry& fc, ReadMode mode, ImageBuffer& image) {
  image = {};
  return CallLibrary(run, "Get SFP data", kReadFailed,
                     [&] { return TORPI_GetSFPDataEx(&fc.handle, image.data(), mode, 0); });
}

// The option that says how fresh the data must be; kInvalidParameter for a value that is neither "true" nor
// "false".
StatusCode ReadRefreshOption(const CommandRun& run, ReadMode& mode) {
  Words words = run.words;
  std::string refresh;
  mode = kReadDefault;
  if (!GetOptionValue(words, "--refresh", "-r", refresh) || EqualNoCase(refresh, "false")) return kSuccess;
  if (!EqualNoCase(refresh, "true")) {
    return run.Refuse(kInvalidParameter, "refresh=%s not supported", refresh.c_str());
  }
  mode = kReadRefreshed;
  return kSuccess;
}

StatusCode CmdGetCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  ReadMode mode = kReadDefault;
  // Intended: a wrong option ends the command without a document.
  if (const StatusCode status = ReadRefreshOption(run, mode); status != kSuccess) return status;
  ImageBuffer image;
  const StatusCode status = ReadImage(run, *selected.fc, mode, image);
  return status == kSuccess ? DisplayDMIInfo(run, image) : run.DisplayError(status);
}

StatusCode CmdGetRawCommon(CommandRun& run) {
  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) {
    return run.DisplayError(status);
  }
  ImageBuffer image;
  const StatusCode status = ReadImage(run, *selected.fc, kReadRaw, image);
  return status == kSuccess ? DisplayRawDMIInfo(run, image) : run.DisplayError(status);
}

StatusCode CmdSaveCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return DisplaySfpSave(run, code); };

  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) return fail(status);
  const std::string file(WordAt(run.words, 1));
  // A missing path leaves no word for the mode either.
  const SaveMode* const save_mode = FindSaveMode(WordAt(run.words, 2));

  OutputBracket bracket(run);
  if (!bracket.IsOpen()) return fail(kFileNotFound);
  if (save_mode == nullptr) {
    bracket.Close();
    // Intended: the number is that of the output's form, whatever word was given.
    return fail(run.Refuse(kReadFailed, "Invalid mode %d", static_cast<int>(run.mode)));
  }
  const LibraryStatus result = save_mode->write(&selected.fc->handle, file.c_str());
  bracket.Close();
  return DisplaySfpSave(run, StatusOfCall(run, "SFP data save", result, kSaveAnswers, kReadFailed));
}

StatusCode CmdUpdateCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return DisplaySfpUpdate(run, code); };

  PortSelection selected;
  if (const StatusCode status = SelectPort(run, selected); status != kSuccess) return fail(status);
  const FCProtocolEntry& fc = *selected.fc;
  const std::string file(WordAt(run.words, 1));
  if (!FileExists(file.c_str())) {
    return fail(run.Refuse(kFileNotFound, "SFP Image file [%s] does not exist", file.c_str()));
  }
  if (!EqualNoCase(WordAt(run.words, 2), kUpdatableVendor)) {
    return fail(run.Refuse(kSfpVendorNotSupported, "SFP Firmware update not supported for this vendor"));
  }
  if (!IsDeviceGroupDahlia(fc.pci)) {
    return fail(run.Refuse(kFeatureNotSupported, "SFP Firmware update not supported for this adapter"));
  }
  if ((fc.driver_flags & kSfpFirmwareUpdate) == 0) {
    return fail(run.Refuse(kNotSupportedByDriver, "SFP Firmware update not supported by the driver"));
  }
  return DisplaySfpUpdate(run, CallLibrary(run, "SFP FW update", kUpdateAnswers, kSfpUpdateRefused, [&] {
                            return TORPI_SfpModuleFirmwareUpdate(&fc.handle, file.c_str(), kUpdatableKind);
                          }));
}

constexpr CommandRow kCommands[] = {
    {"get", "Get Sorvex Physical Port SFP DMI information", "Usage: get [port identifier]\r\n",
     &CmdGetCommon},
    {.word = "getraw",
     .description = "Get Sorvex Physical Port SFP DMI information as raw hex data",
     .usage = "Usage: getraw [port identifier]\r\n",
     .run = &CmdGetRawCommon,
     .function = "GetRaw"},
    // Intended: the indexes of the first two again, so that `help` has 2.
    {.word = "update",
     .description = "Update Sorvex Physical Port SFP DMI Firmware",
     .usage = "Usage: update [port identifier]\r\n",  // without the file and the vendor, which it needs too
     .run = &CmdUpdateCommon,
     .usage_index = 0},
    {.word = "save",
     .description = "Save Sorvex Physical Port SFP DMI information in a file",
     .usage = "Usage: save [port identifier] [sfpfile] [mode]\r\n",
     .run = &CmdSaveCommon,
     .usage_index = 1},
};

}  // namespace

NodeClass PhysicalPortDMICmdsProcessor() {
  return {
      .name = "PhysicalPortDMICmdsProcessor",
      .help_words = "Port dmi",
      .commands = TableOf<kCommands>(),
      .frame = kFrame,
      .messages = TableOf<kMessages>(),
      .help_description = "List of available commands",
  };
}
