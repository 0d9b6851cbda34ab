// A value of a state file that is being written: a text, a list or a map. A reference to an item of a list or
// map is good until the next item is added.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lab {

class StateNode {
 public:
  enum class Kind : std::uint8_t { kNothing, kText, kList, kMap };

  StateNode() = default;
  explicit StateNode(Kind kind) : kind_(kind) {}
  // NOLINTBEGIN(google-explicit-constructor): what is kept is assigned as it is
  StateNode(std::string text) : kind_(Kind::kText), text_(std::move(text)) {}
  StateNode(const char* text) : StateNode(std::string(text)) {}
  // A flag is true or false, a number is decimal.
  template <typename Number>
  requires std::unsigned_integral<Number> &&(std::same_as<Number, bool> || sizeof(Number) > 1)
      StateNode(Number number) {
    kind_ = Kind::kText;
    if constexpr (std::same_as<Number, bool>) {
      text_ = number ? "true" : "false";
    } else {
      text_ = std::to_string(number);
    }
  }
  // NOLINTEND(google-explicit-constructor)

  Kind GetKind() const { return kind_; }
  bool IsMap() const { return kind_ == Kind::kMap; }
  bool IsList() const { return kind_ == Kind::kList; }
  const std::string& Text() const { return text_; }

  // The values of a list or map in their order, and the keys of a map, as many.
  const std::vector<StateNode>& Items() const { return items_; }
  const std::vector<std::string>& Keys() const { return keys_; }
  StateNode& Item(std::size_t number) { return items_[number]; }

  // The value at this key of a map, or null.
  const StateNode* Find(std::string_view key) const;

  // The value at this key; a new one, which holds nothing, at the end of the map where there is none. What is
  // no map becomes an empty one ahead of that.
  StateNode& operator[](std::string_view key);

  // Adds to the end of a list. What is no list becomes an empty one ahead of that.
  void Add(StateNode item);

  // Adds to the end of a map a key that it does not have.
  void AddNew(std::string key, StateNode value);

  // Whether both are written alike, their maps in the same order.
  bool operator==(const StateNode&) const = default;

 private:
  void Become(Kind kind);

  Kind kind_ = Kind::kNothing;
  std::string text_;
  std::vector<std::string> keys_;
  std::vector<StateNode> items_;
};

// The value as a document of YAML, without a line feed at its end.
std::string YamlOf(const StateNode& node);

}  // namespace lab
