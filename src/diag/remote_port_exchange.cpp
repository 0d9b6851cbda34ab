#include "diag/remote_port_exchange.h"

#include <algorithm>
#include <string>

#include "diag/diagnostic_words.h"
#include "discovery/host_walk.h"
#include "discovery/port_lookup.h"
#include "runtime/text.h"

Destination ReadDestination(const Words& words, std::size_t index) {
  Destination destination = {};
  destination.name = ReadLeadingOctets(std::string(WordAt(words, index)).c_str());
  BoundedCopy(destination.text.bytes, sizeof destination.text, destination.name.Text().c_str(), kWholeText);
  return destination;
}

StatusCode ReadExchange(CommandRun& run, std::size_t first, RemotePortExchange& exchange) {
  constexpr std::uint32_t kMaxCount = 65535;
  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) return status;
  exchange.fc = selected.fc;
  if (const StatusCode status = CheckLinkUp(run, *exchange.fc); status != kSuccess) return status;
  exchange.destination = ReadDestination(run.words, first);
  if (const StatusCode status = ReadCount(run, first + 1, "test count", kMaxCount, exchange.count);
      status != kSuccess) {
    return status;
  }
  // An unknown word is no error: it means false.
  exchange.stop_on_error = EqualNoCase(WordAt(run.words, first + 2), "true") ? 1 : 0;
  return kSuccess;
}

StatusCode CheckTarget(const CommandRun& run, const FCProtocolEntry& fc, const Destination& destination) {
  const auto targets = TargetsOf(fc);
  const bool found = std::any_of(targets.begin(), targets.end(), [&destination](const TargetEntry& target) {
    return target.port_name == destination.name;
  });
  return found ? kSuccess : run.Refuse(kTargetNotFound, "Target %s not found", destination.text.bytes);
}

StatusCode WriteVerdict(CommandRun& run, const char* structure, const char* test_name, StatusCode status) {
  // Intended: the maintenance mode has a label of its own.
  const char* const label = status == kMaintenanceMode ? "Message" : "Test Result";
  const char* const message = run.MessageFor(status);
  run.out.Open(run.mode);
  run.out.BeginStructure(structure);
  run.out.WriteStringField("Diagnostic Test", test_name);
  run.out.WriteStringField(label, message);
  run.out.EndStructure();
  run.out.Close();
  run.Trace("%s=%s", label, message);
  return status;
}
