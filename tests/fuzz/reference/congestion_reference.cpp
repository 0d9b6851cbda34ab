#include "reference/congestion_reference.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "reference/families.h"
#include "reference/text.h"

namespace reference {

namespace {

constexpr const char* kFamily = "Failed, Feature not supported for this adapter";
constexpr const char* kDriver = "Failed, Driver/Firmware does not support this feature";
constexpr const char* kVirtual = "Failed, Feature not supported for virtual port";
constexpr const char* kRead = "Failed, VCLM settings read error";
constexpr const char* kDisabled = "Failed, Feature disabled on the port";
constexpr const char* kStatistics = "Failed, Statistics read error";
constexpr const char* kClear = "Failed, Statistics list clear error";
constexpr const char* kMaintenance = "Failed, Command not supported when adapter port in maintenance mode";

bool IsSecondGeneration(const Record& port) {
  return port.Bit(163, 2);
}

// The message of the check that fails first; null when all pass.
const char* Guard(const Record& port, const CongestionAnswers& answers, bool first_generation_too,
                  const char* maintenance) {
  if (!Families(port).Managed()) return kFamily;
  if (!IsSecondGeneration(port) && !(first_generation_too && port.Bit(162, 7))) return kDriver;
  if (port.U16(462) == 3) return kVirtual;
  if (answers.enabled_result == 150) return maintenance;
  if (answers.enabled_result != 0) return kRead;
  return answers.enabled == 0 ? kDisabled : nullptr;
}

const char* LinkEvent(unsigned type) {
  constexpr const char* kTypes[] = {"Unknown",
                                    "Link Failure",
                                    "Loss Of Sync",
                                    "Loss Of Signal",
                                    "Primitive Sequence Protocol Error",
                                    "Invalid Transmission Word",
                                    "Invalid CRC"};
  if (type == 15) return "Device Specific";
  return type < 7 ? kTypes[type] : "Reserved";
}

const char* Delivery(unsigned reason, bool of_port) {
  constexpr const char* kReasons[] = {"Unknown", "Timeout", "Unable To Route"};
  if (reason == 15 && of_port) return "Device Specific";
  return reason < 3 ? kReasons[reason] : "Reserved";
}

const char* CongestionEvent(unsigned type) {
  constexpr const char* kTypes[] = {"Clear", "Lost Credit", "Credit Stall", "Oversubscription"};
  if (type == 15) return "Device Specific";
  return type < 4 ? kTypes[type] : "Reserved";
}

const char* Severity(unsigned severity) {
  if (severity == 0xF1) return "Warning";
  if (severity == 0xF7) return "Alarm";
  return severity == 0 ? "None" : "Reserved";
}

const char* YesNo(unsigned flag) {
  return flag != 0 ? "Yes" : "No";
}

const char* CurrentState(unsigned state) {
  return state == 0 ? "Healthy" : state == 1 ? "Congested" : "Unknown";
}

void AddPort(Report& report, const Record& port) {
  report.First("Node Name", port.Name(0));
  report.Line("Port Name", port.Name(8));
  report.Line("Port Id", port.PortId(608));
  const unsigned state = port.U8(612);
  report.Line("Port State", state == 1 ? "Online" : state == 3 ? "Offline" : "Unknown");
}

void AddTarget(Report& report, const Record& target) {
  report.First("Node Name", target.Name(0));
  report.Line("Port Name", target.Name(8));
  report.Line("Port Id", target.PortId(16));
  report.Number("Target Number", target.U16(22));
}

// The words of the bits that a mask has; a mask of unknown bits alone makes a line without words and label.
void AddNotifications(Report& report, unsigned mask, const char* const (&words)[4]) {
  std::string text;
  for (unsigned bit = 0; bit < 4; ++bit) {
    if ((mask >> bit & 1) != 0) text += words[bit];
  }
  if (mask == 0) text = "None";
  report.Add(text.empty() ? "" : "      Congestion Notification: " + text);
  report.Add("\n");
}

void AddSection(Report& report, std::initializer_list<const char*> titles) {
  report.Add("      -----------------------------------\n");
  for (const char* const title : titles) report.Add("      " + std::string(title) + "\n");
  report.Add("      -----------------------------------\n");
}

void AddElement(Report& report, const Record& element, bool of_port) {
  AddSection(report, {"Congestion Mitigation"});
  if (of_port) {
    report.Number("Congestion Alarm Count", element.U64(48));
    report.Number("Congestion Warning Count", element.U64(56));
  }
  report.Number("Cleared Congestion Count", element.U64(64));
  report.Number("Throttled Up Count", element.U64(80));
  report.Number("Throttled Down Count", element.U64(72));
  report.Number("Bottomed Out Count", element.U64(96));
  report.Number("Returned Busy Count", element.U64(88));
  AddSection(report, {"Rx Fabric Performance Impact ", "Notifications"});
  report.Number("Link Failure Count", element.U64(104));
  report.Number("Link Unknown Event Count", element.U64(112));
  report.Number("Loss Of Sync Count", element.U64(120));
  report.Number("Loss Of Signal Count", element.U64(128));
  report.Number("Link Device Specific Event Count", element.U64(160));
  report.Number("Primitive Sequence Protocol Error Count", element.U64(136));
  report.Number("Invalid Transmission Word Count", element.U64(144));
  report.Number("Invalid CRC Count", element.U64(152));
  report.Number("Link Uncorrectable FEC Count", element.U64(256));
  if (of_port) {
    report.Number("Delivery Failure Unknown Count", element.U64(168));
    report.Number("Delivery Timeout Count", element.U64(176));
    report.Number("Delivery Unable To Route Count", element.U64(184));
    report.Number("Delivery Failure Device Specific Count", element.U64(192));
  }
  report.Number("Congestion Clear Count", element.U64(200));
  report.Number("Congestion Lost Credit Count", element.U64(208));
  report.Number("Congestion Credit Stall Count", element.U64(216));
  report.Number("Congestion Oversubscription Count", element.U64(224));
  report.Number("Congestion Device Specific Count", element.U64(232));
  if (!of_port) report.Number("PUN Count", element.U64(248));
}

// The document, and that of a list which cannot be given back.
std::string WithRelease(std::string document, bool xml, const Frame& frame,
                        const CongestionAnswers& answers) {
  if (answers.free_result != 0) document += ErrorDocument(xml, frame, kClear);
  return document;
}

// The rest is of the profile.

constexpr Frame kProfile = {"PortVCLMProfile", "Congestion Profile", "CongestionProfileList"};
constexpr const char* kInvalid = "Failed, Invalid parameter";
constexpr const char* kUnknown = "Failed, Unknown";
constexpr const char* kProfileRead = "Failed, NVRAM read failed";
constexpr std::string_view kActivations[] = {"Monitor_Only", "Conservative", "Moderate", "Aggressive",
                                             "Defensive"};

bool SameWord(std::string_view one, std::string_view other) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
  return std::ranges::equal(one, other, {}, upper, upper);
}

// The message of what keeps a port from being asked; null when nothing does.
const char* ProfileGuard(const Record& port, std::string_view identifier,
                         std::span<const std::string> words) {
  if (words.empty()) return kInvalid;
  for (const char* const help : {"help", "/h", "/help", "-h", "-help", "/?", "?"}) {
    if (SameWord(words[0], help)) return kUnknown;
  }
  if (words[0] != identifier) return kInvalid;
  if (!Families(port).Managed()) return kFamily;
  if (port.U16(462) == 3) return kVirtual;
  return IsSecondGeneration(port) ? nullptr : kUnknown;
}

// The message of a call that failed; null of one that did not.
const char* Failure(std::uint32_t result, const char* message) {
  if (result == 0) return nullptr;
  return result == 150 ? kMaintenance : message;
}

std::string ProfileReport(bool xml, const Record& port, const std::uint8_t* profile) {
  Report report(1024);
  AddPort(report, port);
  report.Line("VCLM Configuration Status", TrueFalse(profile[0] == 0));
  report.Line("VCLM Profile Management", profile[1] == 0 ? "Driver_Settings" : "NVRAM");
  report.Line("VCLM Profile Activation",
              profile[2] < std::size(kActivations) ? kActivations[profile[2]] : "Unknown");
  return ReportDocument(xml, kProfile, report.Text());
}

// The word after the first one that is either name; nothing when that one is the last.
std::optional<std::string_view> ValueOf(std::span<const std::string> words, std::string_view long_name,
                                        std::string_view short_name) {
  std::size_t at = 0;
  while (at < words.size() && !SameWord(words[at], long_name) && !SameWord(words[at], short_name)) ++at;
  if (at + 1 >= words.size()) return std::nullopt;
  return words[at + 1];
}

// Puts what the options say into the record. The message of words that are refused; null for others.
const char* TakeWords(std::span<const std::string> words, std::array<std::uint8_t, 16>& profile) {
  const std::optional<std::string_view> restore = ValueOf(words, "--restore", "-r");
  const std::optional<std::string_view> activation = ValueOf(words, "--activation", "-a");
  if (restore.has_value() && !SameWord(*restore, "Driver_Settings")) return kInvalid;
  if (restore.has_value()) profile[1] = 0;
  if (!activation.has_value()) return nullptr;
  std::uint8_t number = 0;
  while (number < std::size(kActivations) && !SameWord(*activation, kActivations[number])) ++number;
  if (number == std::size(kActivations)) return kInvalid;
  if (restore.has_value()) {
    return "Failed, Restore and Activation command-line options are mutually exclusive";
  }
  profile[1] = 1;
  profile[2] = number;
  return nullptr;
}

}  // namespace

