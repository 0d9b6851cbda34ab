#include "port/physical_port_dmi_cmds_processor.h"

#include <algorithm>
#include <array>
#include <string>

#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"
#include "framework/files.h"
#include "framework/library_call.h"
#include "port/sfp/dmi_report.h"
#include "port/sfp/sfp_image.h"
#include "runtime/debug_log.h"
#include "runtime/text.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "PhysicalPortDMICmdsProcessor";

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
  const char* word;
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

// These three write the document of an outcome and return its code.

StatusCode DisplayError(Serializer& out, StatusCode code, OutputMode mode) {
  WriteReportError(out, mode, kFrame, MessageFor(kMessages, code));
  return code;
}

StatusCode DisplaySfpSave(Serializer& out, StatusCode code, OutputMode mode) {
  const Document document(out, mode, "SaveSFPData", MessageFor(kSaveMessages, code));
  return code;
}

StatusCode DisplaySfpUpdate(Serializer& out, StatusCode code, OutputMode mode) {
  const Document document(out, mode, "SFPFirmwareUpdate", MessageFor(kUpdateMessages, code));
  return code;
}

bool IsAllZero(const ImageBuffer& image) {
  return std::all_of(image.begin(), image.end(), [](std::uint8_t byte) { return byte == 0; });
}

// A port without a module reads as zeros, which deliberately is a message and yet a success.
StatusCode DisplayNoData(Serializer& out, OutputMode mode) {
  DebugLogLevel(kDebugFailure, "%s::%s: Got all 0's data", kClassName, __func__);
  DisplayError(out, kDataNotAvailable, mode);
  return kSuccess;
}

StatusCode DisplayDMIInfo(Serializer& out, const ImageBuffer& image, OutputMode mode) {
  if (IsAllZero(image)) return DisplayNoData(out, mode);
  ReportText text(kReportBytes);
  if (text.Allocated()) AppendDmiReport(text, image);
  WriteReport(out, mode, kFrame, text);
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

StatusCode DisplayRawDMIInfo(Serializer& out, const ImageBuffer& image, OutputMode mode) {
  if (IsAllZero(image)) return DisplayNoData(out, mode);
  const SfpImage bytes(image);
  const Document document(out, mode, kFrame.structure, "Success");
  const ListField list(out, kFrame.field);
  const ListStructure element(out, kFrame.list_structure);
  out.WriteStringField("Dmi A0Data In Hex", HexBytes(bytes.first(kSfpAddressBytes)).c_str());
  out.WriteStringField("Dmi A2Data In Hex", HexBytes(bytes.last(kSfpAddressBytes)).c_str());
  return kSuccess;
}

// Reads the image and has it displayed, or displays why that failed.
StatusCode ReadAndDisplay(Serializer& out, const DeviceHandle& handle, ReadMode read_mode, OutputMode mode,
                          StatusCode (*display)(Serializer& out, const ImageBuffer& image, OutputMode mode)) {
  ImageBuffer image = {};
  const StatusCode status = CallLibrary(kClassName, "Get SFP data", kReadFailed, [&] {
    return TORPI_GetSFPDataEx(&handle, image.data(), read_mode, 0);
  });
  return status == kSuccess ? display(out, image, mode) : DisplayError(out, status, mode);
}

// The option that tells how fresh the data must be; false for a value that is neither "true" nor "false".
bool ReadRefreshOption(Words words, ReadMode& read_mode) {
  read_mode = kReadDefault;
  std::string refresh;
  if (!GetOptionValue(words, "--refresh", "-r", refresh)) return true;
  if (EqualNoCase(refresh, "true")) read_mode = kReadRefreshed;
  if (read_mode == kReadRefreshed || EqualNoCase(refresh, "false")) return true;
  DebugLogLevel(kDebugFailure, "%s::%s: refresh=%s not supported", kClassName, __func__, refresh.c_str());
  return false;
}

StatusCode CmdGetCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  ReadMode read_mode = kReadDefault;
  // A wrong option deliberately ends the command without a document.
  if (!ReadRefreshOption(words, read_mode)) return kInvalidParameter;
  return ReadAndDisplay(out, selected.fc->handle, read_mode, mode, &DisplayDMIInfo);
}

StatusCode CmdGetRawCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess) {
    return DisplayError(out, status, mode);
  }
  return ReadAndDisplay(out, selected.fc->handle, kReadRaw, mode, &DisplayRawDMIInfo);
}

StatusCode CmdSaveCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplaySfpSave(out, code, mode); };

  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess)
    return fail(status);
  const std::string file(WordAt(words, 1));
  // A missing path leaves no word for the mode either.
  const SaveMode* const save_mode = FindSaveMode(WordAt(words, 2));
  LibraryStatus result = kLibrarySuccess;
  const auto save = [&] {
    if (save_mode != nullptr) result = save_mode->write(&selected.fc->handle, file.c_str());
  };
  if (!CallInBracket(kClassName, save)) return fail(kFileNotFound);
  if (save_mode == nullptr) {
    // The number is deliberately that of the output's form, whatever word was given.
    DebugLogLevel(kDebugFailure, "%s::%s: Invalid mode %u", kClassName, __func__, std::uint32_t{mode});
    return fail(kReadFailed);
  }
  return DisplaySfpSave(out, StatusOfCall(kClassName, "SFP data save", result, kSaveAnswers, kReadFailed),
                        mode);
}

