// What every call does around its own work: look for a fault, find the port, chatter, trace.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "base/results.h"
#include "device/host.h"
#include "lab.h"

namespace lab {

// An argument as the trace shows it: numbers plain, texts in quotes, a missing text as null.
struct Argument {
  template <std::integral Number>
  Argument(Number value) : number(value), is_text(false) {}
  Argument(const char* value) : text(value), is_text(true) {}

  std::uint64_t number = 0;
  const char* text = nullptr;
  bool is_text;
};
using Arguments = std::initializer_list<Argument>;

// Says on standard error that the library has run out of memory, or the like: the answer alone would pass for
// one about the host. Takes no memory. Returns kInternalFailure.
std::uint32_t FailInternally() noexcept;

// What a call that changes something or runs a test answers about a port of a recorded host.
struct Refuse {
  std::uint32_t operator()(const recording::ProtocolRecording&) const { return kRecordedHost; }
};

class Call {
 public:
  Call(const char* name, Arguments arguments);                              // no port
  Call(const char* name, const DeviceHandle* handle, Arguments arguments);  // a port by its handle
  Call(const char* name, std::uint32_t sd_handle, Arguments arguments);     // a port by the handle's number

  // The faults and the port of this call decide first; otherwise action() answers. `unknown` is the answer
  // for a handle that names no port. On a recorded host play(port) answers in the action's place.
  template <typename Action, typename Play = Refuse>
  std::uint32_t Answer(std::uint32_t unknown, Action action, Play play = {}) {
    const std::optional<Fault> fault = Lab::Get().Faults().Take(name_);
    if (fault && !fault->performs) return fault->result;
    const std::uint32_t result = !about_port_      ? action()
                                 : recorded_       ? std::uint32_t{play(*recorded_)}
                                 : !port_.entry    ? unknown
                                 : InMaintenance() ? std::uint32_t{kMaintenanceMode}
                                                   : action();
    return fault ? fault->result : result;
  }

  // Adds " name=value" after the result in the trace.
  void Out(const char* name, std::uint64_t value);
  void Out(const char* name, const std::string& value);

  // Chatters and writes the trace line that ends in "-> result".
  void Finish(const std::string& result);

  Adapter& adapter() const { return *port_.adapter; }
  FCProtocolEntry& entry() const { return port_.entry->record; }
  DiagSetup& diag() const { return port_.entry->diag; }
  ConfigSetup& config() const { return port_.entry->config; }
  Entry& port() const { return *port_.entry; }
  CongestionSetup& congestion() const { return port_.entry->congestion; }
  TargetSet& targets() const { return port_.entry->targets; }
  SfpModule* sfp() const { return port_.entry->sfp.get(); }  // null: the cage is empty

  bool IsVirtualPort() const { return ::IsVirtualPort(entry()); }
  bool LinkIsUp() const { return IsLinkUp(entry()); }

  // Keeps a change of the port. Returns 0 or kStateNotSaved.
  std::uint32_t KeepPort(bool reboot_required) const { return Lab::Get().Keep(adapter(), reboot_required); }

 private:
  void AddArguments(Arguments arguments);
  template <typename Handle>
  void FindPortBy(const Handle& handle);
  bool InMaintenance() const;

  const char* name_;
  bool about_port_ = false;
  PortRef port_{};
  const recording::ProtocolRecording* recorded_ = nullptr;
  std::string arguments_;
  std::string outputs_;
};

// A call that reads something of a port and answers a status. action(call) does the work, play(port) plays it
// back; no exception leaves.
template <typename Handle, typename Play, typename Action>
std::uint32_t ServeReading(const char* name, Handle handle, Arguments arguments, Play play, Action action,
                           std::uint32_t unknown = kUnknownHandle) {
  try {
    Call call(name, handle, arguments);
    const std::uint32_t result = call.Answer(
        unknown, [&] { return std::uint32_t{action(call)}; }, play);
    call.Finish(std::to_string(result));
    return result;
  } catch (...) {
    return FailInternally();
  }
}

// A call that changes something of a port or runs a test on it.
template <typename Handle, typename Action>
std::uint32_t ServePort(const char* name, Handle handle, Arguments arguments, Action action,
                        std::uint32_t unknown = kUnknownHandle) {
  return ServeReading(name, handle, arguments, Refuse{}, action, unknown);
}

// The same for a call that names no port and needs the host.
template <typename Action>
std::uint32_t ServeHost(const char* name, Arguments arguments, Action action) {
  try {
    Lab::Get().GetHost();
    Call call(name, arguments);
    const std::uint32_t result = call.Answer(kSuccess, [&] { return std::uint32_t{action(call)}; });
    call.Finish(std::to_string(result));
    return result;
  } catch (...) {
    return FailInternally();
  }
}

// A call on a port that answers a record. action(call, record) fills it and answers 0 or a failure. After a
// failure, and for a handle that names no port, the record is zero.
template <typename Record, typename Action>
Record ServeRecord(const char* name, const DeviceHandle* handle, Arguments arguments, Action action) {
  Record record{};
  try {
    Call call(name, handle, arguments);
    const std::uint32_t result =
        call.Answer(kUnknownHandle, [&] { return std::uint32_t{action(call, record)}; });
    if (result != kSuccess) record = {};
    call.Finish(std::to_string(result));
    return record;
  } catch (...) {
    FailInternally();
    return {};
  }
}

}  // namespace lab
