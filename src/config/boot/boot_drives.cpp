#include "config/boot/boot_drives.h"

#include <string>

#include "discovery/host_walk.h"

namespace {

struct Names {
  ParameterName key;
  ParameterName log_name;
};

consteval BootDriveRow Drive(BootDrive HBAParamsInfo::*drive, Names port_name, Names lun, OptionName option) {
  return {drive,
          {.key = port_name.key,
           .log_name = port_name.log_name,
           .offset = offsetof(BootDrive, port_name),
           .width = sizeof(BootDrive::port_name),
           .form = ParameterForm::kName},
          {.key = lun.key,
           .log_name = lun.log_name,
           .offset = offsetof(BootDrive, lun),
           .width = sizeof(BootDrive::lun)},
          option};
}

constexpr BootDriveRow kDrives[] = {
    Drive(&HBAParamsInfo::primary_drive, {"Primary_Boot_Target_WWPN", "BootPortName"},
          {"Primary_Boot_Target_LUN", "BootLunNumber"}, {"--drive-0", "-j"}),
    Drive(&HBAParamsInfo::alternate_drive_1, {"Alternate_Boot_Target_1_WWPN", "Alt1BootPortName"},
          {"Alternate_Boot_Target_1_LUN", "Alt1BootLunNumber"}, {"--drive-1", "-k"}),
    Drive(&HBAParamsInfo::alternate_drive_2, {"Alternate_Boot_Target_2_WWPN", "Alt2BootPortName"},
          {"Alternate_Boot_Target_2_LUN", "Alt2BootLunNumber"}, {"--drive-2", "-l"}),
    Drive(&HBAParamsInfo::alternate_drive_3, {"Alternate_Boot_Target_3_WWPN", "Alt3BootPortName"},
          {"Alternate_Boot_Target_3_LUN", "Alt3BootLunNumber"}, {"--drive-3", "-m"}),
    Drive(&HBAParamsInfo::alternate_drive_4, {"Alternate_Boot_Target_4_WWPN", "Alt4BootPortName"},
          {"Alternate_Boot_Target_4_LUN", "Alt4BootLunNumber"}, {"--drive-4", "-n"}),
    Drive(&HBAParamsInfo::alternate_drive_5, {"Alternate_Boot_Target_5_WWPN", "Alt5BootPortName"},
          {"Alternate_Boot_Target_5_LUN", "Alt5BootLunNumber"}, {"--drive-5", "-o"}),
    Drive(&HBAParamsInfo::alternate_drive_6, {"Alternate_Boot_Target_6_WWPN", "Alt6BootPortName"},
          {"Alternate_Boot_Target_6_LUN", "Alt6BootLunNumber"}, {"--drive-6", "-p"}),
    Drive(&HBAParamsInfo::alternate_drive_7, {"Alternate_Boot_Target_7_WWPN", "Alt7BootPortName"},
          {"Alternate_Boot_Target_7_LUN", "Alt7BootLunNumber"}, {"--drive-7", "-q"}),
};

}  // namespace

std::span<const BootDriveRow> BootDrives() {
  return kDrives;
}

void AddDrive(std::size_t drive, const WorldWideName& port_name, std::int64_t lun, StagedValues& values) {
  values[std::string(kDrives[drive].port_name.key)] = port_name.Text();
  values[std::string(kDrives[drive].lun.key)] = std::to_string(lun);
}

const TargetEntry* FindTarget(const FCProtocolEntry& fc, const WorldWideName& port_name) {
  for (const TargetEntry& target : TargetsOf(fc)) {
    if (target.port_name == port_name) return &target;
  }
  return nullptr;
}

bool HasLun(const TargetEntry& target, std::int64_t number) {
  for (const LunEntry& lun : LunsOf(target)) {
    if (lun.number == number) return true;
  }
  return false;
}
