// A host with one port, a staged file, and the steps of a command on them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "config/staged/staged_file.h"
#include "framework/device_library/target_records.h"
#include "framework/words.h"
#include "support/unit_command_run.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"
#include "support/unit_host_records.h"
#include "unit/config/config_library.h"

inline constexpr const char* kPort = "FC_21:00:00:11:22:33:44:55";
inline constexpr std::uint16_t kSorvex = 0x1C9E;
inline constexpr std::uint16_t kPartner = 0x1D4A;

// A device with a name for the test's output.
struct Model {
  std::uint16_t device;
  std::uint16_t subsystem_vendor = kSorvex;
  std::uint16_t subsystem_device = 0x0001;
};

// Every device that some rule names, and one of no family.
inline constexpr std::uint16_t kDevices[] = {
    0x3A02, 0x3A12, 0x5C02, 0x5C12,  // Aster
    0x3B41, 0x3B40,                  // Birch; the second is Dahlia too
    0x7102, 0x7122, 0x7132, 0x7932,  // Cedar; Ginkgo; Fern twice
    0x3640, 0x3648, 0x3740, 0x3748, 0x3A40, 0x3A48, 0x3B48, 0x3E40, 0x3E48, 0x3F40,  // Dahlia
    0x3432, 0x3C32,                                                                  // Elm
    0x3522, 0x3D22, 0x3D62,                                                          // Hazel
    0x3150, 0x3350, 0x3850, 0x3950,                                                  // Iris
    0x1234,
};

// Each family test written out by hand.
inline bool OneOf(std::uint16_t device, std::initializer_list<std::uint16_t> devices) {
  for (const std::uint16_t listed : devices) {
    if (listed == device) return true;
  }
  return false;
}
inline bool Aster(std::uint16_t device) {
  return OneOf(device, {0x3A02, 0x3A12, 0x5C02, 0x5C12});
}
inline bool Birch(std::uint16_t device) {
  return OneOf(device, {0x3B40, 0x3B41});
}
inline bool Cedar(std::uint16_t device) {
  return OneOf(device, {0x7102, 0x7122, 0x7132, 0x7932});
}
inline bool Ginkgo(std::uint16_t device) {
  return device == 0x7122;
}
inline bool FcElm(std::uint16_t device) {
  return OneOf(device, {0x3432, 0x3C32});
}
inline bool Elm(std::uint16_t device) {
  return OneOf(device, {0x3432, 0x3C32, 0x7132, 0x7932});
}
inline bool Hazel(std::uint16_t device) {
  return OneOf(device, {0x3522, 0x3D22, 0x3D62});
}
inline bool Iris(std::uint16_t device) {
  return OneOf(device, {0x3150, 0x3350, 0x3850, 0x3950});
}
inline bool Dahlia(std::uint16_t device) {
  return OneOf(device,
               {0x3640, 0x3648, 0x3740, 0x3748, 0x3A40, 0x3A48, 0x3B40, 0x3B48, 0x3E40, 0x3E48, 0x3F40});
}
inline bool HazelIrisOrDahlia(std::uint16_t device) {
  return Hazel(device) || Iris(device) || Dahlia(device);
}

class StagedFixture : public testing::Test {
 protected:
  explicit StagedFixture(const char* family) : path_(StagedPath(family, kPort)) {
    ResetLibrary();
    Config() = {};
    std::filesystem::remove_all(path_);
    AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
    fc_ = &host_.AddFcPort(adapter, 0);
    fc_->port_name = {0x21, 0x00, 0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    fc_->rom_flags = 0x0A;
    fc_->supported_speeds = 0xFB;
    UseModel({0x3522});
    Library().adapters = host_.List();
  }
  ~StagedFixture() override { std::filesystem::remove_all(path_); }

  void UseModel(const Model& model) {
    fc_->pci.vendor_id = kSorvex;
    fc_->pci.device_id = model.device;
    fc_->pci.subsystem_vendor_id = model.subsystem_vendor;
    fc_->pci.subsystem_device_id = model.subsystem_device;
  }

  // The words of a command on the port.
  static Words With(const std::vector<std::string>& options) {
    Words words = {kPort};
    words.insert(words.end(), options.begin(), options.end());
    return words;
  }

  StagedFile File() const { return StagedFile(path_); }

  // "Key=value Key=value", or the status of a failure.
  static std::string Outcome(StatusCode status, const StagedValues& values) {
    if (status != kSuccess) return std::to_string(status);
    std::string text;
    for (const auto& [key, value] : values) text += (text.empty() ? "" : " ") + key + "=" + value;
    return text;
  }

  // What the options of a `setFile` come to.
  template <class Settings>
  std::string Taken(const Settings& settings, CommandRun& run) const {
    StagedValues values;
    const StatusCode status = settings.TakeOptions(run, File(), values);
    return Outcome(status, values);
  }

  // Appends a target with LUNs of these numbers to the port.
  TargetEntry& AddTarget(const WorldWideName& name, bool nvme, const std::vector<std::uint16_t>& luns) {
    TargetEntry& target = targets_.emplace_back();
    target.port_name = name;
    target.state_flags[5] = nvme ? 0x08 : 0;
    const LunEntry** end = &target.first_lun;
    for (const std::uint16_t number : luns) {
      LunEntry& lun = luns_.emplace_back();
      lun.number = number;
      *end = &lun;
      end = &lun.next;
    }
    const TargetEntry** last = &fc_->first_target;
    while (*last != nullptr) last = &const_cast<TargetEntry*>(*last)->next;
    *last = &target;
    return target;
  }

  void Stage(const std::string& content) const { WriteContent(path_, content); }

  const std::string path_;
  HostRecords host_;
  std::deque<TargetEntry> targets_;
  std::deque<LunEntry> luns_;
  FCProtocolEntry* fc_ = nullptr;
};