std::string PortCongestionStatistics(bool xml, const void* port_bytes, const CongestionAnswers& answers) {
  constexpr Frame kFrame = {"PortVCLMStatistics", "Port VCLM Stats", "PortVCLMStatsList"};
  const Record port(port_bytes);
  if (const char* const message = Guard(port, answers, true, kMaintenance); message != nullptr) {
    return ErrorDocument(xml, kFrame, message);
  }
  Report report(8192);
  AddPort(report, port);
  if (IsSecondGeneration(port)) {
    if (answers.list_result == 150) return ErrorDocument(xml, kFrame, kMaintenance);
    if (answers.list_result != 0 || answers.list.empty()) return ErrorDocument(xml, kFrame, kStatistics);
    const std::size_t place = Record(answers.list[0]).U32(16) == 0x80 ? 0 : 1;
    if (place < answers.list.size()) AddElement(report, Record(answers.list[place]), true);
    return WithRelease(ReportDocument(xml, kFrame, report.Text()), xml, kFrame, answers);
  }
  AddNotifications(report, port.U16(684), {"Congestion, ", "Delivery, ", "Link Integrity", ""});
  report.Line("Link Event Type", LinkEvent(port.U16(686)));
  report.Line("Link Event Threshold", Decimal(port.U32(688)) + " (ms)");
  report.Number("Link Failure Count", port.U32(776));
  report.Number("Loss Of Sync Count", port.U32(780));
  report.Number("Loss Of Signal Count", port.U32(784));
  report.Number("Primitive Sequence Protocol Error Count", port.U32(788));
  report.Number("Invalid Transmission Word Count", port.U32(792));
  report.Number("Invalid CRC Count", port.U32(796));
  report.Line("Delivery Notification", Delivery(port.U16(692), true));
  report.Line("Congestion Event Type", CongestionEvent(port.U16(694)));
  report.Line("Congestion Event Period", Decimal(port.U32(696)) + " (ms)");
  report.Line("Congestion Severity", Severity(port.U8(700)));
  report.Number("Congestion Alarm Count", port.U32(840));
  report.Number("Congestion Warning Count", port.U32(848));
  return ReportDocument(xml, kFrame, report.Text());
}

