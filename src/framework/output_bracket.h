// Keeps the device library's chatter out of the program's output.
#pragma once

#include <cstdio>

#include "framework/command_run.h"
#include "runtime/out_of_memory.h"
#include "runtime/timing_scope.h"

inline constexpr const char* kLibraryOutputFile = "/var/tmp/torpi-output.log";

// While an object of this class is open, standard output is the library output file: the stream pointer of
// the C library itself is replaced, so that everything printed in this process lands there. The object opens
// in its constructor and puts standard output back in its destructor at the latest, or when the program ends
// without memory; a file that cannot be opened leaves standard output in place, so that the command can
// report it.
class OutputBracket {
 public:
  // `function` and `step` (such as " before RDP") only word the log line of a failure.
  explicit OutputBracket(const FunctionName& function, const char* step = "");
  explicit OutputBracket(const CommandRun& run, const char* step = "")
      : OutputBracket(run.Function(), step) {}
  ~OutputBracket() { Close(); }
  OutputBracket(const OutputBracket&) = delete;
  OutputBracket& operator=(const OutputBracket&) = delete;

  bool IsOpen() const { return library_output_ != nullptr; }

  // Ends the bracket early; calling it again does nothing. Results are evaluated and printed after it.
  void Close();

 private:
  std::FILE* OpenLibraryOutput();

  char buffer_[4096];  // the library output's; it takes no memory, and the C library does not ask for the
                       // file's block size
  std::FILE* standard_output_;
  std::FILE* library_output_;
  EndStep close_;
};

// Gives a closed standard output and a closed standard error to /dev/null. Otherwise the next file to be
// opened gets the number, and with it the document or a message. Writes to either wait for a slow reader.
void ReserveStandardOutput();

// Throws away all that is printed to standard output from here on.
void SilenceStandardOutput();
