// What the loopback test and the read/write buffer test share. Both send a data pattern pass by pass: here
// are the words that ask for it and the count of the passes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "framework/command_run.h"
#include "framework/device_library/diag_records.h"
#include "framework/device_library/port_entry.h"
#include "framework/serializer.h"
#include "framework/status.h"

// Test status of a pass that went well.
inline constexpr std::string_view kPassSucceeded = "Success";

// The places of the words that both tests have; word 0 is the port. The data pattern is the last word of
// each.
inline constexpr std::size_t kTestCountWord = 1;
inline constexpr std::size_t kIncrementWord = 2;
inline constexpr std::size_t kDataSizeWord = 3;
inline constexpr std::size_t kOnErrorWord = 4;

// Stores the test count at both of its places.
void SetTestCount(DiagTestRequest& request, std::uint32_t count);

// What a test takes as increment and as data size in bytes.
struct PassLimits {
  std::uint32_t max_increment;
  std::span<const std::uint32_t> data_sizes;
};

// Reads the increment (how often the library is called), the data size and the on-error action. Returns the
// status of the first word that is out of bounds.
StatusCode ReadPassWords(const CommandRun& run, const PassLimits& limits, DiagTestRequest& request,
                         std::uint32_t& increment);

// Reads the data pattern from the word at `index`, and the characters of a custom one from its option.
// kBadCustomPattern when these are not eight with hyphens between them.
StatusCode ReadDataPattern(const CommandRun& run, std::size_t index, DiagTestRequest& request);

// kMaintenanceMode for a port that the driver knows to be in maintenance mode.
StatusCode CheckMaintenanceMode(const CommandRun& run, const FCProtocolEntry& fc);

// The counters of a run, which its document shows.
struct PassCounters {
  std::uint32_t iteration = 0;
  std::uint32_t succeeded = 0;
  std::uint32_t failed = 0;
};

// Counts a pass and returns whether the next one runs: not after a failure on which the test is to stop. Such
// a failure leaves the iteration as it was, so that it shows how many passes came before.
bool CountPass(bool succeeded, OnErrorAction on_error, PassCounters& counters);

// Writes the counters as fields of the structure at work.
void WriteCounters(Serializer& out, const PassCounters& counters);
