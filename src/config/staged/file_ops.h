// Reading and rewriting the small "key=value" files in which changes wait between two runs of the program.
#pragma once

#include <cstddef>

// Results are plain numbers; each function says which of them it returns. Every failure is logged.
class FileOps {
 public:
  static constexpr int kFound = 1;
  static constexpr int kNotFound = 0;
  static constexpr int kNoArgument = -1;
  static constexpr int kNotReadable = -2;

  static constexpr int kDone = 0;
  static constexpr int kFailed = 19;

  // How far a change has come when a function returns: other processes see it, or it also outlasts a loss of
  // power.
  enum Reach { kProcesses, kDisk };

  // 1 when the path names a regular file, else 0.
  static int IsFilePresent(const char* path);

  // Writes "key=value" in place of every line that holds the key, or after the last line when none does; a
  // file that is not there is made. Intended: a bare search for the key's text, so that a comment or a longer
  // key that holds it is overwritten too. A line of more than 511 characters counts as several.
  //
  // The file is written anew beside the old one, which is then removed and replaced; in between there is no
  // file. Returns kDone or kFailed. The old file stays as it was unless its replacement is complete: for
  // kDisk, on the disk. The new name gets there with the next change, or SyncFile.
  static int UpdateKeyValueInFile(const char* path, const char* key, const char* value,
                                  Reach reach = kProcesses);

  // Waits until the file's content and its name are on the disk. kDone, also where the file system knows no
  // such wait, or kFailed.
  static int SyncFile(const char* path);

  // kDone or kFailed.
  static int RemoveFile(const char* path);

  // Copies the value of the first line whose key is `key`, in any case, into `value`, which holds `size`
  // bytes; a longer one is cut. Comments ("#") and what follows a blank are no part of a key or a value. A
  // line of more than 1022 characters counts as several. Returns kFound, kNotFound, kNoArgument or
  // kNotReadable.
  static int GetKeyValueFromFile(const char* path, const char* key, char* value, std::size_t size,
                                 char separator);
};
