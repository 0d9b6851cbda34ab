#include "reference/flash_memo_reference.h"

#include "reference/families.h"
#include "reference/text.h"

namespace reference {

namespace {

struct Tool {
  const char* id;
  const char* name;
};

constexpr Tool kTools[] = {
    {"ZCLI", "Meridot CLI"},
    {"ZGUI", "Meridot GUI"},
    {"ZMFG", "Manufacturing Tool"},
    {"ZNFS", "DOS Flash Update Utility"},
    {"PLDM", "Platform Management Firmware"},
    {"EFLS", "UEFI Flash Tool"},
    {"EFMP", "UEFI Firmware Management Protocol Driver"},
    {"VIPL", "ESXi Plugin"},
    {"HPFL", "Flash Update Library"},
    {"ZNFL", "ZNFL"},
    {"ECLI", "ESX CLI Plugin"},
    {"FCLK", "FC Lumakit"},
    {"CMPR", "CIM Provider"},
    {"IBMD", "IBM AIX Driver"},
};

const char* ToolName(const Record& block) {
  std::string id;
  for (std::size_t i = 32; i < 36; ++i) {
    const char c = static_cast<char>(block.U8(i));
    id += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  for (const Tool& tool : kTools) {
    if (id == tool.id) return tool.name;
  }
  return "Unknown";
}

std::string Numbers(const Record& block, std::size_t at, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i > 0 ? "." : "") + Decimal(block.U8(at + i), 2);
  return text;
}

}  // namespace

std::string FlashMemoDocument(bool xml, const void* port, const std::uint8_t* bytes) {
  constexpr Frame kFrame = {"AdapterFlashInformation", "Flash Info", "FlashInfoList"};
  const Record block(bytes);
  const Families families{Record(port)};
  if (!families.elm_only && !families.Managed()) {
    return ErrorDocument(xml, kFrame, "Failed, Feature not supported for this adapter");
  }
  if (block.U8(0) != 'F' && block.U8(1) != 'M' && block.U8(2) != 'B' && block.U8(3) != 'S') {
    return ErrorDocument(xml, kFrame, "Failed, Invalid Signature");
  }
  Report report(1024);
  report.First("MBI Version", Numbers(block, 20, 3));
  std::string date(block.Text(24, 8));
  date.resize(8);
  std::string shown;
  for (std::size_t i = 0; i < 8; ++i) {
    if (i == 4 || i == 6) shown += '-';
    if (date[i] != '\0') shown += date[i];
  }
  report.Line("MBI Build Date", shown);
  report.Line("Flash Tool ID", ToolName(block));
  report.Line("Flash Tool Version", Numbers(block, 44, 4));
  report.Line("Last Update Time", Decimal(block.U16(36), 4) + "-" + Decimal(block.U8(38), 2) + "-" +
                                      Decimal(block.U8(39), 2) + " " + Decimal(block.U8(40), 2) + ":" +
                                      Decimal(block.U8(41), 2) + ":" + Decimal(block.U8(42), 2));
  if (!block.AllAre(16, 3, 0)) report.Line("Family Firmware Version", Numbers(block, 16, 3));
  return ReportDocument(xml, kFrame, report.Text());
}

}  // namespace reference
