// The image of a pluggable module, whatever the module says, against a second implementation.
//
// The first byte of an input chooses what runs: `dmi get`, now and then `dmi getraw`, or the report of an
// image that ends early. The others are the image.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "framework/report_text.h"
#include "port/physical_port_dmi_cmds_processor.h"
#include "port/sfp/dmi_report.h"
#include "port/sfp/field_text.h"
#include "port/sfp/sfp_field.h"
#include "reference/sfp_reference.h"

inline std::uint8_t module_image[512];

LibraryStatus TORPI_GetSFPDataEx(const DeviceHandle*, std::uint8_t* out, std::uint32_t, std::uint32_t) {
  std::memcpy(out, module_image, sizeof module_image);
  return kLibrarySuccess;
}

// The report of an image in a block of its own: a read past its end is an error.
inline void CheckShortImage(const std::uint8_t* image, std::size_t limit) {
  constexpr std::size_t kReportBytes = 16384;
  const std::unique_ptr<std::uint8_t[]> block(new std::uint8_t[limit]);
  if (limit > 0) std::memcpy(block.get(), image, limit);
  ReportText text(kReportBytes);
  AppendDmiReport(text, {block.get(), limit});
  RequireSame(text.Text(), reference::SfpReport(block.get(), limit));
}

// Any field at any place, which the first bytes of the image choose: outside the image it is nothing.
inline void CheckLookUp(const std::uint8_t* image, std::size_t limit) {
  const std::unique_ptr<std::uint8_t[]> block(new std::uint8_t[limit]);
  if (limit > 0) std::memcpy(block.get(), image, limit);
  const auto offset = static_cast<std::uint16_t>(image[1] << 8 | image[2]);
  const auto size =
      static_cast<std::uint16_t>(image[3] % 16 == 15 ? image[3] << 8 | image[4] : image[3] % 16);
  const SfpImage bytes(block.get(), limit);
  const bool is_inside = size > 0 && std::size_t{offset} + size <= limit;
  for (const SfpFieldType type : {FIELD_BIT_LIST, FIELD_HEX4, FIELD_HEX2, FIELD_HEX_DUMP, FIELD_ASCII}) {
    const std::string text = GetFieldText(bytes, {offset, size}, type);
    Require(text.empty() == !is_inside && (text.empty() || text.back() != ' '));
    std::uint32_t number = 0;
    for (std::size_t i = 0; is_inside && i < size && i < 4; ++i) number = number << 8 | image[offset + i];
    if (type == FIELD_HEX4 && size <= 4) Require(HexTextToInt(text) == number);
  }
  const std::string name(reinterpret_cast<const char*>(block.get()), std::min<std::size_t>(limit, 32));
  HexTextToInt(name);
  GetFieldValue(bytes, name);
}

inline void CheckModule(Input input, bool is_qsfp) {
  constexpr std::uint8_t kQsfpKinds[] = {12, 13, 17, 18};
  const std::uint8_t choice = input.Byte();
  const std::size_t given = std::min(input.Size(), sizeof module_image);
  std::memset(module_image, 0, sizeof module_image);
  input.Fill(module_image, given);
  if (is_qsfp) module_image[0] = kQsfpKinds[module_image[0] % 4];
  const bool xml = (choice & 1) == 0;
  if (choice >= 0xFE) {
    RequireSame(RunCommand(&PhysicalPortDMICmdsProcessor, "getraw", {PortIdentifier()}, xml),
                reference::SfpRawDocument(xml, module_image));
  } else if ((choice & 0x82) == 0x82) {
    CheckLookUp(module_image, given);
  } else if ((choice & 2) != 0) {
    CheckShortImage(module_image, given);
  } else {
    RequireSame(RunCommand(&PhysicalPortDMICmdsProcessor, "get", {PortIdentifier()}, xml),
                reference::SfpDocument(xml, module_image));
  }
}
