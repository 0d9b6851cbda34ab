#include "host_file/lun_keys.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace lab {
namespace {

constexpr std::uint32_t kLargestLun = 65535;

constexpr const char* kLunProduct = "VirtualDisk";
constexpr std::uint32_t kLunSizeMb = 102400;

// "5" or "0-63".
bool ReadRange(std::string_view text, std::uint32_t& first, std::uint32_t& last) {
  const std::size_t hyphen = text.find('-');
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  if (!ReadNumber(text.substr(0, hyphen), kLargestLun, low)) return false;
  if (hyphen == std::string_view::npos) {
    high = low;
  } else if (!ReadNumber(text.substr(hyphen + 1), kLargestLun, high)) {
    return false;
  }
  first = static_cast<std::uint32_t>(low);
  last = static_cast<std::uint32_t>(high);
  return low <= high;
}

struct LunReading {
  LunRange& range;
  bool is_nvme;
  bool has_numbers = true;  // false after a mistake in them
};

void ReadLunNumbers(const Value& value, LunReading& into) {
  into.has_numbers = ReadRange(value.Word(), into.range.first, into.range.last);
  if (!into.has_numbers) value.Expected("a number or a range like 0-63, up to 65535");
}

template <std::size_t N>
void ReadOctetList(const Value& value, std::uint8_t (&octets)[N], std::uint8_t& length) {
  const std::string& text = value.Word();
  const std::size_t count = (text.size() + 1) / 3;
  std::uint8_t read[N] = {};
  if (!value.IsText() || count > N || (!text.empty() && !ReadOctets(text, {read, count}))) {
    return value.Expected("at most " + std::to_string(N) + " hexadecimal octets joined by ':'");
  }
  std::memcpy(octets, read, N);
  length = static_cast<std::uint8_t>(count);
}

constexpr KeyRow<LunReading> kLunKeys[] = {
    {"number", ReadLunNumbers},
    {"vendor", [](const Value& value, LunReading& into) { value.Into(into.range.lun.vendor_id); }},
    {"product", [](const Value& value, LunReading& into) { value.Into(into.range.lun.product_id); }},
    {"revision",
     [](const Value& value, LunReading& into) {
       into.is_nvme ? value.Into(into.range.lun.nvme_revision) : value.Into(into.range.lun.fcp_revision);
     }},
    {"size",
     [](const Value& value, LunReading& into) {
       const std::uint64_t size = value.Number(0, into.is_nvme ? UINT64_MAX : UINT32_MAX);
       StoreNumber(into.range.lun.fcp_size_mb, static_cast<std::uint32_t>(size));
       StoreNumber(into.range.lun.nvme_size_mb, size);
     }},
    {"unique-id",
     [](const Value& value, LunReading& into) {
       LunEntry& lun = into.range.lun;
       ReadOctetList(value, lun.unique_id, lun.fcp_unique_id_length);
       lun.nvme_unique_id_length = lun.fcp_unique_id_length;
       into.range.own_id = true;
     }},
};

LunRange MakeRange(const TargetEntry& target) {
  LunRange range;
  range.lun.vendor_id = target.vendor_id;
  StoreText(range.lun.product_id, kLunProduct);
  range.lun.fcp_revision = target.fcp_revision;
  range.lun.nvme_revision = target.nvme_revision;
  StoreNumber(range.lun.fcp_size_mb, kLunSizeMb);
  StoreNumber(range.lun.nvme_size_mb, std::uint64_t{kLunSizeMb});
  return range;
}

// Reads one item of the list: LUNs that are alike. `seen` has the numbers of those before.
void ReadLunItem(const Value& item, TargetGroup& group, std::vector<bool>& seen) {
  LunRange& range = group.luns.emplace_back(MakeRange(group.first));
  LunReading reading{range, IsNvmeTarget(group.first)};
  if (item.IsMap()) {
    ReadMap(item, kLunKeys, reading);
  } else {
    ReadLunNumbers(item, reading);
  }
  if (!reading.has_numbers) return;
  for (std::uint32_t number = range.first; number <= range.last; ++number) {
    if (seen[number]) return item.Wrong(item.Key() + ": number " + std::to_string(number) + " is here twice");
    seen[number] = true;
  }
}

}  // namespace

void ReadLuns(const Value& luns, TargetGroup& group) {
  const std::uint64_t limit = luns.GetLimits().luns;
  std::vector<bool> seen(kLargestLun + 1);
  if (luns.IsList()) {
    luns.EachItemUpTo(limit, "items",
                      [&](const Value& item, std::size_t) { ReadLunItem(item, group, seen); });
  } else {
    ReadLunItem(luns, group, seen);
  }
  if (group.LunsPerTarget() > limit) {
    luns.Wrong(luns.Key() + ": expected at most " + std::to_string(limit) + " of a target, got " +
               std::to_string(group.LunsPerTarget()));
  }
}

}  // namespace lab
