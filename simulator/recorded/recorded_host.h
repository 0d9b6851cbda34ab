// A host that is played back: its records as callers see them, and the answers of its calls by port.
#pragma once

#include <cstdint>
#include <vector>

#include "recording/recording.h"

namespace lab {

class RecordedHost {
 public:
  explicit RecordedHost(recording::HostRecording recording);
  RecordedHost(const RecordedHost&) = delete;
  RecordedHost& operator=(const RecordedHost&) = delete;

  const recording::HostRecording& Recording() const { return recording_; }

  // The list that callers get; null when the host has none.
  const AdapterList* List() const { return recording_.has_list ? &recording_.list : nullptr; }

  // The port with this handle block, by its address or else by its content; null when there is none.
  const recording::ProtocolRecording* FindPort(const DeviceHandle& handle) const;

  // The first port with this number, and the first target of this name at any port with the number.
  const recording::ProtocolRecording* FindPort(std::uint32_t sd_handle) const;
  const recording::TargetRecording* FindTarget(std::uint32_t sd_handle, const WorldWideName& name) const;

 private:
  void Link();

  recording::HostRecording recording_;
  std::vector<const recording::ProtocolRecording*> ports_;  // those that calls are about
};

// The port's target with this number; null when it has none.
const recording::TargetRecording* FindTarget(const recording::ProtocolRecording& port, std::uint16_t number);

}  // namespace lab
