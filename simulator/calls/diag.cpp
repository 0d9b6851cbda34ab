// Diagnostics of a port and its links.
#include <string>

#include "base/text.h"
#include "calls/call.h"
#include "calls/lists_out.h"
#include "calls/play.h"
#include "device/diag_tests.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/speeds.h"

using lab::Call;

namespace {

// The time as the library writes it, with a line end.
std::string Now() {
  FlashMemoBlock memo{};
  lab::Lab::Get().StampUpdate(memo);
  return lab::TimeText(memo) + '\n';
}

// Why a port cannot run the link test, or 0.
std::uint32_t LinkTestRefusal(const Call& call) {
  const FCProtocolEntry& port = call.entry();
  if (call.IsVirtualPort()) return lab::kNotForVirtualPorts;
  if (!call.diag().diagnostic_port) return lab::kNotDiagnosticPort;
  if (!call.LinkIsUp()) return lab::kTestNeedsLink;
  if (port.port_speed < k16Gbps.code) return lab::kTestNeedsSpeed;
  return lab::kSuccess;
}

std::uint32_t RunLinkTest(Call& call, DPortResultRecord& record) {
  if (const std::uint32_t refusal = LinkTestRefusal(call)) return refusal;
  lab::MakeLinkTest(call.diag().link, &Now, record);
  call.Out("hba-port", record.hba_port_status);
  call.Out("mailbox", std::to_string(record.mailbox_1) + ',' + std::to_string(record.mailbox_2));
  return lab::kSuccess;
}

// A test whose passes the library repeats by itself.
std::uint32_t RunRemoteTest(Call& call, lab::TestPasses& passes, const char* port_name, std::uint32_t count,
                            std::uint32_t stop_on_error, std::uint32_t* out_value) {
  if (port_name == nullptr || out_value == nullptr) return lab::kBadArgument;
  if (!call.LinkIsUp()) return lab::kTestNeedsLink;
  if (!lab::KnowsTarget(call.entry(), port_name)) return lab::kNoDestination;
  const lab::PassCount made = lab::MakePasses(passes, count, stop_on_error != 0);
  *out_value = made.good;
  call.Out("good", made.good);
  call.Out("bad", made.bad);
  return made.bad == 0 ? lab::kSuccess : lab::kTestFailed;
}

// Calls serve(arguments) with the request's fields in the order of the trace: test count twice, on-error
// action, pattern kind, loopback type, data size, the pattern's characters, connection mode.
template <typename Serve>
auto WithRequest(const DiagTestRequest* request, Serve serve) {
  if (request == nullptr) return serve({nullptr});
  const std::string pattern(request->pattern, strnlen(request->pattern, sizeof request->pattern));
  return serve({request->test_count, static_cast<std::uint32_t>(request->on_error), request->test_count_again,
                static_cast<std::uint32_t>(request->pattern_kind),
                static_cast<std::uint32_t>(request->loopback_type), request->data_size, pattern.c_str(),
                static_cast<std::uint32_t>(request->connection_mode)});
}

lab::ListsOut<RWBufferResult>& RWBufferResultsOut() {
  static lab::ListsOut<RWBufferResult> lists("ports");
  return lists;
}

}  // namespace

std::uint32_t TORPI_CheckAdapterDPortOption(const DeviceHandle* handle) {
  return lab::ServeReading(
      "TORPI_CheckAdapterDPortOption", handle, {},
      lab::PlaysValue(&recording::ProtocolRecording::diagnostic_port),
      [](Call& call) { return call.diag().diagnostic_port ? 1u : 0u; }, 0);
}

LibraryStatus TORPI_ConfigureAdapterDPortSettings(const DeviceHandle* handle, std::uint8_t enable,
                                                  std::uint32_t zero) {
  return lab::ServePort("TORPI_ConfigureAdapterDPortSettings", handle, {enable, zero},
                        [=](Call& call) -> std::uint32_t {
                          if (enable > 1) return lab::kBadArgument;
                          lab::DiagSetup& setup = call.diag();
                          if (setup.diagnostic_port == (enable == 1)) return lab::kSuccess;
                          setup.diagnostic_port = enable == 1;
                          return call.KeepPort(setup.diagnostic_port_needs_reboot);
                        });
}

DPortResultRecord TORPI_DiagnosticDPortTest(const DeviceHandle* handle, DPortResultRecord*) {
  return lab::ServeRecord<DPortResultRecord>("TORPI_DiagnosticDPortTest", handle, {}, RunLinkTest);
}

LibraryStatus TORPI_DiagnosticDPortTestV2(const DeviceHandle* handle, DPortResultRecord* out) {
  return lab::ServePort("TORPI_DiagnosticDPortTestV2", handle, {}, [=](Call& call) -> std::uint32_t {
    if (out == nullptr) return lab::kBadArgument;
    if (!HasCapability(call.entry(), kSecondLinkTest)) return lab::kNoSecondLinkTest;
    return RunLinkTest(call, *out);
  });
}

LibraryStatus TORPI_DiagnosticsCTCommand(const DeviceHandle* handle, const char* port_name,
                                         std::uint32_t count, std::uint32_t stop_on_error,
                                         std::uint32_t* out_value, std::uint8_t*, std::uint32_t buffer_size,
                                         std::uint32_t test_type) {
  return lab::ServePort(
      "TORPI_DiagnosticsCTCommand", handle, {port_name, count, stop_on_error, buffer_size, test_type},
      [=](Call& call) -> std::uint32_t {
        if (test_type < 1 || test_type > 2) return lab::kBadArgument;
        return RunRemoteTest(call, call.diag().ct, port_name, count, stop_on_error, out_value);
      });
}

