// Recordings of small hosts, made by hand.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "recording/recording.h"

template <std::size_t N>
void SetText(FixedText<N>& field, std::string_view text) {
  std::fill(std::begin(field.bytes), std::end(field.bytes), '\0');
  std::memcpy(field.bytes, text.data(), std::min(text.size(), N));
}

inline void PutText(recording::SfpImage& image, std::size_t place, std::size_t size, std::string_view text) {
  std::fill_n(image.bytes + place, size, std::uint8_t{' '});
  std::copy(text.begin(), text.end(), image.bytes + place);
}

inline void PutWord(recording::SfpImage& image, std::size_t place, unsigned word) {
  image.bytes[place] = static_cast<std::uint8_t>(word >> 8);
  image.bytes[place + 1] = static_cast<std::uint8_t>(word);
}

inline constexpr std::size_t kA2 = 256;

// An internally calibrated SFP module: 36.5 C, 3.3 V, 7 mA, 0.6 mW out, 0.5 mW in, all within their limits.
inline recording::SfpImage GoodModule() {
  recording::SfpImage image{};
  image.bytes[0] = 0x03;
  image.bytes[92] = 0x60;
  PutText(image, 20, 16, "LUMEN CO");
  PutText(image, 40, 16, "LC-32-SW");
  PutText(image, 56, 4, "A1");
  PutText(image, 68, 16, "LC0001");
  PutText(image, 84, 8, "260114");
  struct Row {
    unsigned high_alarm, low_alarm, high_warning, low_warning, value;
  };
  constexpr Row kRows[] = {
      {75 * 256, 0x10000 - 5 * 256, 70 * 256, 0, 36 * 256 + 128},  // 1/256 degrees Celsius
      {36000, 30000, 35000, 31000, 33000},                         // 100 microvolts
      {6000, 1000, 5500, 1500, 3500},                              // 2 microamperes
      {12000, 2000, 10000, 2500, 6000},                            // 0.1 microwatts
      {12000, 500, 10000, 1000, 5000},
  };
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    PutWord(image, kA2 + 8 * i, kRows[i].high_alarm);
    PutWord(image, kA2 + 8 * i + 2, kRows[i].low_alarm);
    PutWord(image, kA2 + 8 * i + 4, kRows[i].high_warning);
    PutWord(image, kA2 + 8 * i + 6, kRows[i].low_warning);
    PutWord(image, kA2 + 96 + 2 * i, kRows[i].value);
  }
  return image;
}

// Every call was made and answered.
inline void AnswerAll(recording::ProtocolRecording& port) {
  recording::VisitAnswers(
      port, [](const char*, const char*, auto& answer) { answer.asked = recording::Asked::kYes; });
}

inline recording::TargetRecording TargetNumbered(std::uint8_t number, std::size_t luns) {
  recording::TargetRecording target;
  target.record.port_name = {{0x50, 0x06, 0x0b, 0, 0, 0, 0, number}};
  target.record.number = number;
  target.record.state_flags[2] = 0x02;
  target.record.state_flags[4] = 0x01;
  target.record.lun_count = static_cast<std::uint32_t>(luns);
  SetText(target.record.vendor_id, "LABSTOR");
  SetText(target.record.product_id, "VA-2000");
  for (std::size_t i = 0; i < luns; ++i) {
    LunEntry lun{};
    lun.number = static_cast<std::uint16_t>(i);
    target.luns.push_back(lun);
  }
  target.statistics.asked = recording::Asked::kYes;
  target.link_speed = {recording::Asked::kYes, 0, 0x16};
  return target;
}

inline recording::ProtocolRecording PortNumbered(std::uint8_t number) {
  recording::ProtocolRecording port;
  FCProtocolEntry& fc = port.record;
  fc.port_name = {{0x21, 0, 0, 0x0e, 0x1e, 0, 0, number}};
  fc.pci.vendor_id = 0x1C9E;
  fc.pci.device_id = 0x3522;  // hazel
  fc.interface_type = PortInterfaceType::kPhysical;
  fc.port_state = PortState::kLinkUp;
  fc.port_speed = 0x16;
  fc.port_id = {{0x01, 0x0a, 0x00}};
  fc.adjacent_fabric_name = {{0x10, 0, 0, 0, 0, 0, 0, 1}};
  fc.principal_fabric_name = fc.adjacent_fabric_name;
  AnswerAll(port);
  port.sfp.record = port.sfp_straight.record = GoodModule();
  port.temperature.record.celsius = 46;
  return port;
}

inline recording::PhyPortRecording PhysicalPort(std::uint8_t number) {
  recording::PhyPortRecording physical;
  physical.record.number = number;
  physical.has_protocols = true;
  physical.protocols.push_back(PortNumbered(number));
  return physical;
}

// One adapter, "ZX320 HZ00001", with ports 0 and 1; port 0 sees target ...:01 with 4 LUNs.
inline recording::HostRecording SmallHost() {
  recording::HostRecording host;
  host.has_list = true;
  host.list.count = 1;
  host.reboot_required.asked = recording::Asked::kYes;
  host.boot_mode = {recording::Asked::kYes, 0, 1};
  recording::AdapterRecording& adapter = host.adapters.emplace_back();
  SetText(adapter.record.model, "ZX320");
  SetText(adapter.record.serial_number, "HZ00001");
  adapter.record.bus_id = 0x17;
  adapter.has_ports = true;
  for (const std::uint8_t number : {std::uint8_t{0}, std::uint8_t{1}}) {
    adapter.ports.push_back(PhysicalPort(number));
  }
  recording::ProtocolRecording& port = adapter.ports[0].protocols[0];
  port.targets.push_back(TargetNumbered(1, 4));
  port.record.target_count = 1;
  return host;
}

inline recording::ProtocolRecording& FirstPort(recording::HostRecording& host) {
  return host.adapters[0].ports[0].protocols[0];
}
