// A staged file with any content: the first byte chooses what reads it, the others are the file.
//
// Oracle: a second implementation. The record that the program makes of a file is, byte by byte and also
// where the file is refused, what the keys, places and limits below and the reader of text_model.h give; an
// updated file is the one that the model writes.
#include <cstring>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "config/staged/file_ops.h"
#include "config_host.h"
#include "text_model.h"

namespace {

enum class Kind { kNumber, kOperationMode, kFrameSize, kName, kText };

// Where a key's value goes.
struct Row {
  const char* key;
  std::size_t offset;
  std::size_t width;
  std::uint32_t limit = UINT32_MAX;
  Kind kind = Kind::kNumber;
};

// In the order in which the values are checked.
constexpr Row kParams[] = {
    {"Connection_Options", 4, 4, 2},
    {"Data_Rate", 0, 4, 7},
    {"Operation_Mode", 68, 4, 6, Kind::kOperationMode},
    {"Frame_Size", 24, 4, 2112, Kind::kFrameSize},
    {"Hard_Loop_ID", 20, 4, 125},
    {"Loop_Reset_Delay", 44, 4, 255},
    {"Interrupt_Delay_Timer", 72, 4, 255},
    {"Execution_Throttle", 56, 4, 65535},
    {"Login_Retry_Count", 48, 4, 255},
    {"Port_Down_Retry_Count", 52, 4, 255},
    {"Link_Down_Timeout", 76, 4, 240},
    {"Luns_Per_Target", 12, 4, 256},
    {"Disable_BIOS", 100, 4, 1},
    {"Enable_Hard_Loop_Id", 16, 4, 1},
    {"Enable_Fibre_Channel_Tape_Support", 8, 4, 1},
    {"Enable_Lip_Full_Login", 32, 4, 1},
    {"Enable_Target_Reset", 36, 4, 1},
    {"Enable_Receive_Out_Of_Order_Frames", 148, 4, 1},
    {"Enable_LR", 208, 4, 1},
    {"Enable_Fabric_Assign_WWN", 212, 4, 1},
    {"Disable_SCM", 236, 4, 1},
    {"Enable_Virtual_Lane", 286, 1, 1},
};

constexpr Row kBoot[] = {
    {"Disable_BIOS", 100, 4, 1},
    {"Fabric_Assigned_Boot_Lun", 216, 4, 1},
    {"Selectable_Boot", 104, 4, 1},
    {"Selective_Login", 128, 4, 1},
    {"Selective_LUN_Login", 140, 4, 1},
    {"World_Login", 144, 4, 1},
    {"Primary_Boot_Target_WWPN", 116, 8, 0, Kind::kName},
    {"Primary_Boot_Target_LUN", 124, 2},
    {"Alternate_Boot_Target_1_WWPN", 168, 8, 0, Kind::kName},
    {"Alternate_Boot_Target_1_LUN", 176, 2},
    {"Alternate_Boot_Target_2_WWPN", 180, 8, 0, Kind::kName},
    {"Alternate_Boot_Target_2_LUN", 188, 2},
    {"Alternate_Boot_Target_3_WWPN", 192, 8, 0, Kind::kName},
    {"Alternate_Boot_Target_3_LUN", 200, 2},
    {"Alternate_Boot_Target_4_WWPN", 244, 8, 0, Kind::kName},
    {"Alternate_Boot_Target_4_LUN", 252, 2},
    {"Alternate_Boot_Target_5_WWPN", 254, 8, 0, Kind::kName},
    {"Alternate_Boot_Target_5_LUN", 262, 2},
    {"Alternate_Boot_Target_6_WWPN", 264, 8, 0, Kind::kName},
    {"Alternate_Boot_Target_6_LUN", 272, 2},
    {"Alternate_Boot_Target_7_WWPN", 274, 8, 0, Kind::kName},
    {"Alternate_Boot_Target_7_LUN", 282, 2},
};

// Of one NVMe entry, after "NVME_<number>_".
constexpr Row kNvme[] = {
    {"WWNN", 8, 8, 0, Kind::kName},   {"WWPN", 0, 8, 0, Kind::kName}, {"Enable", 24, 1, 1},
    {"NQN", 28, 256, 0, Kind::kText}, {"ControllerID", 20, 2},        {"NamespaceID", 16, 4},
};
constexpr std::size_t kNvmeEntries = 8;
constexpr std::size_t kNvmeFirst = 16;
constexpr std::size_t kNvmeWidth = 284;

constexpr Row kBbcr[] = {{"BBCR_Status", 0, 1, 1}, {"BBCR_Count", 1, 1, 15}};

// A record as the model fills it.
struct Bytes {
  explicit Bytes(std::size_t size) : bytes(size, static_cast<char>(kNoise)) {}

  template <class Record>
  bool Are(const Record& record) const {
    return bytes.size() <= sizeof record && std::memcmp(&record, bytes.data(), bytes.size()) == 0;
  }

