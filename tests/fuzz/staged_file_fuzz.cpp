// A staged file with any content: the first byte chooses what reads it, the others are the file.
#include <algorithm>
#include <string>
#include <vector>

#include "config/staged/file_ops.h"
#include "config_host.h"

namespace {

// Bytes that no key names keep what the device gave.
template <class Record>
void RequireNoise(const Record& record, std::size_t from, std::size_t to) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&record);
  Require(std::all_of(bytes + from, bytes + to, [](std::uint8_t byte) { return byte == kNoise; }));
}

// A field is what the device gave, or a value that its rule allows.
void RequireRange(std::uint32_t value, std::uint32_t limit) {
  Require(value == 0xA5A5A5A5u || value <= limit);
}

template <class Settings>
StatusCode ReadBy(Settings& settings, const Words& words) {
  TestRun test(words);
  Require(settings.Open(test.run, StagedCommand::kGet) == kSuccess);
  const StatusCode status =
      settings.ReadFile(test.run, StagedFile(g_file.Path(), Settings::kNode.value_size));
  Require(status == kSuccess || status == kInvalidParameter);
  return status;
}

void ReadParams() {
  HbaParams params(g_host.fc);
  if (ReadBy(params, {kPort}) != kSuccess) return;
  const HBAParamsInfo& record = params.Record();
  RequireRange(record.data_rate, 7);
  RequireRange(record.connection_options, 2);
  RequireRange(record.hard_loop_id, 125);
  RequireRange(record.link_down_timeout, 240);
  RequireRange(record.disable_bios, 1);
  for (const auto& [from, to] : std::vector<std::pair<std::size_t, std::size_t>>{{28, 32},
                                                                                 {40, 44},
                                                                                 {60, 68},
                                                                                 {80, 100},
                                                                                 {104, 148},
                                                                                 {152, 208},
                                                                                 {216, 236},
                                                                                 {240, 286},
                                                                                 {287, 512}}) {
    RequireNoise(record, from, to);
  }
}

void ReadBbcr() {
  Bbcr bbcr(g_host.fc);
  if (ReadBy(bbcr, {kPort}) != kSuccess) return;
  Require(bbcr.Record().status == kNoise || bbcr.Record().status <= 1);
  Require(bbcr.Record().configured == kNoise || bbcr.Record().configured <= 15);
}

void RequireBootRecord(const HBAParamsInfo& record) {
  RequireRange(record.enable_selectable_boot, 1);
  RequireRange(record.force_world_login, 1);
  for (const auto& [from, to] : std::vector<std::pair<std::size_t, std::size_t>>{{0, 100},
                                                                                 {108, 116},
                                                                                 {126, 128},
                                                                                 {132, 140},
                                                                                 {148, 168},
                                                                                 {178, 180},
                                                                                 {190, 192},
                                                                                 {202, 216},
                                                                                 {220, 244},
                                                                                 {284, 512}}) {
    RequireNoise(record, from, to);
  }
}

void ReadBoot() {
  BootConfig boot(g_host.fc);
  if (ReadBy(boot, {kPort}) == kSuccess) RequireBootRecord(boot.Record());
}

void ReadBootExt() {
  BootConfigExt boot(g_host.fc);
  if (ReadBy(boot, {kPort, "-b", "NVME"}) != kSuccess) return;
  RequireBootRecord(boot.Record());
  const NVMeBootRecord& nvme = boot.NvmeRecord();
  RequireNoise(nvme, 0, 16);
  RequireNoise(nvme, 2288, 2560);
  for (const NVMeBootEntry& entry : nvme.entries) Require(entry.enable == kNoise || entry.enable <= 1);
}

// What is found is a word, and what is written is in the file.
void ReadAndWrite() {
  const std::string path = g_file.Path();
  char value[16];
  if (FileOps::GetKeyValueFromFile(path.c_str(), "Data_Rate", value, sizeof value, '=') == FileOps::kFound) {
    const std::string found = value;
    Require(found.size() < sizeof value && found.find_first_of(" \t\n\v\f\r#") == std::string::npos);
  }
  const std::string before = g_file.Read();
  Require(FileOps::UpdateKeyValueInFile(path.c_str(), "Data_Rate", "7") == FileOps::kDone);
  const std::string after = g_file.Read();
  Require(after.find("Data_Rate=7\n") != std::string::npos);
  Require(FileOps::IsFilePresent((path + "_tmp").c_str()) == 0);
  if (before.find("Data_Rate") == std::string::npos) Require(after == before + "Data_Rate=7\n");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr void (*kReaders[])() = {&ReadParams, &ReadBbcr, &ReadBoot, &ReadBootExt, &ReadAndWrite};
  if (size == 0) return 0;
  g_host.fc.pci.device_id = 0x3522;
  g_file.Write(std::string(data + 1, data + size));
  kReaders[data[0] % std::size(kReaders)]();
  return 0;
}
