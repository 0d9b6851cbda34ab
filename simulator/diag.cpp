// Diagnostics of a port and its links. The simulation has no behaviour for these calls yet.
#include "call.h"
#include "framework/device_library/calls.h"

std::uint32_t TORPI_CheckAdapterDPortOption(const DeviceHandle* handle) {
  return lab::NotServedValue("TORPI_CheckAdapterDPortOption", handle);
}

LibraryStatus TORPI_ConfigureAdapterDPortSettings(const DeviceHandle* handle, std::uint8_t enable,
                                                  std::uint32_t zero) {
  return lab::NotServed("TORPI_ConfigureAdapterDPortSettings", handle, {enable, zero});
}

DPortResultRecord TORPI_DiagnosticDPortTest(const DeviceHandle* handle, DPortResultRecord*) {
  lab::NotServed("TORPI_DiagnosticDPortTest", handle);
  return {};
}

LibraryStatus TORPI_DiagnosticDPortTestV2(const DeviceHandle* handle, DPortResultRecord*) {
  return lab::NotServed("TORPI_DiagnosticDPortTestV2", handle);
}

LibraryStatus TORPI_DiagnosticsCTCommand(const DeviceHandle* handle, const char* port_name,
                                         std::uint32_t count, std::uint32_t stop_on_error, std::uint32_t*,
                                         std::uint8_t*, std::uint32_t buffer_size, std::uint32_t test_type) {
  return lab::NotServed("TORPI_DiagnosticsCTCommand", handle,
                        {port_name, count, stop_on_error, buffer_size, test_type});
}

LibraryStatus TORPI_DiagnosticsFCPingTest(const DeviceHandle* handle, const char* port_name,
                                          std::uint32_t count, std::uint32_t stop_on_error, std::uint32_t*,
                                          std::uint8_t*, std::uint32_t buffer_size) {
  return lab::NotServed("TORPI_DiagnosticsFCPingTest", handle,
                        {port_name, count, stop_on_error, buffer_size});
}

LibraryStatus TORPI_DiagnosticsEchoElsTest(const DeviceHandle* handle, const char* port_name,
                                           std::uint32_t count, std::uint32_t stop_on_error,
                                           std::uint32_t destination_kind, EchoElsResult*) {
  return lab::NotServed("TORPI_DiagnosticsEchoElsTest", handle,
                        {port_name, count, stop_on_error, destination_kind});
}

LoopbackResult TORPI_DiagnosticsLoopBackTest(const DeviceHandle* handle, const DiagTestRequest*) {
  lab::NotServed("TORPI_DiagnosticsLoopBackTest", handle);
  return {};
}

RWBufferResult* TORPI_DiagnosticsReadWriteBufferTest(const DeviceHandle* handle, const DiagTestRequest*) {
  lab::NotServed("TORPI_DiagnosticsReadWriteBufferTest", handle);
  return nullptr;
}

LibraryStatus TORPI_FreeRWBufferTestResultList(RWBufferResult*) {
  return lab::ServeHost("TORPI_FreeRWBufferTestResultList", {}, [](lab::Call&) { return lab::kNotServed; });
}

LibraryStatus TORPI_GetNVMeHostNQNStatus(const DeviceHandle* handle, std::uint8_t*) {
  return lab::NotServed("TORPI_GetNVMeHostNQNStatus", handle);
}

LibraryStatus TORPI_RegisterDeregisterNVMeHostNQN(const DeviceHandle* handle, std::uint8_t action) {
  return lab::NotServed("TORPI_RegisterDeregisterNVMeHostNQN", handle, {action});
}