std::string PortCongestion(bool xml, const void* port_bytes, const CongestionAnswers& answers) {
  constexpr Frame kFrame = {"PortVCLMInformation", "Port VCLM Status", "PortVCLMStatusList"};
  const Record port(port_bytes);
  if (const char* const message = Guard(port, answers, false, kMaintenance); message != nullptr) {
    return ErrorDocument(xml, kFrame, message);
  }
  const Families families(port);
  Report report(4096);
  AddPort(report, port);
  report.Line("Congestion Current State", CurrentState(port.U8(702)));
  report.Line("Congestion Severity", Severity(port.U8(700)));
  report.Line("Link Integrity Events", YesNo(port.U8(708)));
  report.Line("Delivery Notification Events", YesNo(port.U8(709)));
  report.Number("Seconds Since Last Event", port.U32(704));
  report.Line("Fabric Connection Flags", !port.Bit(701, 0)  ? "RDF Reject"
                                         : port.Bit(701, 1) ? "RDF Completed (Brocade)"
                                         : port.Bit(701, 2) ? "RDF Completed (Cisco)"
                                                            : "RDF Completed");
  const unsigned lane = families.dahlia ? port.U8(703) : 0;
  report.Line("Virtual Lane", lane == 1 ? "Operational" : lane == 2 ? "Non-Operational" : "Disabled");
  const unsigned throttling = port.U8(710);
  report.Line("I/O Throttling", throttling == 1    ? "None"
                                : throttling == 2  ? "Active"
                                : port.Bit(163, 7) ? "Disabled"
                                                   : "None");
  return ReportDocument(xml, kFrame, report.Text());
}

