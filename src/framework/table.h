// Tables of rows with addresses.
#pragma once

#include <cstddef>
#include <iterator>
#include <type_traits>

// A table that a function reads out row by row. An address in data (of a text, a function, another table) has
// to be relocated at every start, which also copies its page; a function computes addresses from its own.
// Rows of texts alone need no table of this kind: they have their texts inside, as InlineText.
template <class Row>
class Table {
 public:
  using RowFunction = Row (*)(std::size_t index);

  constexpr Table() = default;  // without rows
  constexpr Table(RowFunction row, std::size_t size) : row_(row), size_(size) {}

  constexpr std::size_t size() const { return size_; }
  Row operator[](std::size_t index) const { return row_(index); }

  class Iterator {
   public:
    Iterator(const Table& table, std::size_t index) : table_(table), index_(index) {}
    Row operator*() const { return table_[index_]; }
    Iterator& operator++() {
      ++index_;
      return *this;
    }
    bool operator!=(const Iterator& other) const { return index_ != other.index_; }

   private:
    const Table& table_;
    std::size_t index_;
  };
  Iterator begin() const { return {*this, 0}; }
  Iterator end() const { return {*this, size_}; }

 private:
  RowFunction row_ = nullptr;
  std::size_t size_ = 0;
};

// The row with this index, which is below the size. As constants of their own, rows need no array in data.
template <const auto& rows, std::size_t place = 0>
auto RowOf(std::size_t index) {
  constexpr auto row = rows[place];
  if constexpr (place + 1 < std::size(rows)) {
    if (index != place) return RowOf<rows, place + 1>(index);
  }
  return row;
}

// The table of a constant array, which itself is only read by the compiler.
template <const auto& rows>
constexpr auto TableOf() {
  return Table<std::remove_cvref_t<decltype(rows[0])>>(&RowOf<rows>, std::size(rows));
}
