// Reading the values of a host file or a state file.
//
// A reader asks a value for what it expects. When the value is something else, that is added to the mistakes
// of its file and the reader gets a harmless value, so that reading goes on to the next mistake. After any
// mistake nothing of what was read is used.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/limits.h"
#include "base/named_number.h"
#include "base/text.h"
#include "framework/device_library/flash_records.h"
#include "yaml/mistakes.h"
#include "yaml/tree.h"

namespace lab {

// A file while it is read.
struct YamlFile {
  std::string name;
  const Limits& limits;
  Mistakes mistakes;
  std::uint64_t image_bytes = 0;  // read so far from files that it names
};

// A value and its key. Values are valid as long as their file and its tree.
class Value {
 public:
  Value(YamlItem item, const std::string& key, Place key_place, YamlFile& file)
      : item_(item), key_(&key), key_place_(key_place), file_(&file) {}

  const std::string& Key() const { return *key_; }
  const Limits& GetLimits() const { return file_->limits; }

  // Add a mistake: "<key>: expected <what>, got <what was found>", with the word among `known` that was
  // probably meant; `what` as it is; a key that is missing in this map; a key that nothing reads.
  void Expected(const std::string& what, std::span<const std::string_view> known = {}) const;
  void Wrong(const std::string& what) const { file_->mistakes.Add(item_.place, what); }
  void Missing(const char* key) const { Wrong(std::string(key) + ": expected here, got nothing"); }
  void UnknownKey(std::span<const std::string_view> known) const;

  // Adds the mistake "<key>: expected <what>" at the key.
  void WrongKey(const std::string& what) const;

  bool IsNull() const { return item_.node->kind == YamlNode::Kind::kNothing; }
  bool IsText() const { return item_.node->kind == YamlNode::Kind::kText; }
  bool IsList() const { return item_.node->kind == YamlNode::Kind::kList; }
  bool IsMap() const { return item_.node->kind == YamlNode::Kind::kMap; }

  bool Is(std::string_view word) const { return IsText() && Word() == word; }

  // The text, whatever its length; empty for anything but a text.
  const std::string& Word() const { return item_.node->text; }

  std::string Text(std::size_t limit) const;
  std::uint64_t Number(std::uint64_t low, std::uint64_t high) const;
  double Decimal(double low, double high) const;
  bool Bool() const;
  ComponentVersion Version() const;  // "none" is all zero
  void Octets(std::span<std::uint8_t> out) const;

  // The path of a file; a relative one begins at the folder of this one. Empty for a value that is no text.
  std::string Path() const;

  // The bytes of the file that the value names, at most `limit` of them; nothing after a mistake.
  std::optional<std::string> FileBytes(std::size_t limit) const;

  // A whole number that sixteen bits with a sign hold.
  std::int16_t SignedWord() const;

  // The number of one of the names; the second form also takes any number up to `limit`.
  std::uint32_t Choice(std::span<const NamedNumber> choices) const;
  std::uint32_t ChoiceOrNumber(std::span<const NamedNumber> choices, std::uint32_t limit) const;

  // The numbers of a list of names, joined by a bitwise or.
  std::uint32_t Mask(std::span<const NamedNumber> bits) const;

  // The number of one of the names, or any number that the field holds.
  template <typename Number>
  void CodeInto(std::span<const NamedNumber> names, Number& field) const {
    constexpr std::uint64_t kLimit = UINT32_MAX >> (32 - 8 * sizeof(Number));
    field = static_cast<Number>(ChoiceOrNumber(names, static_cast<std::uint32_t>(kLimit)));
  }

  template <std::size_t N>
  void Into(FixedText<N>& field) const {
    StoreText(field, Text(N));
  }
  template <typename Integer>
  void Into(Integer& field) const {
    field = static_cast<Integer>(Number(0, static_cast<Integer>(-1)));
  }
  void Into(bool& field) const { field = Bool(); }
  void Into(ComponentVersion& field) const { field = Version(); }

