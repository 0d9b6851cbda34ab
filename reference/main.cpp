// Makes all that people and shells read about the commands out of the descriptions:
//
//   reference DESCRIPTIONS [--readme FILE] [--docs FOLDER] [--share FOLDER]
//
// FOLDERs are made where they are missing. Files that would not change keep their times.
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "reference/description.h"
#include "reference/print/completion.h"
#include "reference/print/descriptor.h"
#include "reference/print/man.h"
#include "reference/print/markdown.h"
#include "reference/print/readme.h"
#include "reference/reader.h"
#include "reference/whole_file.h"

namespace {

using Files = std::map<std::string, std::string>;  // contents by paths

constexpr const char* kUsage =
    "usage: reference DESCRIPTIONS [--readme FILE] [--docs FOLDER] [--share FOLDER]\n";

bool WriteFile(const std::filesystem::path& path, const std::string& content) {
  if (std::filesystem::exists(path) && reference::ReadWholeFile(path) == content) return true;
  std::error_code error;
  std::filesystem::create_directories(path.parent_path(), error);
  std::FILE* const stream = std::fopen(path.c_str(), "wb");
  if (stream == nullptr) return false;
  const bool written = std::fwrite(content.data(), 1, content.size(), stream) == content.size();
  return std::fclose(stream) == 0 && written;
}

void AddDocs(const reference::Reference& described, const std::string& folder, Files& files) {
  for (const auto& [name, content] : reference::MarkdownPages(described))
    files[folder + "/" + name] = content;
}

void AddShare(const reference::Reference& described, const std::string& folder, Files& files) {
  for (const auto& [name, content] : reference::ManPages(described)) files[folder + "/man/" + name] = content;
  files[folder + "/bash-completion/completions/zfcesxcli"] =
      reference::BashCompletion(described, reference::ReadWholeFile(described.folder + "/completion/bash"));
  files[folder + "/zsh/site-functions/_zfcesxcli"] =
      reference::ZshCompletion(described, reference::ReadWholeFile(described.folder + "/completion/zsh"));
  files[folder + "/esxcli/zfcesxcli.xml"] = reference::DescriptorText(described);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc % 2 != 0) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  reference::Mistakes mistakes;
  const reference::Reference described = reference::ReadReference(argv[1], mistakes);
  if (!mistakes.None()) {
    mistakes.Print();
    return 1;
  }
  Files files;
  for (int i = 2; i < argc; i += 2) {
    const std::string option = argv[i];
    const std::string place = argv[i + 1];
    if (option == "--readme") {
      files[place] = reference::ReadmeText(described);
    } else if (option == "--docs") {
      AddDocs(described, place, files);
    } else if (option == "--share") {
      AddShare(described, place, files);
    } else {
      std::fputs(kUsage, stderr);
      return 2;
    }
  }
  for (const auto& [path, content] : files) {
    if (WriteFile(path, content)) continue;
    std::fprintf(stderr, "reference: cannot write %s\n", path.c_str());
    return 1;
  }
  return 0;
}
