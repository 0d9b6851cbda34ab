// What the diagnostics that exchange frames with a remote port share: their words, the search for the target,
// and their verdict.
#pragma once

#include <cstddef>
#include <cstdint>

#include "diag/diagnostic_messages.h"
#include "framework/command_run.h"
#include "framework/device_library/calls.h"
#include "framework/library_call.h"
#include "framework/status.h"
#include "framework/words.h"

// The port name that an exchange is aimed at: its octets, and their text as the library takes it.
struct Destination {
  WorldWideName name;
  FixedText<32> text;  // lower-case octets with colons, then zeros
};

// Reads up to eight hexadecimal octets with colons between them from the word at `index`. A text that departs
// from this form ends there: the missing octets are 0, which is no error.
Destination ReadDestination(const Words& words, std::size_t index);

struct RemotePortExchange {
  const FCProtocolEntry* fc = nullptr;
  Destination destination = {};
  std::uint32_t count = 0;          // 1 to 65535
  std::uint32_t stop_on_error = 0;  // 1 or 0, as the library takes it
};

// Checks the port in word 0, which must be a physical one with its link up, and then reads the destination,
// the test count and the stop flag from the word at `first` on. Returns the status of the first check that
// fails.
StatusCode ReadExchange(CommandRun& run, std::size_t first, RemotePortExchange& exchange);

// kTargetNotFound unless the port sees a target of this name.
StatusCode CheckTarget(const CommandRun& run, const FCProtocolEntry& fc, const Destination& destination);

// What the library call of an exchange does, for the log.
inline constexpr const char* kExchangeStep = "Diagnostic test";

// What the library fills in an exchange whose result is only its status; nothing here reads it.
struct UnusedResult {
  std::uint32_t value = 0;
  std::uint8_t buffer[256] = {};
};

// Makes an exchange whose result is only the library's status: its words as in ReadExchange, the target, and
// then `call`, which makes the one library call for all passes with the RemotePortExchange and an
// UnusedResult. Returns the status.
template <class Call>
StatusCode ExchangeInOneCall(CommandRun& run, std::size_t first, Call call) {
  RemotePortExchange exchange;
  StatusCode status = ReadExchange(run, first, exchange);
  if (status == kSuccess) status = CheckTarget(run, *exchange.fc, exchange.destination);
  if (status != kSuccess) return status;
  UnusedResult unused;
  return CallLibrary(run, kExchangeStep, kDiagnosticFailed, [&] { return call(exchange, unused); });
}

inline constexpr auto kVerdictMessages =
    DiagnosticMessages(kSuccess, kTargetNotFound, kDiagnosticFailed, kNotInBootFromSan, kSpeedBelow16);

// Writes the document of such an exchange, the same for a success and a failure, and returns `status`. The
// class's messages are kVerdictMessages.
StatusCode WriteVerdict(CommandRun& run, const char* structure, const char* test_name, StatusCode status);
