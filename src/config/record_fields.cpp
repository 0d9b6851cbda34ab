#include "config/record_fields.h"

#include <algorithm>
#include <cstring>

#include "framework/device_library/world_wide_name.h"
#include "runtime/debug_log.h"
#include "runtime/text.h"

namespace {

const std::byte* At(const RecordField& field, const void* record) {
  return static_cast<const std::byte*>(record) + field.offset;
}

std::byte* At(const RecordField& field, void* record) {
  return static_cast<std::byte*>(record) + field.offset;
}

// Numbers are little-endian like the records, so the narrow ones are the first bytes of the wide one.
std::uint32_t NumberIn(const RecordField& field, const void* record) {
  std::uint32_t number = 0;
  std::memcpy(&number, At(field, record), field.width);
  return number;
}

std::string NameIn(const RecordField& field, const void* record) {
  WorldWideName name;
  std::memcpy(&name, At(field, record), sizeof name);
  return name.Text();
}

std::string TextIn(const RecordField& field, const void* record) {
  const auto* const text = reinterpret_cast<const char*>(At(field, record));
  return {text, strnlen(text, field.width - 1)};
}

void StoreName(const RecordField& field, const std::string& text, void* record) {
  WorldWideName name;
  if (ReadName(text.c_str(), name) != nullptr) std::memcpy(At(field, record), &name, sizeof name);
}

// A text that is the record's own leaves the bytes behind its end alone.
void StoreText(const RecordField& field, const std::string& text, void* record) {
  if (text == TextIn(field, record)) return;
  auto* const target = reinterpret_cast<char*>(At(field, record));
  std::memset(target, 0, field.width);
  BoundedCopy(target, field.width, text.substr(0, field.width - 1).c_str(), kWholeText);
}

}  // namespace

bool NumberRule::Allows(std::uint32_t number) const {
  return only.empty() ? number <= limit : std::find(only.begin(), only.end(), number) != only.end();
}

bool IsStageable(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char character) { return character > ' ' && character <= '~' && character != '#'; });
}

void AddFieldValue(const RecordField& field, const std::string& key, const void* record,
                   StagedValues& values) {
  switch (field.kind) {
    case FieldKind::kSigned:
      values[key] = std::to_string(static_cast<std::int32_t>(NumberIn(field, record)));
      break;
    case FieldKind::kUnsigned:
      values[key] = std::to_string(NumberIn(field, record));
      break;
    case FieldKind::kName:
      values[key] = NameIn(field, record);
      break;
    case FieldKind::kText:
      if (const std::string text = TextIn(field, record); IsStageable(text)) values[key] = text;
      break;
  }
}

StatusCode ReadFieldValue(const RecordField& field, const std::string& key, const StagedFile& file,
                          void* record) {
  std::string value;
  if (!file.Find(key, value)) return kSuccess;
  if (field.kind == FieldKind::kName) {
    StoreName(field, value, record);
    return kSuccess;
  }
  if (field.kind == FieldKind::kText) {
    StoreText(field, value, record);
    return kSuccess;
  }
  const std::uint32_t number = NumberOf(value);
  if (!field.rule.Allows(number)) {
    DebugLogLevel(kDebugTrace, "%s: %s=%s is out of range", __func__, key.c_str(), value.c_str());
    return kInvalidParameter;
  }
  std::memcpy(At(field, record), &number, field.width);
  return kSuccess;
}

void AddFieldValues(std::span<const RecordField> fields, const void* record, StagedValues& values) {
  for (const RecordField& field : fields) AddFieldValue(field, field.key, record, values);
}

StatusCode ReadFieldValues(std::span<const RecordField> fields, const StagedFile& file, void* record) {
  for (const RecordField& field : fields) {
    if (const StatusCode status = ReadFieldValue(field, field.key, file, record); status != kSuccess) {
      return status;
    }
  }
  return kSuccess;
}