StatusCode CmdUpdateCommon(Serializer& out, Words& words, OutputMode mode) {
  const TraceScope trace(kClassName, __func__);
  const auto fail = [&](StatusCode code) { return DisplaySfpUpdate(out, code, mode); };

  PortSelection selected;
  if (const StatusCode status = GetPhyPortFromPortString(words, selected); status != kSuccess)
    return fail(status);
  const FCProtocolEntry& fc = *selected.fc;
  const std::string file(WordAt(words, 1));
  if (!FileExists(file.c_str())) {
    DebugLogLevel(kDebugFailure, "%s::%s: SFP Image file [%s] does not exist", kClassName, __func__,
                  file.c_str());
    return fail(kFileNotFound);
  }
  if (!EqualNoCase(WordAt(words, 2), kUpdatableVendor)) {
    DebugLogLevel(kDebugFailure, "%s::%s: SFP Firmware update not supported for this vendor", kClassName,
                  __func__);
    return fail(kSfpVendorNotSupported);
  }
  if (!IsDeviceGroupDahlia(fc.pci)) {
    DebugLogLevel(kDebugFailure, "%s::%s: SFP Firmware update not supported for this adapter", kClassName,
                  __func__);
    return fail(kFeatureNotSupported);
  }
  if ((fc.driver_flags & kSfpFirmwareUpdate) == 0) {
    DebugLogLevel(kDebugFailure, "%s::%s: SFP Firmware update not supported by the driver", kClassName,
                  __func__);
    return fail(kNotSupportedByDriver);
  }
  LibraryStatus result = kLibrarySuccess;
  const auto update = [&] {
    result = TORPI_SfpModuleFirmwareUpdate(&fc.handle, file.c_str(), kUpdatableKind);
  };
  if (!CallInBracket(kClassName, update)) return fail(kFileNotFound);
  return DisplaySfpUpdate(
      out, StatusOfCall(kClassName, "SFP FW update", result, kUpdateAnswers, kSfpUpdateRefused), mode);
}

constexpr auto CmdGet = &InXml<CmdGetCommon>;
constexpr auto CmdGetRaw = &InXml<CmdGetRawCommon>;
constexpr auto CmdUpdate = &InXml<CmdUpdateCommon>;
constexpr auto CmdSave = &InXml<CmdSaveCommon>;
constexpr auto CmdGetCli = &InText<CmdGetCommon>;
constexpr auto CmdGetRawCli = &InText<CmdGetRawCommon>;
constexpr auto CmdUpdateCli = &InText<CmdUpdateCommon>;
constexpr auto CmdSaveCli = &InText<CmdSaveCommon>;

constexpr const char* kGetDescription = "Get Sorvex Physical Port SFP DMI information";
constexpr const char* kGetRawDescription = "Get Sorvex Physical Port SFP DMI information as raw hex data";
constexpr const char* kUpdateDescription = "Update Sorvex Physical Port SFP DMI Firmware";
constexpr const char* kSaveDescription = "Save Sorvex Physical Port SFP DMI information in a file";

// The indexes of `update` and `save` deliberately repeat: plain leaves have no usage text.
constexpr Leaf kLeaves[] = {
    {"get", 0, kGetDescription, CmdGet},
    {"getraw", 1, kGetRawDescription, CmdGetRaw},
    {"update", 0, kUpdateDescription, CmdUpdate},
    {"save", 1, kSaveDescription, CmdSave},
    {"help", 2, "List of available commands", &CommandNode::CmdHelp, &CommandNode::CmdUsage},
    {"getcli", 3, kGetDescription, CmdGetCli, &CommandNode::CmdUsage},
    {"getrawcli", 4, kGetRawDescription, CmdGetRawCli, &CommandNode::CmdUsage},
    {"updatecli", 5, kUpdateDescription, CmdUpdateCli, &CommandNode::CmdUsage},
    {"savecli", 6, kSaveDescription, CmdSaveCli, &CommandNode::CmdUsage},
};

constexpr UsageText kUsage[] = {
    {3, "Usage: get [port identifier]\r\n"},
    {4, "Usage: getraw [port identifier]\r\n"},
    {5, "Usage: update [port identifier]\r\n"},  // deliberately without the file and the vendor, which it
                                                 // needs too
    {6, "Usage: save [port identifier] [sfpfile] [mode]\r\n"},
};

constexpr NodeClass kClass = {kClassName, "Port dmi", kLeaves, kUsage};

}  // namespace

PhysicalPortDMICmdsProcessor::PhysicalPortDMICmdsProcessor(CmdProcessor* parent, const SubNode& self)
    : CommandNode(parent, self, kClass) {}
