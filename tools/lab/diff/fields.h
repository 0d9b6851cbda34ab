// Compares records by tables of their named fields.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tools/lab/diff/report.h"
#include "tools/lab/view/words.h"

namespace diff {

// How the bytes of a field are read. Numbers are little-endian, of 1, 2, 4 or 8 bytes.
enum class Form : std::uint8_t {
  kText,
  kName,          // a World Wide Name; all zero is none
  kOctets,        // "01:0a:00"; all zero is none
  kVersion,       // three bytes: 9.12.01
  kShortVersion,  // two bytes: 3.66
  kNumber,
  kSigned,
  kHex,
  kMegabytes,
  kCode,         // with `words`
  kFlag,         // nonzero is on
  kInverseFlag,  // nonzero is off
  kSpeed,        // LinkSpeed::code
  kSpeedMask,    // LinkSpeed::supported_bit
  kDataRate,     // LinkSpeed::data_rate
  kPciLink,      // a PCI Express Link Capabilities or Link Status register
  kTargetState,  // TargetEntry::state_flags
  kBootDrive,
  kCounter,
  kLink,     // the state of a port's link
  kBus,      // where the adapter is plugged in
  kSkipped,  // what differs without a change of the host: time, addresses, a session's own values
};

struct Field {
  const char* what;
  std::size_t offset, size;
  Form form;
  std::span<const view::CodeWord> words = {};
};

// A field that no comparison sees.
consteval Field Skipped(std::size_t offset, std::size_t size) {
  return {"", offset, size, Form::kSkipped};
}

// The value of a field as a person reads it; "" for none.
std::string ValueText(const Field& field, const std::byte* record);

// Reports what differs in the named fields of two records, and whether anything else in them differs. Fields
// that show the same for different bytes count as anything else. `record` is "the port's record"; `prefix`
// goes ahead of the fields' names.
void CompareRecords(Report& report, std::string_view record, std::span<const Field> fields,
                    std::span<const std::byte> before, std::span<const std::byte> after,
                    std::string_view prefix = {});

template <class Record>
std::span<const std::byte> BytesOf(const Record& record) {
  return std::as_bytes(std::span(&record, 1));
}

template <class Record>
void CompareRecords(Report& report, std::string_view name, std::span<const Field> fields,
                    const Record& before, const Record& after, std::string_view prefix = {}) {
  CompareRecords(report, name, fields, BytesOf(before), BytesOf(after), prefix);
}

}  // namespace diff
