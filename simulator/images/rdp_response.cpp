#include <array>
#include <cmath>

#include "framework/device_library/speeds.h"
#include "images/port_reports.h"

namespace lab {
namespace {

constexpr std::uint32_t kRdpCommand = 0x18000000;  // the link service that the response answers
constexpr std::uint32_t kFcPortType = 0x40000000;  // PN_Port of FC-FS

// Flags of the SFP descriptor.
constexpr std::uint16_t kShortWaveSfp = 0x0051;  // short wave laser, optical port, SFP+
constexpr std::uint16_t kErrorCorrectionActive = 0x8000;

// Speeds of a port: speed code, the bit of a port speed descriptor, and the bit of the mask of supported
// speeds.
struct PortSpeed {
  std::uint32_t code;
  std::uint16_t rdp_bit;
  std::uint8_t mask;
};

constexpr PortSpeed kPortSpeeds[] = {
    {1, 0x8000, 0x01}, {2, 0x4000, 0x02},  {4, 0x2000, 0x08},  {16, 0x1000, 0x04},
    {8, 0x0800, 0x10}, {22, 0x0400, 0x20}, {50, 0x0200, 0x40}, {100, 0x0100, 0x80},
};

// What the report tells of the switch's module.
struct Module {
  std::string vendor, part, serial, revision, date;
  double temperature = 36.5, voltage = 3.3, bias = 7.0, tx_power = 0.6, rx_power = 0.5;
};

// Big-endian words and texts, gathered into descriptors.
class Descriptor {
 public:
  explicit Descriptor(std::uint32_t tag) : tag_(tag) {}

  Descriptor& Word(std::uint32_t word) {
    for (const int shift : {24, 16, 8, 0}) payload_ += static_cast<char>(word >> shift);
    return *this;
  }
  Descriptor& Halves(unsigned high, unsigned low) { return Word((high & 0xffff) << 16 | (low & 0xffff)); }
  Descriptor& Bytes(const std::uint8_t* bytes, std::size_t count) {
    payload_.append(reinterpret_cast<const char*>(bytes), count);
    return *this;
  }
  // Filled up with blanks.
  Descriptor& Text(std::string text, std::size_t width) {
    text.resize(width, ' ');
    payload_ += text;
    return *this;
  }

  std::string Whole() const {
    Descriptor head(0);
    head.Word(tag_).Word(static_cast<std::uint32_t>(payload_.size()));
    return head.payload_ + payload_;
  }

