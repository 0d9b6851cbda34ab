// Answers of a recorded host, played back: the same result, the same bytes written.
#pragma once

#include <algorithm>
#include <cstdint>

#include "base/results.h"
#include "recording/recording.h"

namespace lab {

using recording::ProtocolRecording;

// Plays the answer by write(record). kNotRecorded for a call that was not asked or that the host's library
// lacks.
template <class Record, class Write>
std::uint32_t Play(const recording::Answer<Record>& answer, Write write) {
  if (answer.asked != recording::Asked::kYes) return kNotRecorded;
  write(answer.record);
  return answer.result;
}

// The player of an answer that fills one record.
template <class Record>
auto Plays(recording::Answer<Record> ProtocolRecording::*answer, Record* out) {
  return [=](const ProtocolRecording& port) -> std::uint32_t {
    if (out == nullptr) return kBadArgument;
    return Play(port.*answer, [=](const Record& record) { *out = record; });
  };
}

// The player of a call whose value is the answer: 0 when there is none.
inline auto PlaysValue(recording::Answer<std::uint32_t> ProtocolRecording::*answer) {
  return [=](const ProtocolRecording& port) { return (port.*answer).record; };
}

// The player of an answer that fills a buffer of *size bytes and says in *size how many there are.
inline auto PlaysSized(recording::Answer<recording::SizedBytes> ProtocolRecording::*answer, std::uint8_t* out,
                       std::uint32_t* size) {
  return [=](const ProtocolRecording& port) -> std::uint32_t {
    if (out == nullptr || size == nullptr) return kBadArgument;
    return Play(port.*answer, [=](const recording::SizedBytes& sized) {
      std::copy_n(sized.bytes.begin(), std::min<std::size_t>(sized.bytes.size(), *size), out);
      *size = sized.size;
    });
  };
}

}  // namespace lab
