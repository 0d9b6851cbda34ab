// Descriptions that a test writes.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "reference/description.h"
#include "reference/mistakes.h"
#include "reference/reader.h"

namespace reference {

// A folder of descriptions in which nothing but what a test writes differs from the least that there can be.
class WrittenReference {
 public:
  WrittenReference() {
    char name[] = "/tmp/reference-XXXXXX";
    folder_ = mkdtemp(name);
    Write("arguments.yaml",
          "port: {shown: PORT, about: A port., complete: ports}\nfile: {shown: FILE, about: A file., "
          "complete: files}\n");
    Write("messages.yaml",
          "read-failed: {status: 13, cause: It broke., do: Mend it.}\n"
          "host-not-found: {status: 14, message: \"Failed, Host not found\", cause: No driver., do: Load "
          "it.}\n");
  }
  ~WrittenReference() { std::filesystem::remove_all(folder_); }
  WrittenReference(const WrittenReference&) = delete;
  WrittenReference& operator=(const WrittenReference&) = delete;

  void Write(const std::string& name, const std::string& content) {
    const std::filesystem::path path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << content;
  }

  // A node "port beam" with one command `get`; `more` is added to the command's keys, `keys` to those of the
  // node.
  void WriteNode(const std::string& more = "", const std::string& keys = "") {
    Write("nodes/port-beam.yaml",
          "node: -t port -s beam\nclass: Beam\nhelp: a beam\nhelp-head: Beam\ntitle: the beam of a "
          "port\nabout: About it.\n" +
              keys + "commands:\n  get:\n    help: gets it\n    does: Shows it.\n" + more);
  }

  Reference Read() { return ReadReference(folder_, mistakes); }

  Mistakes mistakes;

 private:
  std::filesystem::path folder_;
};

}  // namespace reference
