// A state file by itself, without the host that it belongs to.
#pragma once

#include <cstddef>
#include <string>

namespace lab {

// Whether a text is that of a state file and not of a host file: its adapters are a map.
bool IsState(const std::string& text);

// What a state file holds.
struct StateContent {
  std::size_t adapters = 0;
  std::size_t ports = 0;
  bool reboot_required = false;
};

// Reads the text of a state file as if some host had every adapter and port in it. Returns an empty text, or
// a line for every mistake as ReadHost does.
std::string CheckState(const std::string& name, const std::string& text, StateContent& content);

}  // namespace lab
