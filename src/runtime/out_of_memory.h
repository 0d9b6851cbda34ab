#pragma once

// Ends the program when memory that it cannot do without is not to be had: runs the planned steps (EndStep),
// the latest first, flushes what every stream holds, prints "zfcesxcli: out of memory" on standard error and
// exits with status 0, as a command always does. No destructor and no exit function runs, and nothing here
// takes memory.
[[noreturn]] void EndWithoutMemory();

// Something that has to be put right when the program ends without memory: a document to close, standard
// output to put back, an unfinished file to remove.
class EndStep {
 public:
  using Function = void (*)(void* subject);

  EndStep() = default;
  // Plans the step at once.
  EndStep(Function function, void* subject) { Plan(function, subject); }
  ~EndStep() { Drop(); }
  EndStep(const EndStep&) = delete;
  EndStep& operator=(const EndStep&) = delete;

  // From here on the end calls function(subject), which takes no memory. A step that is planned already is
  // planned anew, as the latest.
  void Plan(Function function, void* subject);

  // Takes the step back if it is planned.
  void Drop() {
    if (function_ != nullptr) Remove();
  }

 private:
  friend void EndWithoutMemory();

  void Remove();

  static EndStep* latest;

  Function function_ = nullptr;
  void* subject_ = nullptr;
  EndStep* earlier_ = nullptr;
};
