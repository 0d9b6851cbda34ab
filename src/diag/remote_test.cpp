#include "diag/remote_test.h"

#include <algorithm>
#include <string>

#include "diag/test_messages.h"
#include "diag/test_port.h"
#include "diag/test_words.h"
#include "discovery/host_walk.h"
#include "runtime/debug_log.h"
#include "runtime/text.h"

namespace {

constexpr std::uint32_t kMaxCount = 65535;

constexpr StatusMessage kMessages[] = {
    kSuccess,           kInvalidParameter, kDPortReadFailed,      kHostNotFound,     kFileNotFound,
    kDPortUpdateFailed, kAdapterNotFound,  kTargetNotFound,       kDiagnosticFailed, kFeatureNotSupported,
    kNotInBootFromSan,  kLinkDown,         kNotInDiagnosticsMode, kVirtualPort,      kMaintenanceMode,
    kSpeedBelow16,  // the last: the echo test lacks it
};

}  // namespace

Destination ReadDestination(const Words& words, std::size_t index) {
  Destination destination = {};
  destination.name = ReadLeadingOctets(std::string(WordAt(words, index)).c_str());
  BoundedCopy(destination.text.bytes, sizeof destination.text, destination.name.Text().c_str(), kWholeText);
  return destination;
}

StatusCode ReadRemoteTest(const char* class_name, const Words& words, std::size_t first, RemoteTest& test) {
  if (const StatusCode status = SelectTestPort(class_name, words, test.fc); status != kSuccess) return status;
  if (!IsLinkUp(*test.fc)) return kLinkDown;
  test.destination = ReadDestination(words, first);
  if (!ReadCount(words, first + 1, kMaxCount, test.count)) return kInvalidParameter;
  // Deliberately without an error for an unknown word: it means false.
  test.stop_on_error = EqualNoCase(WordAt(words, first + 2), "true") ? 1 : 0;
  return kSuccess;
}

bool IsTarget(const FCProtocolEntry& fc, const Destination& destination) {
  const auto targets = TargetsOf(fc);
  return std::any_of(targets.begin(), targets.end(), [&destination](const TargetEntry& target) {
    return target.port_name == destination.name;
  });
}

std::span<const StatusMessage> RemoteTestMessages() {
  return kMessages;
}

StatusCode WriteVerdict(Serializer& out, OutputMode mode, const char* structure, const char* test_name,
                        StatusCode code) {
  const char* const message = MessageFor(kMessages, code);
  DebugLogLevel(kDebugTrace, "%s: %s: %s", structure, test_name, message);
  out.Open(mode);
  out.BeginStructure(structure);
  out.WriteStringField("Diagnostic Test", test_name);
  // The maintenance mode deliberately stands under another label.
  out.WriteStringField(code == kMaintenanceMode ? "Message" : "Test Result", message);
  out.EndStructure();
  out.Close();
  return code;
}
