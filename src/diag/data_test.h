// What the loopback test and the read/write buffer test share: their words and the count of their passes.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "framework/device_library/diag_records.h"
#include "framework/status.h"
#include "framework/words.h"

// Test status of a pass that went well.
inline constexpr std::string_view kPassSucceeded = "Success";

// Stores the test count at both of its places.
void SetTestCount(DiagTestRequest& request, std::uint32_t count);

// Reads the increment (word 2: how often the library is called), the data size (word 3) and the on-error
// action (word 4). Returns the status of the first word that is out of bounds.
StatusCode ReadPassWords(const Words& words, std::uint32_t max_increment,
                         std::span<const std::uint32_t> data_sizes, DiagTestRequest& request,
                         std::uint32_t& increment);

// Reads the data pattern from the word at `index`, and the characters of a custom one from its option.
// kBadCustomPattern when these are not eight with hyphens between them.
StatusCode ReadDataPattern(const Words& words, std::size_t index, DiagTestRequest& request);

// The counters of a run, which its document shows.
struct PassCounters {
  std::uint32_t iteration = 0;
  std::uint32_t succeeded = 0;
  std::uint32_t failed = 0;
};

// Counts a pass. Answers whether the next one runs: not behind a failure on which the test is to stop, which
// deliberately leaves the iteration as it was, so that it tells how many passes came ahead.
bool CountPass(bool succeeded, OnErrorAction on_error, PassCounters& counters);
