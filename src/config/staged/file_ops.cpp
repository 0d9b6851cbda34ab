#include "config/staged/file_ops.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "framework/words.h"
#include "runtime/debug_log.h"
#include "runtime/out_of_memory.h"
#include "runtime/sync.h"
#include "runtime/text.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClass = "FileOps";

constexpr std::size_t kWriterPiece = 511;
constexpr std::size_t kReaderPiece = 1022;

struct Close {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

// Reads the rest of the line, at most `limit` characters of it. Unlike a read into a terminated text it keeps
// null characters. False at the end of the file.
bool ReadPiece(std::FILE* file, std::size_t limit, std::string& piece) {
  piece.clear();
  while (piece.size() < limit) {
    const int character = std::getc(file);
    if (character == EOF) break;
    piece += static_cast<char>(character);
    if (character == '\n') break;
  }
  return !piece.empty();
}

bool Write(std::FILE* file, std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

// Closes the file. Returns whether everything written to it has reached the file system, or the disk.
bool Finish(File file, FileOps::Reach reach) {
  bool written = std::ferror(file.get()) == 0;
  if (written && reach == FileOps::kDisk) {
    written = std::fflush(file.get()) == 0 && SyncDescriptor(fileno(file.get()));
  }
  return std::fclose(file.release()) == 0 && written;
}

// Opens a file for reading. Null, with errno set, also for a pipe, whose opening would wait for a writer, and
// for a device, whose reading might never end. A folder opens, and can't be read.
File OpenSource(const char* path) {
  struct stat status;
  if (stat(path, &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
    errno = EINVAL;
    return nullptr;
  }
  return File(std::fopen(path, "r"));
}

// True for a regular file under one name alone. A link of either kind would lead to another file.
bool IsStale(const char* path) {
  struct stat status;
  return lstat(path, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1;
}

// Opens a new file for writing, in place of a stale one; null for anything else that has its name.
File OpenNew(const char* path) {
  constexpr const char* kOnlyNew = "w+x";
  File file(std::fopen(path, kOnlyNew));
  if (file == nullptr && errno == EEXIST && IsStale(path) && unlink(path) == 0) {
    file.reset(std::fopen(path, kOnlyNew));
  }
  return file;
}

// Makes the file with this one line, under its own name: a run that ends early leaves it empty, and a loss of
// power may cut it. A line that cannot be written leaves no file.
bool CreateWithLine(const char* path, const std::string& line, FileOps::Reach reach) {
  File file = OpenNew(path);
  if (file == nullptr) return false;
  Write(file.get(), line);
  if (Finish(std::move(file), reach)) return true;
  std::remove(path);
  return false;
}

// Copies `source` with `line` in place of every piece that holds the key.
bool CopyWithLine(std::FILE* source, std::FILE* target, std::string_view key, const std::string& line) {
  bool matched = false;
  std::string piece;
  while (ReadPiece(source, kWriterPiece, piece)) {
    const bool matches = piece.find(key) != std::string::npos;
    if (!Write(target, matches ? line : piece)) return false;
    matched = matched || matches;
  }
  return std::ferror(source) == 0 && (matched || Write(target, line));
}

bool IsSpace(char character) {
  return std::isspace(static_cast<unsigned char>(character)) != 0;
}

std::string_view SkipSpace(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  return text;
}

// The text up to its first white space or `end` character.
std::string_view UpToSpace(std::string_view text, char end) {
  std::size_t length = 0;
  while (length < text.size() && !IsSpace(text[length]) && text[length] != end) ++length;
  return text.substr(0, length);
}

// Takes a line apart. False for a comment and for a line without separator.
bool SplitLine(std::string_view line, char separator, std::string_view& key, std::string_view& value) {
  constexpr char kComment = '#';
  line = SkipSpace(line);
  if (line.empty() || line.front() == kComment) return false;
  const std::size_t middle = line.find(separator);
  if (middle == std::string_view::npos) return false;
  key = UpToSpace(line.substr(0, middle), separator);
  value = UpToSpace(SkipSpace(line.substr(middle + 1)), kComment);
  return true;
}

// Logs why a function fails and returns its result.
int Fail(int result, const char* function, const char* what, const char* path) {
  DebugLogLevel(kDebugFailure, "FileOps::%s: %s %s", function, what, path);
  return result;
}

}  // namespace

int FileOps::IsFilePresent(const char* path) {
  const TraceScope trace({kClass, __func__});
  DebugLogLevel(kDebugTrace, "FileOps::%s: %s", __func__, path);
  struct stat status;
  return stat(path, &status) == 0 && S_ISREG(status.st_mode) ? 1 : 0;
}

int FileOps::UpdateKeyValueInFile(const char* path, const char* key, const char* value, Reach reach) {
  const TraceScope trace({kClass, __func__});
  DebugLogLevel(kDebugTrace, "FileOps::%s: %s: %s=%s", __func__, path, key, value);
  std::string temporary = std::string(path) + "_tmp";
  const std::string line = std::string(key) + "=" + value + "\n";

  File source = OpenSource(path);
  // A file that is there but can't be opened now, for want of memory say, keeps its lines.
  if (source == nullptr && errno != ENOENT) return Fail(kFailed, __func__, "cannot read", path);
  if (source == nullptr) {
    return CreateWithLine(path, line, reach) ? kDone : Fail(kFailed, __func__, "cannot create", path);
  }
  File target = OpenNew(temporary.c_str());
  if (target == nullptr) {
    return Fail(kFailed, __func__, "cannot open", temporary.c_str());
  }
  EndStep remove_temporary([](void* name) { std::remove(static_cast<const char*>(name)); }, temporary.data());
  const bool copied = CopyWithLine(source.get(), target.get(), key, line);
  remove_temporary.Drop();  // from here on nothing takes memory
  source.reset();
  // The copy and its name are on the disk before the old file goes: a loss of power leaves one of the two.
  const bool finished = Finish(std::move(target), reach) && (reach != kDisk || SyncFolderOf(path));
  if (!finished || !copied) {
    std::remove(temporary.c_str());
    return Fail(kFailed, __func__, "cannot write", temporary.c_str());
  }
  if (std::remove(path) != 0 || std::rename(temporary.c_str(), path) != 0) {
    return Fail(kFailed, __func__, "cannot replace", path);
  }
  return kDone;
}

int FileOps::SyncFile(const char* path) {
  if (SyncPath(path) && SyncFolderOf(path)) return kDone;
  return Fail(kFailed, __func__, "cannot sync", path);
}

int FileOps::RemoveFile(const char* path) {
  const TraceScope trace({kClass, __func__});
  DebugLogLevel(kDebugTrace, "FileOps::%s: %s", __func__, path);
  if (std::remove(path) != 0) return Fail(kFailed, __func__, "cannot remove", path);
  SyncFolderOf(path);  // or the file might be back after a loss of power
  return kDone;
}

int FileOps::GetKeyValueFromFile(const char* path, const char* key, char* value, std::size_t size,
                                 char separator) {
  const TraceScope trace({kClass, __func__});
  if (path == nullptr || key == nullptr || value == nullptr || size == 0) {
    return Fail(kNoArgument, __func__, "no path, key or buffer:", path != nullptr ? path : "(none)");
  }
  DebugLogLevel(kDebugTrace, "FileOps::%s: %s: %s", __func__, path, key);
  const File file(std::fopen(path, "r"));
  if (file == nullptr) {
    return Fail(kNotReadable, __func__, "cannot read", path);
  }
  std::string line;
  while (ReadPiece(file.get(), kReaderPiece, line)) {
    std::string_view line_key;
    std::string_view line_value;
    if (!SplitLine(line, separator, line_key, line_value) || !EqualNoCase(line_key, key)) continue;
    const std::string text(line_value.substr(0, size - 1));
    BoundedCopy(value, size, text.c_str(), kWholeText);
    DebugLogLevel(kDebugTrace, "FileOps::%s: %s=%s", __func__, key, value);
    return kFound;
  }
  return std::ferror(file.get()) == 0 ? kNotFound : Fail(kNotReadable, __func__, "cannot read", path);
}
