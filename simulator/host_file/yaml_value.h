// Reading YAML. A mistake names its line, its key, what was expected and what was found.
#pragma once

#include <yaml-cpp/yaml.h>

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/named_number.h"
#include "base/text.h"
#include "framework/device_library/flash_records.h"

namespace lab {

// Thrown by the readers and caught where a file is loaded.
struct Mistake {
  int line;  // from 1; 0 when the mistake has no line
  std::string text;
};

// A value and its key.
class Value {
 public:
  // `document` is the name of its file; it must outlive the value.
  Value(YAML::Node node, std::string key, int line, std::string_view document)
      : node_(std::move(node)), key_(std::move(key)), line_(line), document_(document) {}

  const std::string& Key() const { return key_; }

  // Throws the mistake "<key>: expected <what>, got <what was found>".
  [[noreturn]] void Expected(const std::string& what) const;

  // Throw a mistake at this value's line: `what` as it is, a key that is missing, a key that nothing reads.
  [[noreturn]] void Wrong(const std::string& what) const { throw Mistake{line_, what}; }
  [[noreturn]] void Missing(const char* key) const {
    Wrong(std::string(key) + ": expected here, got nothing");
  }
  [[noreturn]] void UnknownKey(const std::string& known) const {
    Wrong(key_ + ": expected one of the keys " + known);
  }

  bool IsNull() const { return node_.IsNull(); }
  bool IsText() const { return node_.IsScalar(); }
  bool IsList() const { return node_.IsSequence(); }
  bool IsMap() const { return node_.IsMap(); }
  std::string Text(std::size_t limit) const;
  std::uint64_t Number(std::uint64_t low, std::uint64_t high) const;
  double Decimal(double low, double high) const;
  bool Bool() const;
  std::string Path() const;  // of a file; a relative one begins at the document's folder
  bool Is(std::string_view word) const { return node_.IsScalar() && node_.Scalar() == word; }
  ComponentVersion Version() const;  // "none" is all zero
  void Octets(std::span<std::uint8_t> out) const;

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
    if (!node_.IsSequence()) Expected("a list");
    for (const YAML::Node& item : node_) visit(Value(item, key_, item.Mark().line + 1, document_));
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

  // Calls visit(Value, place) for every item of a list of at most `limit`; `no_more` words the limit.
  template <typename Visit>
  void EachItemUpTo(std::size_t limit, const char* no_more, Visit visit) const {
    std::size_t place = 0;
    EachItem([&](const Value& item) {
      if (place == limit) item.Expected(no_more);
      visit(item, place++);
    });
  }

  // Calls visit(Value) for every key of a map. A key that is there twice is a mistake.
  template <typename Visit>
  void EachKey(Visit visit) const {
    if (!node_.IsMap()) Expected("a map");
    std::set<std::string> seen;
    for (const auto& pair : node_) {
      Value value(pair.second, pair.first.IsScalar() ? pair.first.Scalar() : "key",
                  pair.first.Mark().line + 1, document_);
      if (!pair.first.IsScalar()) throw Mistake{value.line_, "expected a word as key"};
      if (!seen.insert(value.key_).second) throw Mistake{value.line_, value.key_ + ": stands here twice"};
      visit(value);
    }
  }

  // Calls visit(Value) for the key of a map with this name, if it is there.
  template <typename Visit>
  void At(std::string_view key, Visit visit) const {
    EachKey([&](const Value& value) {
      if (value.Key() == key) visit(value);
    });
  }

 private:
  std::string Found() const;

  YAML::Node node_;
  std::string key_;
  int line_;
  std::string_view document_;
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
    std::string names;
    for (const auto& row : rows) {
      if (value.Key() == row.name) return read(row, value);
      names += (names.empty() ? "" : ", ") + std::string(row.name);
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

// Parses `text` and calls read(Value) with the whole document. Returns an empty text, or "<name>:<line>:
// <mistake>".
template <typename Read>
std::string ReadDocument(const std::string& name, const std::string& text, Read read) {
  const auto mistake_at = [&name](int line, const std::string& what) {
    return name + (line > 0 ? ':' + std::to_string(line) : "") + ": " + what;
  };
  try {
    read(Value(YAML::Load(text), "file", 1, name));
    return {};
  } catch (const Mistake& mistake) {
    return mistake_at(mistake.line, mistake.text);
  } catch (const YAML::Exception& error) {
    return mistake_at(error.mark.line + 1, error.msg);
  }
}

}  // namespace lab
