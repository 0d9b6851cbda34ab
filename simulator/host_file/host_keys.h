// Reading the host file. docs/lab-host.md describes the keys.
#pragma once

#include <string>

#include "device/host.h"
#include "host_file/yaml_value.h"

namespace lab {

// Fills `host`, which is left unlinked, from the text of a host file. Returns an empty text, or the mistake
// with `name` and its line; `host` is then of no use.
std::string ReadHost(const std::string& name, const std::string& text, Host& host);

// Reads into `adapter` a map of what calls can change: personality, versions, flash, memo-block, ports.
void ReadAdapterState(const Value& map, Adapter& adapter);

// What is larger is neither a host nor an image: reading stops soon behind it, which also ends endless
// devices.
inline constexpr std::size_t kLargestFile = 16u << 20;

enum class FileResult { kRead, kNotOpened, kNotRead };

// The whole content of a file; errno tells why it could not be opened or read.
FileResult ReadFile(const char* path, std::string& out);

// Writes a file. Returns 0, kFileNotFound when its folder is not there, or kFileOpenError.
std::uint32_t WriteFile(const char* path, const std::string& content);

}  // namespace lab