std::string TargetCongestionStatistics(bool xml, const void* port_bytes, const void* target_bytes,
                                       const CongestionAnswers& answers) {
  constexpr Frame kFrame = {"TargetVCLMStatistics", "Target VCLM Stats", "TargetVCLMStatsList"};
  const Record port(port_bytes);
  const Record target(target_bytes);
  if (const char* const message = Guard(port, answers, true, kRead); message != nullptr) {
    return ErrorDocument(xml, kFrame, message);
  }
  Report report(8192);
  AddTarget(report, target);
  if (IsSecondGeneration(port)) {
    if (answers.list_result != 0 || answers.list.empty()) return ErrorDocument(xml, kFrame, kStatistics);
    for (const void* const bytes : answers.list.subspan(1)) {
      const Record element(bytes);
      if (element.U64(0) != target.U64(0) || element.U64(8) != target.U64(8)) continue;
      AddElement(report, element, false);
      break;
    }
    return WithRelease(ReportDocument(xml, kFrame, report.Text()), xml, kFrame, answers);
  }
  if (answers.counters_result != 0) return ErrorDocument(xml, kFrame, kStatistics);
  const Record counters(answers.counters);
  AddNotifications(report, target.U16(30), {"", "Delivery, ", "Link Integrity, ", "Peer Congestion"});
  report.Line("Link Event Type", LinkEvent(target.U16(32)));
  report.Line("Link Event Threshold", Decimal(target.U32(36)) + " (ms)");
  report.Number("Link Failure Count", counters.U32(24));
  report.Number("Link Unknown Event Count", counters.U32(104));
  report.Number("Loss Of Sync Count", counters.U32(28));
  report.Number("Loss Of Signal Count", counters.U32(32));
  report.Number("Link Device Specific Event Count", counters.U32(108));
  report.Number("Primitive Sequence Protocol Error Count", counters.U32(36));
  report.Number("Invalid Transmission Word Count", counters.U32(40));
  report.Number("Invalid CRC Count", counters.U32(44));
  report.Line("Delivery Notification", Delivery(target.U16(40), false));
  report.Number("Delivery Failure Unknown Count", counters.U32(48));
  report.Number("Delivery Timeout Count", counters.U32(52));
  report.Number("Delivery Unable To Route Count", counters.U32(56));
  report.Number("Delivery Failure Device Specific Count", counters.U32(60));
  report.Line("Peer Congestion Event Type", CongestionEvent(target.U16(42)));
  report.Line("Peer Congestion Event Period", Decimal(target.U32(44)) + " (ms)");
  report.Number("Peer Congestion Clear Count", counters.U32(64));
  report.Number("Peer Congestion Lost Credit Count", counters.U32(68));
  report.Number("Peer Congestion Credit Stall Count", counters.U32(72));
  report.Number("Peer Congestion Oversubscription Count", counters.U32(76));
  report.Number("Peer Congestion Device Specific Count", counters.U32(80));
  return ReportDocument(xml, kFrame, report.Text());
}