  // Calls visit(Value) for every item of a list.
  template <typename Visit>
  void EachItem(Visit visit) const {
    if (!IsList()) return Expected("a list");
    for (const YamlItem& item : item_.node->items) {
      if (file_->mistakes.Enough()) return;
      visit(Value(item, *key_, key_place_, *file_));
    }
  }

  // Calls visit(Value) for every item of a list, or for this value when it is no list.
  template <typename Visit>
  void EachOrOne(Visit visit) const {
    if (IsList()) {
      EachItem(visit);
    } else {
      visit(*this);
    }
  }

  // Calls visit(Value, place) for the items of a list. More than `limit` of them, which are `things`, are a
  // mistake.
  template <typename Visit>
  void EachItemUpTo(std::size_t limit, const char* things, Visit visit) const {
    std::size_t place = 0;
    EachItem([&](const Value& item) {
      if (place < limit) {
        visit(item, place);
      } else if (place == limit) {
        item.Wrong(*key_ + ": expected at most " + std::to_string(limit) + ' ' + things + ", got " +
                   std::to_string(item_.node->items.size()));
      }
      ++place;
    });
  }

  // Calls visit(Value) for every key of a map.
  template <typename Visit>
  void EachKey(Visit visit) const {
    if (!IsMap()) return Expected("a map");
    for (const YamlPair& pair : item_.node->pairs) {
      if (file_->mistakes.Enough()) return;
      visit(Value(pair.value, pair.key, pair.key_place, *file_));
    }
  }

  // Calls visit(Value) for the key of a map with this name, if it is there.
  template <typename Visit>
  void At(std::string_view key, Visit visit) const {
    for (const YamlPair& pair : item_.node->pairs) {
      if (pair.key == key) visit(Value(pair.value, pair.key, pair.key_place, *file_));
    }
  }

  // The value of this key of the map; the map itself when the key is not there. For the place of a mistake.
  Value AtOrHere(std::string_view key) const;

 private:
  std::string Found() const;

  YamlItem item_;
  const std::string* key_;
  Place key_place_;
  YamlFile* file_;
};

// A key of a map and what it sets.
template <typename Into>
struct KeyRow {
  const char* name;
  void (*read)(const Value& value, Into& into);
};

// The reader of a key that is read apart from its map, before or after the other keys.
template <typename Into>
void ReadElsewhere(const Value&, Into&) {}

// Calls read(row, Value) for every key of the map with the row of its name. A key without a row is a mistake
// that lists the rows.
template <typename Rows, typename Read>
void EachRow(const Value& map, const Rows& rows, Read read) {
  map.EachKey([&](const Value& value) {
    std::vector<std::string_view> names;
    for (const auto& row : rows) {
      if (value.Key() == row.name) return read(row, value);
      names.emplace_back(row.name);
    }
    value.UnknownKey(names);
  });
}

// Reads every key of the map by its row.
template <typename Into>
void ReadMap(const Value& map, std::type_identity_t<std::span<const KeyRow<Into>>> rows, Into& into) {
  EachRow(map, rows, [&](const KeyRow<Into>& row, const Value& value) { row.read(value, into); });
}

// A number of a record by its key.
template <typename Record, typename Number>
struct NumberRow {
  const char* name;
  Number Record::*field;
};

// Reads every key of the map into the number of its row.
template <typename Record, typename Number, std::size_t N>
void ReadNumbers(const Value& map, const NumberRow<Record, Number> (&rows)[N], Record& into) {
  EachRow(map, rows, [&](const auto& row, const Value& value) { value.Into(into.*row.field); });
}

// Parses `text` and calls read(Value) with the whole document. Returns an empty text, or a line for every
// mistake, "<name>:<line>:<column>: <mistake>", without a line end after the last.
std::string ReadDocument(const std::string& name, const std::string& text,
                         const std::function<void(const Value&)>& read, const Limits& limits = kLimits);

}  // namespace lab
