// The file in which the changes to one port's settings wait, from the `setFile` that stages them to the `set`
// that commits them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "framework/status.h"

// Keys with the values that a file is to hold, in the order in which they are written: byte order.
using StagedValues = std::map<std::string, std::string>;

// The number that a value's text begins with, 0 without one. Decimal; only the low 32 bits of what it comes
// to count, so that a minus sign makes a number that is out of every range.
std::uint32_t NumberOf(const std::string& text);

// Where the changes of one family for one port wait; `port` is the port identifier as the user typed it.
std::string StagedPath(const char* family, const std::string& port);

class StagedFile {
 public:
  // Of a value in the file at most `value_size` - 1 characters are seen.
  StagedFile(std::string path, std::size_t value_size) : path_(std::move(path)), value_size_(value_size) {}

  bool IsPresent() const;

  // Stores the value of a key; false, and the value as it was, when the file does not hold it. Each look-up
  // reads the file from its start.
  bool Find(const std::string& key, std::string& value) const;
  bool FindNumber(const std::string& key, std::uint32_t& number) const;

  // Writes the values, each with a pass of its own over the file. kFileNotFound at the first failure; what
  // was written before it stays.
  StatusCode Write(const StagedValues& values) const;

  // A failure is only logged.
  void Remove() const;

 private:
  std::string path_;
  std::size_t value_size_;
};
