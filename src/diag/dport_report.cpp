#include "diag/dport_report.h"

#include <string_view>

#include "diag/logarithm.h"
#include "framework/inline_text.h"
#include "framework/report_lines.h"

namespace {

struct ResultLabel {
  std::uint8_t status;
  InlineText<17> label;
};

constexpr std::uint8_t kPassed = 1;

constexpr ResultLabel kResultLabels[] = {
    {0, "Not Started"},       {kPassed, "Passed"},    {2, "Skipped"},        {3, "Failed"},
    {4, "Running"},           {5, "Remote Port"},     {6, "Stopped"},        {56, "Unexpected Reject"},
    {57, "Unexpected Phase"}, {58, "Retry Exceeded"}, {59, "Timeout"},       {71, "Failed"},
    {78, "Not Supported"},    {79, "Not Supported"},  {115, "Memory Error"},
};

// Why a test failed, by the low four bits of mailbox register 2, and whether the far end's powers still
// count.
struct FailureReason {
  InlineText<60> text;
  bool keeps_powers;
};

constexpr FailureReason kFailureReasons[] = {
    {"Reserved", true},
    {"Unexpected Reject Code", true},
    {"Unexpected Phase", true},
    {"Retry Exceeded", true},
    {"Test Timeout", true},
    {"Dynamic mode not supported by attached switch", false},
    {"Test stopped by user", true},
};
constexpr FailureReason kUnknownReason = {"Unknown", false};

constexpr std::uint16_t kLowFourBits = 0x000f;
constexpr std::uint16_t kOutcomeWithReason = 2;

const FailureReason& ReasonOf(std::uint16_t mailbox_2) {
  const std::size_t reason = mailbox_2 & kLowFourBits;
  return reason < std::size(kFailureReasons) ? kFailureReasons[reason] : kUnknownReason;
}

// The record's big-endian numbers.
constexpr std::uint16_t FromBigEndian(std::uint16_t value) {
  return __builtin_bswap16(value);
}
constexpr std::uint32_t FromBigEndian(std::uint32_t value) {
  return __builtin_bswap32(value);
}

// One direction of the link: what its sending end and its receiving end measured, and the difference, in dBm.
struct PowerPath {
  float tx;
  float rx;
  float difference;
};

void HexLine(ReportText& text, const char* label, std::uint32_t value) {
  text.Line("      %s: 0x%x\n", label, value);
}

void PowerLine(ReportText& text, const char* label, const PowerPath& path) {
  text.Line("      %s: Tx: %lf dBm, Rx: %lf dBm, Diff: %lf dBm\n", label, static_cast<double>(path.tx),
            static_cast<double>(path.rx), static_cast<double>(path.difference));
}

struct PhaseLabels {
  const char* value;
  const char* status;
  const char* result;
};

void PhaseLines(ReportText& text, const PhaseLabels& labels, std::uint32_t value, std::uint8_t status) {
  HexLine(text, labels.value, value);
  NumberLine(text, labels.status, status);
  TextLine(text, labels.result, DPortResultLabel(status));
}

// No line end after the times: the library's texts bring their own.
void TimeLines(ReportText& text, const DPortResultRecord& record) {
  const std::string_view start = record.start_time.View();
  const std::string_view stop = record.stop_time.View();
  text.Line("%s: %.*s", "Start Time", static_cast<int>(start.size()), start.data());
  text.Line("      %s: %.*s", "Stop Time", static_cast<int>(stop.size()), stop.data());
}

void DistanceLines(ReportText& text, const DPortResultRecord& record) {
  text.Line("      %s: %u ns\n", "Roundtrip Link Latency", FromBigEndian(record.roundtrip_latency_ns));
  text.Line("      %s: %u meters\n", "Cable Link Distance", FromBigEndian(record.cable_length_m));
}

void PassedLines(ReportText& text, const DPortResultRecord& record) {
  const float local_tx = PowerToDbmOrZero(FromBigEndian(record.local_tx_power));
  const float local_rx = PowerToDbmOrZero(FromBigEndian(record.local_rx_power));
  const float remote_rx = PowerToDbm(FromBigEndian(record.egress_remote_power));
  const float remote_tx = PowerToDbm(FromBigEndian(record.ingress_remote_power));
  HexLine(text, "Mbx1", record.mailbox_1);
  HexLine(text, "Mbx2", record.mailbox_2);
  DistanceLines(text, record);
  text.Line("      %s: %lf\n", "Allowable Power Loss",
            AllowablePowerLoss(FromBigEndian(record.cable_length_m)));
  PowerLine(text, "Egress Power", {local_tx, remote_rx, local_tx - remote_rx});
  PowerLine(text, "Ingress Power", {remote_tx, local_rx, remote_tx - local_rx});
}

// Of a test that did not pass only the far end's powers are shown, and after some failures not even those.
void FailedLines(ReportText& text, const DPortResultRecord& record) {
  float remote_rx = PowerToDbm(FromBigEndian(record.egress_remote_power));
  float remote_tx = PowerToDbm(FromBigEndian(record.ingress_remote_power));
  if ((record.mailbox_1 & kLowFourBits) == kOutcomeWithReason) {
    const FailureReason& reason = ReasonOf(record.mailbox_2);
    TextLine(text, "Reason", reason.text);
    if (!reason.keeps_powers) remote_rx = remote_tx = 0.0F;
  }
  DistanceLines(text, record);
  text.Line("      %s: 0\n", "Allowable Power Loss");
  PowerLine(text, "Egress Power", {0.0F, remote_rx, 0.0F});
  PowerLine(text, "Ingress Power", {remote_tx, 0.0F, 0.0F});
}

}  // namespace

const char* DPortResultLabel(std::uint8_t status) {
  for (const ResultLabel& row : kResultLabels) {
    if (row.status == status) return row.label;
  }
  return "Unknown";
}

float PowerToDbm(std::uint16_t raw) {
  // To milliwatts in two steps: one factor of 0.0001 would round differently.
  const float microwatts = static_cast<float>(raw) * 0.1F;
  const float milliwatts = microwatts * 0.001F;
  return 10.0F * Log10(milliwatts);
}

float PowerToDbmOrZero(std::uint16_t raw) {
  return raw == 0 ? 0.0F : PowerToDbm(raw);
}

double AllowablePowerLoss(std::uint32_t meters) {
  return meters * 0.001 * 3.0 * 2.3333333333333335;
}

void WriteDPortReport(ReportText& text, const DPortResultRecord& record, bool is_v2) {
  TimeLines(text, record);
  PhaseLines(text, {"HBA Port Value", "HBA Port Status", "HBA Port Result"}, record.hba_port_value,
             record.hba_port_status);
  PhaseLines(text, {"Electrical Loopback Value", "Electrical Loopback Status", "Electrical Loopback Result"},
             record.electrical_loopback_value, record.electrical_loopback_status);
  PhaseLines(text, {"Optical Loopback Value", "Optical Loopback Status", "Optical Loopback Result"},
             record.optical_loopback_value, record.optical_loopback_status);
  PhaseLines(text, {"Link Traffic Value", "Link Traffic Status", "Link Traffic Result"},
             record.link_traffic_value, record.link_traffic_status);
  if (!is_v2) return;
  HexLine(text, "Tx Power", FromBigEndian(record.local_tx_power));
  HexLine(text, "Rx Power", FromBigEndian(record.local_rx_power));
  if (record.hba_port_status == kPassed) {
    PassedLines(text, record);
  } else {
    FailedLines(text, record);
  }
}
