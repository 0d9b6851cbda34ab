// What the texts of the program's sources hold: messages and options that no record shows from outside.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace reference {

struct SourceTexts {
  std::set<std::string> messages;                         // literals that begin with "Failed"
  std::set<std::string> status_names;                     // "kFileNotFound", named in a table of messages
  std::set<std::pair<std::string, std::string>> options;  // long and short name
};

// The texts of one source. Comments do not count, and adjacent literals are one text.
SourceTexts TextsOf(const std::string& source);

// The texts of every source below `folder`, by its path from `root` on, links unresolved.
std::map<std::string, SourceTexts> TextsBelow(const std::filesystem::path& root, const std::string& folder);

// The names that an enumeration of status.h gives to numbers: "kFileNotFound" to 19.
std::map<std::string, unsigned> EnumeratorsOf(const std::string& source);

// "file-not-found" of "kFileNotFound".
std::string IdOf(const std::string& enumerator);

}  // namespace reference
