// The running simulation: environment, host, state, trace. One per process, from the first call to
// TORPI_Uninitialize; the library is called from one thread.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "base/faults.h"
#include "device/host.h"
#include "recorded/recorded_host.h"

namespace lab {

// The text of builtin_host.yaml, the host that is played when no host file is named.
extern const char kBuiltinHost[];

struct Environment {
  std::string host_file;
  std::string state_file;
  std::string trace_file;
  std::string time;  // "2026-03-14 09:26:53", or empty for the clock
  Chatter chatter = Chatter::kUnset;
  FaultQueue faults;
  std::string mistake;  // what is wrong in a variable, or empty
};

class Lab {
 public:
  Lab();
  ~Lab();
  Lab(const Lab&) = delete;
  Lab& operator=(const Lab&) = delete;

  // The simulation, brought up at the first call.
  static Lab& Get();

  // Takes it down; the next call brings up a fresh one.
  static void Reset();

  // The host, loaded at the first use. After a mistake in the host file, the state file or a variable, which
  // standard error then names, the host has no adapters.
  Host& GetHost();

  // The host that is played back; null when it is a simulated one.
  const RecordedHost* Recorded() {
    GetHost();
    return recorded_.get();
  }

  // The faults asked for: those of the environment, and those of the host file once it is loaded.
  FaultQueue& Faults() { return host_ ? host_->faults : environment_.faults; }
  Chatter ChatterNow() const;

  // Marks the adapter as changed and writes the state file, if there is one. Returns 0 or kStateNotSaved.
  std::uint32_t Keep(Adapter& adapter, bool reboot_required);

  // Writes the time of an update, and the tool that makes it, into a memo block.
  void StampUpdate(FlashMemoBlock& memo) const;

  // Appends one line, without its line end, to the trace, if there is one.
  void Trace(std::string line);

  void SetToolId(std::uint32_t tool) { tool_id_ = tool; }
  void SetToolVersion(const std::uint8_t (&version)[4]) {
    std::memcpy(tool_version_, version, sizeof tool_version_);
  }

 private:
  std::unique_ptr<Host> LoadHost();
  std::string LoadRecording(const std::string& name, const std::string& text);

  Environment environment_;
  std::unique_ptr<Host> host_;  // without adapters when it is played back
  std::unique_ptr<RecordedHost> recorded_;
  int trace_descriptor_ = -1;
  std::uint32_t tool_id_ = 0;
  std::uint8_t tool_version_[4] = {};
};

}  // namespace lab
