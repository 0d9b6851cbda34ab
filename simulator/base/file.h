// Whole files, read and written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lab {

// A larger file is neither a host nor an image: reading stops soon after this many bytes, which also ends
// endless devices.
inline constexpr std::size_t kLargestFile = 16u << 20;

enum class FileResult { kRead, kNotOpened, kNotRead };

// Whether the path is a folder, a device or a pipe, whose reading may fail or never end; false for a regular
// file and where nothing is.
bool IsNoRegularFile(const std::string& path);

// Appends the content of a file to `out`; errno says why it could not be opened or read.
FileResult ReadFile(const char* path, std::string& out);

// Writes a file. One that is there is replaced at once, as by ReplaceFile, where that can be done. Returns 0,
// kFileNotFound when its folder does not exist, or kFileOpenError.
std::uint32_t WriteFile(const char* path, const std::string& content);

// Where writing to the path ends up: the path itself, or what its symbolic links lead to, which need not
// exist.
std::string FollowLinks(const std::string& path);

// Writes a new file and renames it over the old one, so that a reader sees the one or the other, never half
// of one; both are on the disk when this returns. Keeps the old file's mode. A symbolic link stays, its
// target is replaced. Returns an empty text, or "<path>: can't be written: <why>".
std::string ReplaceFile(const std::string& path, const std::string& content);

}  // namespace lab
