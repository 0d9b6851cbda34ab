// Plays a user at the keyboard: standard input is a pipe as long as an object of this class lives.
#pragma once

#include <string_view>

class StdinPipe {
 public:
  // `typed` is in the pipe at once.
  explicit StdinPipe(std::string_view typed = "");
  ~StdinPipe();
  StdinPipe(const StdinPipe&) = delete;
  StdinPipe& operator=(const StdinPipe&) = delete;

  // Blocks when the pipe is full, at 64 KiB.
  void Type(std::string_view text) const;

  // Ends the input. May be called again.
  void CloseInput();

 private:
  int real_stdin_;
  int write_end_;
};