LibraryStatus TORPI_DiagnosticsFCPingTest(const DeviceHandle* handle, const char* port_name,
                                          std::uint32_t count, std::uint32_t stop_on_error,
                                          std::uint32_t* out_value, std::uint8_t*,
                                          std::uint32_t buffer_size) {
  return lab::ServePort(
      "TORPI_DiagnosticsFCPingTest", handle, {port_name, count, stop_on_error, buffer_size}, [=](Call& call) {
        return RunRemoteTest(call, call.diag().ping, port_name, count, stop_on_error, out_value);
      });
}

LibraryStatus TORPI_DiagnosticsEchoElsTest(const DeviceHandle* handle, const char* port_name,
                                           std::uint32_t count, std::uint32_t stop_on_error,
                                           std::uint32_t destination_kind, EchoElsResult* out) {
  return lab::ServePort(
      "TORPI_DiagnosticsEchoElsTest", handle, {port_name, count, stop_on_error, destination_kind},
      [=](Call& call) -> std::uint32_t {
        if (port_name == nullptr || out == nullptr || count != 1) return lab::kBadArgument;
        const FCProtocolEntry& port = call.entry();
        if (!call.LinkIsUp()) return lab::kTestNeedsLink;
        const bool fabric = destination_kind == static_cast<std::uint32_t>(EchoDestination::kPrincipalFabric);
        if (fabric ? !lab::IsPrincipalFabric(port, port_name) : !lab::KnowsTarget(port, port_name)) {
          return lab::kNoDestination;
        }
        lab::MakeEcho(call.diag().echo, *out);
        call.Out("received", out->frames_received);
        call.Out("outcome", out->outcome);
        return lab::kSuccess;
      });
}

LoopbackResult TORPI_DiagnosticsLoopBackTest(const DeviceHandle* handle, const DiagTestRequest* request) {
  return WithRequest(request, [=](lab::Arguments arguments) {
    return lab::ServeRecord<LoopbackResult>("TORPI_DiagnosticsLoopBackTest", handle, arguments,
                                            [=](Call& call, LoopbackResult& result) -> std::uint32_t {
                                              if (request == nullptr) return lab::kBadArgument;
                                              lab::MakeLoopback(call.diag().loopback, *request, result);
                                              call.Out("status", lab::Quoted(result.test_status.View()));
                                              return lab::kSuccess;
                                            });
  });
}

RWBufferResult* TORPI_DiagnosticsReadWriteBufferTest(const DeviceHandle* handle,
                                                     const DiagTestRequest* request) {
  return WithRequest(request, [=](lab::Arguments arguments) -> RWBufferResult* {
    try {
      Call call("TORPI_DiagnosticsReadWriteBufferTest", handle, arguments);
      RWBufferResult* first = nullptr;
      call.Answer(lab::kUnknownHandle, [&]() -> std::uint32_t {
        if (request == nullptr) return lab::kBadArgument;
        first = RWBufferResultsOut().HandOut(
            call, lab::MakeRWBuffer(call.diag().rw_buffer, *request, call.entry()));
        return lab::kSuccess;
      });
      call.Finish(first == nullptr ? "null" : "list");
      return first;
    } catch (...) {
      lab::FailInternally();
      return nullptr;
    }
  });
}

LibraryStatus TORPI_FreeRWBufferTestResultList(RWBufferResult* list) {
  return lab::ServeHost("TORPI_FreeRWBufferTestResultList", {},
                        [=](Call& call) { return RWBufferResultsOut().TakeBack(call, list); });
}

LibraryStatus TORPI_GetNVMeHostNQNStatus(const DeviceHandle* handle, std::uint8_t* out_registered) {
  const auto play = lab::Plays(&recording::ProtocolRecording::host_nqn_registered, out_registered);
  return lab::ServeReading("TORPI_GetNVMeHostNQNStatus", handle, {}, play, [=](Call& call) -> std::uint32_t {
    if (out_registered == nullptr) return lab::kBadArgument;
    if (!call.adapter().family->nvme) return lab::kNotForThisAdapter;
    *out_registered = call.diag().nqn_registered ? 1 : 0;
    call.Out("registered", *out_registered);
    return lab::kSuccess;
  });
}

LibraryStatus TORPI_RegisterDeregisterNVMeHostNQN(const DeviceHandle* handle, std::uint8_t action) {
  return lab::ServePort("TORPI_RegisterDeregisterNVMeHostNQN", handle, {action},
                        [=](Call& call) -> std::uint32_t {
                          if (action > 1) return lab::kBadArgument;
                          if (!call.adapter().family->nvme) return lab::kNotForThisAdapter;
                          if (!call.LinkIsUp()) return lab::kNqnCallFailed;
                          bool& registered = call.diag().nqn_registered;
                          if (registered && action == 1) return lab::kNqnAlreadyRegistered;
                          if (!registered && action == 0) return lab::kNqnNotRegistered;
                          registered = action == 1;
                          return call.KeepPort(false);
                        });
}
