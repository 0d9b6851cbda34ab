#include "reference/boot_reference.h"

#include "reference/families.h"
#include "reference/text.h"

namespace reference {

namespace {

constexpr Frame kFrame = {"BootConfigInfo", "BootConfig", "BootConfigList"};
constexpr std::size_t kDrives[] = {116, 168, 180, 192, 244, 254, 264, 274};

void AddDrives(Report& report, const Record& record, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::string drive = "Drive " + std::to_string(i);
    report.Line(drive + " WWPN", record.Name(kDrives[i]));
    report.Number(drive + " LUN", record.U16(kDrives[i] + 8));
  }
}

void AddLogins(Report& report, const Record& record) {
  report.First("Adapter Driver", TrueFalse(record.U32(100) == 0));
  report.Line("Selective Login", TrueFalse(record.U32(128) != 0));
  report.Line("Selective LUN Login", TrueFalse(record.U32(140) != 0));
  report.Line("World Login", TrueFalse(record.U32(144) != 0));
  report.Line("Fabric Assigned Boot LUN", TrueFalse(record.U32(216) != 0));
}

std::string BootText(const Record& record, const Families& families, BootMode mode) {
  Report report(2048);
  if (mode == BootMode::kUefi) {
    AddLogins(report, record);
    AddDrives(report, record, 8);
    return report.Text();
  }
  report.First("Adapter BIOS", TrueFalse(record.U32(100) == 0));
  report.Line("Selectable Boot", TrueFalse(record.U32(104) != 0));
  if (!families.aster && !families.birch && !families.cedar) {
    report.Line("Fabric Assigned Boot LUN", TrueFalse(record.U32(216) != 0));
  }
  AddDrives(report, record, 4);
  return report.Text();
}

std::string NvmeText(const Record& port, const Record& record, const Record& nvme) {
  bool enabled = false;
  for (std::size_t i = 0; i < 8; ++i) enabled = enabled || nvme.U8(16 + i * 284 + 24) != 0;
  Report report(8192);
  AddLogins(report, record);
  report.Line("FC NVMe", TrueFalse(enabled));
  const auto text_or_none = [](std::string_view text) { return text.empty() ? "NA" : text; };
  report.Line("Host NQN", text_or_none(port.Text(2176, 256)));
  report.Line("Host ID", port.AllAre(2160, 16, 0) ? "NA" : port.Octets(2160, 16, ""));
  for (std::size_t i = 0; i < 8; ++i) {
    const std::size_t entry = 16 + i * 284;
    report.Add("      Storage " + std::to_string(i) + ":\n");
    report.Line("Enable", TrueFalse(nvme.U8(entry + 24) != 0));
    report.Line("WWNN", nvme.Name(entry + 8));
    report.Line("WWPN", nvme.Name(entry));
    report.Line("NQN", text_or_none(nvme.Text(entry + 28, 256)));
    report.Number("ControllerID", nvme.U16(entry + 20));
    report.Number("NamespaceID", nvme.U32(entry + 16));
  }
  return report.Text();
}

// The message of the check that fails first; null when all pass.
const char* Refusal(const Record& port, const Families& families, BootMode mode, const char* needs_family) {
  if (port.U16(462) == 3) return "Failed, Feature not supported for virtual port";
  if (mode != BootMode::kBios && !families.Managed()) return needs_family;
  return nullptr;
}

const char* RomRefusal(const Record& port, BootMode mode) {
  if (mode == BootMode::kBios) return port.Bit(472, 3) ? nullptr : "Failed, Adapter does not have ROM BIOS";
  return port.Bit(472, 1) ? nullptr : "Failed, Adapter does not have ROM UEFI";
}

}  // namespace

BootAnswer BootConfig(bool xml, const void* port_bytes, BootMode mode, std::uint8_t library_mode,
                      const void* record) {
  const Record port(port_bytes);
  const Families families(port);
  BootAnswer answer;
  const char* message =
      Refusal(port, families, mode, "Failed, UEFI boot mode not supported for this adapter");
  if (message == nullptr) {
    if (families.Managed() && mode == BootMode::kUefi && library_mode == 1) answer.mode_set = 2;
    if (families.Managed() && mode == BootMode::kBios && library_mode == 2) answer.mode_set = 1;
    message = RomRefusal(port, mode);
  }
  answer.document = message != nullptr
                        ? ErrorDocument(xml, kFrame, message)
                        : ReportDocument(xml, kFrame, BootText(Record(record), families, mode));
  return answer;
}

BootAnswer BootConfigExt(bool xml, const void* port_bytes, BootMode mode, std::uint8_t library_mode,
                         const void* record, const void* nvme) {
  const Record port(port_bytes);
  const Families families(port);
  BootAnswer answer;
  const char* message =
      Refusal(port, families, mode, "Failed, UEFI/NVME boot mode not supported for this adapter");
  if (message == nullptr) {
    const auto wanted = static_cast<std::uint8_t>(mode);
    if (families.Managed() && library_mode != wanted) answer.mode_set = wanted;
    message = RomRefusal(port, mode);
  }
  if (message == nullptr && mode == BootMode::kNvme && nvme == nullptr) {
    message = "Failed, NVMe Boot Config not present";
  }
  if (message != nullptr) {
    answer.document = ErrorDocument(xml, kFrame, message);
  } else if (mode == BootMode::kNvme) {
    answer.document = ReportDocument(xml, kFrame, NvmeText(port, Record(record), Record(nvme)));
  } else {
    answer.document = ReportDocument(xml, kFrame, BootText(Record(record), families, mode));
  }
  return answer;
}

}  // namespace reference
