// zfcesxcli, run as a child whose standard output is read.
#pragma once

#include <sys/types.h>

#include <string>

#include "tools/common/arguments.h"

namespace zfc_json {

class Program {
 public:
  Program() = default;
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  // Closes the reading end; the program is not waited for.
  ~Program();

  // Starts the zfcesxcli that is in this command's own folder with these words. Returns an empty text, or why
  // it could not be started.
  std::string Start(const tools::Words& words);

  // Its standard output.
  int Output() const { return output_; }

  // Reads what is left of the output, so that the program is not ended in the middle of its work, and waits
  // for its end. Returns an empty text, or how it ended other than by itself with 0.
  std::string Wait();

 private:
  pid_t process_ = -1;
  int output_ = -1;
};

}  // namespace zfc_json