std::string TargetCongestion(bool xml, const void* port_bytes, const void* target_bytes,
                             const CongestionAnswers& answers) {
  constexpr Frame kFrame = {"TargetVCLMInformation", "Target VCLM Status", "TargetVCLMStatusList"};
  const Record port(port_bytes);
  const Record target(target_bytes);
  if (const char* const message = Guard(port, answers, false, kRead); message != nullptr) {
    return ErrorDocument(xml, kFrame, message);
  }
  Report report(4096);
  AddTarget(report, target);
  report.Line("Congestion Current State", CurrentState(target.U8(48)));
  report.Line("Link Integrity Events", YesNo(target.U8(49)));
  report.Number("Seconds Since Last Event", target.U32(52));
  const unsigned lane = target.U8(50);
  report.Line("Virtual Lane", !Families(port).dahlia ? "NA"
                              : lane == 1            ? "Slow"
                              : lane == 2            ? "Normal"
                              : lane == 3            ? "Fast"
                              : port.Bit(163, 6)     ? "Non-Operational"
                                                     : "NA");
  const unsigned throttling = target.U8(51);
  report.Line("I/O Throttling", throttling == 1    ? "None"
                                : throttling == 2  ? "Active"
                                : port.Bit(163, 7) ? "Disabled"
                                                   : "None");
  return ReportDocument(xml, kFrame, report.Text());
}

ProfileOutcome ShowProfile(bool xml, const void* port_bytes, std::string_view identifier,
                           std::span<const std::string> words, const ProfileAnswers& answers) {
  const Record port(port_bytes);
  if (const char* const message = ProfileGuard(port, identifier, words); message != nullptr) {
    return {ErrorDocument(xml, kProfile, message), ""};
  }
  if (const char* const message = Failure(answers.results[0], kProfileRead); message != nullptr) {
    return {ErrorDocument(xml, kProfile, message), "r"};
  }
  return {ProfileReport(xml, port, answers.first), "r"};
}

ProfileOutcome ChangeProfile(bool xml, const void* port_bytes, std::string_view identifier,
                             std::span<const std::string> words, const ProfileAnswers& answers) {
  const Record port(port_bytes);
  const char* message = ProfileGuard(port, identifier, words);
  if (message != nullptr) return {ErrorDocument(xml, kProfile, message), ""};
  ProfileOutcome outcome;
  std::copy_n(answers.first, outcome.written.size(), outcome.written.begin());
  outcome.calls = "r";
  message = Failure(answers.results[0], kProfileRead);
  if (message == nullptr) message = TakeWords(words, outcome.written);
  if (message == nullptr) {
    outcome.calls = "rw";
    message = Failure(answers.results[1], "Failed, NVRAM update failed");
  }
  if (message == nullptr) {
    outcome.calls = "rwr";
    message = Failure(answers.results[2], kProfileRead);
  }
  outcome.document =
      message != nullptr ? ErrorDocument(xml, kProfile, message) : ProfileReport(xml, port, answers.second);
  return outcome;
}

}  // namespace reference
