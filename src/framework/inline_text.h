// Texts in the rows of tables.
#pragma once

#include <cstddef>
#include <string_view>

// A text of at most Longest characters that is part of its row. A pointer to it would have to be relocated at
// every start. A longer text does not compile; an absent one is empty.
template <std::size_t Longest>
class InlineText {
 public:
  constexpr InlineText() = default;

  // Implicit, so that a row holds the bare literal.
  template <std::size_t Size>  // NOLINTNEXTLINE(google-explicit-constructor)
  consteval InlineText(const char (&literal)[Size]) {
    static_assert(Size <= Longest + 1, "the row's InlineText is too narrow for this text");
    for (std::size_t i = 0; i < Size; ++i) text_[i] = literal[i];
  }

  constexpr bool Empty() const { return text_[0] == '\0'; }
  constexpr bool operator==(std::string_view text) const { return std::string_view(text_) == text; }
  constexpr bool operator==(const char* text) const { return *this == std::string_view(text); }
  bool operator==(std::nullptr_t) const = delete;  // no text is null: ask Empty

  // The text lives as long as its row.
  constexpr const char* CString() const& { return text_; }
  const char* CString() const&& = delete;

  // Implicit, because a row's text is used as any other. NOLINTBEGIN(google-explicit-constructor)
  constexpr operator const char*() const& { return text_; }
  operator const char*() const&& = delete;
  constexpr operator std::string_view() const& { return CString(); }
  operator std::string_view() const&& = delete;
  // NOLINTEND(google-explicit-constructor)

 private:
  char text_[Longest + 1] = {};
};
