// What the tests that talk to a remote port share: their words, the search for the target, and their verdict.
#pragma once

#include <cstdint>
#include <span>

#include "framework/device_library/calls.h"
#include "framework/device_library/fixed_text.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/world_wide_name.h"
#include "framework/library_call.h"
#include "framework/serializer.h"
#include "framework/status.h"
#include "framework/words.h"

// The port name that a test is aimed at: its octets, and their text as the library takes it.
struct Destination {
  WorldWideName name;
  FixedText<32> text;  // the name's text, then zeros
};

// Reads the word at `index` as ReadLeadingOctets does: the octets that are missing are 0, without a
// complaint.
Destination ReadDestination(const Words& words, std::size_t index);

struct RemoteTest {
  const FCProtocolEntry* fc = nullptr;
  Destination destination = {};
  std::uint32_t count = 0;          // 1 to 65535
  std::uint32_t stop_on_error = 0;  // 1 or 0
};

// Checks the port in word 0, which must be a real one with its link up, and then reads the destination, the
// test count and the stop flag from the word at `first` on. Returns the status of the first check that fails.
StatusCode ReadRemoteTest(const char* class_name, const Words& words, std::size_t first, RemoteTest& test);

// True when the port sees a target of this name.
bool IsTarget(const FCProtocolEntry& fc, const Destination& destination);

// What the library call of such a test does, for the log.
inline constexpr const char* kTestStep = "Diagnostic test";

// The messages of these tests. The echo test has all of them but the last.
std::span<const StatusMessage> RemoteTestMessages();

// What the library fills in a test whose result is only its answer; nothing here looks at it.
struct UnusedResult {
  std::uint32_t value = 0;
  std::uint8_t buffer[256] = {};
};

// Runs a test whose result is only the library's answer: its words as in ReadRemoteTest, the target, and then
// `call`, which makes the library call of all passes with the RemoteTest and an UnusedResult. Returns the
// status.
template <class Call>
StatusCode RunVerdictTest(const char* class_name, const Words& words, std::size_t first, Call call) {
  RemoteTest test;
  if (const StatusCode status = ReadRemoteTest(class_name, words, first, test); status != kSuccess)
    return status;
  if (!IsTarget(*test.fc, test.destination)) return kTargetNotFound;
  UnusedResult unused;
  return CallLibrary(class_name, kTestStep, kDiagnosticFailed, [&] { return call(test, unused); });
}

// Writes the document of such a test, the same for a success and a failure, and returns the code.
StatusCode WriteVerdict(Serializer& out, OutputMode mode, const char* structure, const char* test_name,
                        StatusCode code);