  std::string bytes;
};

bool IsAllowed(const Row& row, std::uint32_t number) {
  if (row.kind == Kind::kOperationMode) return number == 0 || number == 5 || number == 6;
  if (row.kind == Kind::kFrameSize)
    return number == 512 || number == 1024 || number == 2048 || number == 2112;
  return number <= row.limit;
}

// A text that the field has already leaves the bytes after its end alone.
void StoreText(const Row& row, const std::string& value, char* field) {
  if (value == std::string_view(field, row.width - 1).substr(0, strnlen(field, row.width - 1))) return;
  std::memset(field, 0, row.width);
  value.copy(field, row.width - 1);
}

// False for a value that its rule forbids.
bool Store(const Row& row, const std::string& value, char* record) {
  char* const field = record + row.offset;
  if (row.kind == Kind::kText) {
    StoreText(row, value, field);
    return true;
  }
  if (row.kind == Kind::kName) {
    const auto name = model::NameOf(value);
    if (name.has_value()) std::memcpy(field, name->data(), name->size());
    return true;
  }
  const std::uint32_t number = model::NumberOf(value);
  if (!IsAllowed(row, number)) return false;
  for (std::size_t i = 0; i < row.width; ++i) field[i] = static_cast<char>(number >> 8 * i);
  return true;
}

// Puts the file's values over the record's, up to the first that its rule forbids. False for that one.
bool Overlay(const model::Lines& file, std::span<const Row> rows, const std::string& key_begin,
             std::size_t value_size, char* record) {
  for (const Row& row : rows) {
    const auto value = file.Value(key_begin + row.key, value_size);
    if (value.has_value() && !Store(row, *value, record)) return false;
  }
  return true;
}

template <class Settings>
StatusCode ReadBy(Settings& settings, const Words& words) {
  TestRun test(words);
  Require(settings.Open(test.run, StagedCommand::kGet) == kSuccess);
  return settings.ReadFile(test.run, StagedFile(ScratchFile::Path(), Settings::kNode.value_size));
}

void RequireStatus(StatusCode status, bool allowed) {
  Require(status == (allowed ? kSuccess : kInvalidParameter));
}

void ReadParams(std::string_view bytes) {
  const model::Lines file(bytes);
  HbaParams params(g_host.fc);
  const StatusCode status = ReadBy(params, {kPort});
  Bytes expected(512);
  RequireStatus(status, Overlay(file, kParams, "", 512, expected.bytes.data()));
  Require(expected.Are(params.Record()));
}

void ReadBbcr(std::string_view bytes) {
  const model::Lines file(bytes);
  Bbcr bbcr(g_host.fc);
  const StatusCode status = ReadBy(bbcr, {kPort});
  Bytes expected(2);
  RequireStatus(status, Overlay(file, kBbcr, "", 512, expected.bytes.data()));
  Require(expected.Are(bbcr.Record()));
}

void ReadBoot(std::string_view bytes) {
  const model::Lines file(bytes);
  BootConfig boot(g_host.fc);
  const StatusCode status = ReadBy(boot, {kPort});
  Bytes expected(512);
  RequireStatus(status, Overlay(file, kBoot, "", 512, expected.bytes.data()));
  Require(expected.Are(boot.Record()));
  const auto mode = file.Value("Boot_Mode", 512);
  const bool is_uefi = mode.has_value() && model::NumberOf(*mode) == 1;
  Require(boot.Mode() == (is_uefi ? BootMode::kUefi : BootMode::kBios));
}

bool OverlayNvme(const model::Lines& file, char* record) {
  for (std::size_t i = 0; i < kNvmeEntries; ++i) {
    const std::string begin = "NVME_" + std::to_string(i) + "_";
    if (!Overlay(file, kNvme, begin, 256, record + kNvmeFirst + i * kNvmeWidth)) return false;
  }
  return true;
}

void ReadBootExt(std::string_view bytes) {
  const model::Lines file(bytes);
  BootConfigExt boot(g_host.fc);
  const StatusCode status = ReadBy(boot, {kPort, "-b", "NVME"});
  Bytes record(512);
  Bytes nvme(2560);
  constexpr Row kNvmeEnable = {"NVMe_Enable", 0, 4, 1};
  const auto mode = file.Value("Boot_Mode", 256);
  const std::uint32_t number = mode.has_value() ? model::NumberOf(*mode) : 4;
  char enable[4] = {};
  const bool allowed =
      (number == 1 || number == 2 || number == 4) && Overlay(file, kBoot, "", 256, record.bytes.data()) &&
      Overlay(file, {&kNvmeEnable, 1}, "", 256, enable) && OverlayNvme(file, nvme.bytes.data());
  RequireStatus(status, allowed);
  Require(record.Are(boot.Record()) && nvme.Are(boot.NvmeRecord()));
  if (allowed) Require(static_cast<std::uint32_t>(boot.Mode()) == number);
}

// Both ways of the file's own functions, with a buffer that a long value does not fit.
void ReadAndWrite(std::string_view file) {
  const char* const path = ScratchFile::Path();
  char value[16] = "nothing";
  const int result = FileOps::GetKeyValueFromFile(path, "Data_Rate", value, sizeof value, '=');
  const auto expected = model::Lines(file).Value("Data_Rate", sizeof value);
  Require(result == (expected.has_value() ? FileOps::kFound : FileOps::kNotFound));
  Require(value == expected.value_or("nothing"));
  Require(FileOps::UpdateKeyValueInFile(path, "Data_Rate", "7") == FileOps::kDone);
  Require(ScratchFile::Read() == model::Updated(file, "Data_Rate", "7"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr void (*kReaders[])(std::string_view) = {&ReadParams, &ReadBbcr, &ReadBoot, &ReadBootExt,
                                                    &ReadAndWrite};
  if (size == 0) return 0;
  g_host.fc.pci.device_id = 0x3522;
  const std::string_view file(reinterpret_cast<const char*>(data + 1), size - 1);
  ScratchFile::Write(file);
  kReaders[data[0] % std::size(kReaders)](file);
  RequireFilesInOrder();
  return 0;
}
