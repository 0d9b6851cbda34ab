// A restart of the host: what takes effect, what ends, what begins anew.
#pragma once

#include <span>

#include "device/host.h"

namespace lab {

// One effect of a restart, in the order in which they are played. docs/lab-host.md has the same rows.
struct RebootEffect {
  const char* what;
  // `changed` is the adapter with its state, `first` the same one as the host file has it.
  void (*play)(Adapter& changed, const Adapter& first);
};

std::span<const RebootEffect> RebootEffects();

// Plays a restart of a host that has its state. `first` is the same host without any state.
void Reboot(Host& host, const Host& first);

}  // namespace lab