 private:
  std::uint32_t tag_;
  std::string payload_;
};

// A number in units of `unit`, as the sixteen bits that hold it.
unsigned Units(double value, double unit) {
  return static_cast<unsigned>(std::lround(value / unit)) & 0xffff;
}

constexpr double kVoltageUnit = 0.0001;
constexpr double kBiasUnit = 0.002;
constexpr double kPowerUnit = 0.0001;

bool HasErrorCorrection(const FCProtocolEntry& record) {
  return record.port_speed >= k32Gbps.code || (record.link_flags & kFecInUse) != 0;
}

std::string Field(const SfpMemory& memory, std::size_t offset, std::size_t size) {
  return {reinterpret_cast<const char*>(memory.data()) + offset, size};
}

// A module of the same make as the port's own; an empty cage has one of the lab at the other end.
Module ModuleOf(const Entry& entry) {
  const SwitchModule& told = entry.reports.rdp.module;
  Module module{"LABSWITCH", "LS-32G-SW", "LSW0001", "A1", "260114"};
  if (entry.sfp) {
    const SfpMemory& memory = entry.sfp->now;
    const std::size_t base = IsQsfpMemory(memory) ? 128 : 0;
    module.vendor = Field(memory, base + 20, 16);
    module.part = Field(memory, base + 40, 16);
    module.serial = Field(memory, base + 68, 16);
    module.revision = Field(memory, base + 56, base > 0 ? 2 : 4);
    module.date = Field(memory, base + 84, 8);
  }
  module.vendor = told.vendor.value_or(module.vendor);
  module.part = told.part.value_or(module.part);
  module.serial = told.serial.value_or(module.serial);
  module.revision = told.revision.value_or(module.revision);
  module.date = told.date.value_or(module.date);
  module.temperature = told.temperature.value_or(module.temperature);
  module.voltage = told.voltage.value_or(module.voltage);
  module.bias = told.bias.value_or(module.bias);
  module.tx_power = told.tx_power.value_or(module.tx_power);
  module.rx_power = told.rx_power.value_or(module.rx_power);
  return module;
}

std::string SfpDiagnostics(const Module& module, std::uint16_t flags) {
  return Descriptor(0x00010000)
      .Halves(Units(module.temperature, 1.0 / 256), Units(module.voltage, kVoltageUnit))
      .Halves(Units(module.bias, kBiasUnit), Units(module.tx_power, kPowerUnit))
      .Halves(Units(module.rx_power, kPowerUnit), flags)
      .Whole();
}

std::string PortSpeeds(const FCProtocolEntry& record) {
  unsigned capabilities = 0;
  unsigned operating = 0;
  for (const PortSpeed& speed : kPortSpeeds) {
    if ((record.supported_speeds & speed.mask) != 0) capabilities |= speed.rdp_bit;
    if (record.port_speed == speed.code) operating = speed.rdp_bit;
  }
  return Descriptor(0x00010001).Halves(capabilities, operating).Whole();
}

std::string LinkErrors(const RdpSetup& setup) {
  Descriptor descriptor(0x00010002);
  for (const std::uint32_t count : setup.link_errors) descriptor.Word(count);
  return descriptor.Word(kFcPortType).Whole();
}

// The switch by its node name, and its port by one made from that and the port's address.
std::string PortNames(const FCProtocolEntry& record, const RdpSetup& setup) {
  const WorldWideName node = setup.node_name.value_or(record.adjacent_fabric_name);
  WorldWideName port = node;
  port[0] = 0x20;
  port[1] = record.port_id.octets[1];
  port = setup.port_name.value_or(port);
  return Descriptor(0x00010003).Bytes(node.octets, sizeof node).Bytes(port.octets, sizeof port).Whole();
}

std::string FecStatus(const FCProtocolEntry& record, const RdpSetup& setup) {
  const bool in_use = HasErrorCorrection(record);
  return Descriptor(0x00010005)
      .Word(setup.corrected_blocks.value_or(in_use ? 12 : 0))
      .Word(setup.uncorrected_blocks.value_or(0))
      .Whole();
}

// Limits of one measured quantity: high alarm, low alarm, high warning, low warning.
std::string Element(unsigned kind, unsigned high_alarm, unsigned low_alarm, unsigned high_warning,
                    unsigned low_warning) {
  return Descriptor(0x00010007)
      .Halves(high_alarm, low_alarm)
      .Halves(high_warning, low_warning)
      .Word(kind << 28)
      .Whole();
}

std::string Elements() {
  const auto volts = [](double value) { return Units(value, kVoltageUnit); };
  const auto bias = [](double value) { return Units(value, kBiasUnit); };
  const auto power = [](double value) { return Units(value, kPowerUnit); };
  return Element(1, 75, 0xfb, 70, 0) +  // whole degrees; -5 at the low end
         Element(2, volts(3.63), volts(2.97), volts(3.465), volts(3.135)) +
         Element(3, bias(12.5), bias(2), bias(11.5), bias(3)) +
         Element(4, power(1.6), power(0.2), power(1.26), power(0.25)) +
         Element(5, power(1.8), power(0.05), power(1.4), power(0.08));
}

std::string Product(const Module& module) {
  return Descriptor(0x00010008)
      .Text(module.vendor, 16)
      .Text(module.part, 16)
      .Text(module.serial, 16)
      .Text(module.revision, 4)
      .Text(module.date, 8)
      .Whole();
}

}  // namespace

std::string ComposeRdpResponse(const Entry& entry) {
  const RdpSetup& setup = entry.reports.rdp;
  if (setup.bytes) return *setup.bytes;
  const FCProtocolEntry& record = entry.record;
  const Module module = ModuleOf(entry);
  const std::uint16_t fec = HasErrorCorrection(record) ? kErrorCorrectionActive : std::uint16_t{0};
  const std::uint16_t flags = setup.module.flags.value_or(kShortWaveSfp | fec);
  const std::string list = Descriptor(0x00000001).Word(kRdpCommand).Whole() + SfpDiagnostics(module, flags) +
                           PortSpeeds(record) + LinkErrors(setup) + PortNames(record, setup) +
                           FecStatus(record, setup) +
                           Descriptor(0x00010006)
                               .Word(setup.credits)
                               .Word(setup.attached_credits)
                               .Word(setup.round_trip_ns)
                               .Whole() +
                           Elements() + Product(module);
  std::string response;
  for (const int shift : {24, 16, 8, 0}) response += static_cast<char>(list.size() >> shift);
  return response + list;
}

}  // namespace lab
