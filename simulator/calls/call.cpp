#include "calls/call.h"

#include <cstdio>

#include "base/text.h"

namespace lab {

std::uint32_t FailInternally() noexcept {
  std::fputs("zfcesxcli: simulated host: out of memory\n", stderr);
  return kInternalFailure;
}

Call::Call(const char* name, Arguments arguments) : name_(name) {
  AddArguments(arguments);
}

Call::Call(const char* name, const DeviceHandle* handle, Arguments arguments)
    : name_(name), about_port_(true) {
  arguments_ = "port=unknown";
  if (handle) FindPortBy(*handle);
  AddArguments(arguments);
}

Call::Call(const char* name, std::uint32_t sd_handle, Arguments arguments) : name_(name), about_port_(true) {
  arguments_ = "port=unknown";
  FindPortBy(sd_handle);
  AddArguments(arguments);
}

template <typename Handle>
void Call::FindPortBy(const Handle& handle) {
  const FCProtocolEntry* entry = nullptr;
  if (const RecordedHost* const recorded = Lab::Get().Recorded()) {
    recorded_ = recorded->FindPort(handle);
    if (recorded_) entry = &recorded_->record;
  } else if (FindPort(Lab::Get().GetHost(), handle, port_)) {
    entry = &port_.entry->record;
  }
  if (entry) arguments_ = "port=FC_" + OctetText(entry->port_name.octets);
}

void Call::AddArguments(Arguments arguments) {
  for (const Argument& argument : arguments) {
    if (!arguments_.empty()) arguments_ += ", ";
    if (!argument.is_text) {
      arguments_ += std::to_string(argument.number);
    } else {
      arguments_ += argument.text ? Quoted(argument.text) : "null";
    }
  }
}

bool Call::InMaintenance() const {
  return IsInMaintenanceMode(entry());
}

void Call::Out(const char* name, std::uint64_t value) {
  Out(name, std::to_string(value));
}

void Call::Out(const char* name, const std::string& value) {
  outputs_ += ' ' + std::string(name) + '=' + value;
}

void Call::Finish(const std::string& result) {
  Lab& lab = Lab::Get();
  const Chatter chatter = lab.ChatterNow();
  if (stdout && (chatter == Chatter::kAllCalls || (chatter == Chatter::kPortCalls && about_port_))) {
    std::printf("%s: enter\n%s: exit, status %s\n", name_, name_, result.c_str());
  }
  lab.Trace(std::string(name_) + '(' + arguments_ + ") -> " + result + outputs_);
}

}  // namespace lab
