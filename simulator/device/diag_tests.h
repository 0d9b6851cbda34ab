// The diagnostic tests: what each pass of them results in.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/diag_setup.h"
#include "framework/device_library/diag_records.h"
#include "framework/device_library/port_entry.h"

namespace lab {

// True when a name like "21:00:00:0e:1e:11:22:33" is that of a target of the port, or of its fabric.
bool KnowsTarget(const FCProtocolEntry& port, std::string_view name);
bool IsPrincipalFabric(const FCProtocolEntry& port, std::string_view name);

// Makes the next pass of a test and waits as long as it lasts. Returns true when it goes well.
bool MakePass(TestPasses& passes);

// Makes `count` passes, with `stop_on_error` up to the first that fails. Returns how many went well and how
// many did not.
struct PassCount {
  std::uint32_t good = 0;
  std::uint32_t bad = 0;
};
PassCount MakePasses(TestPasses& passes, std::uint32_t count, bool stop_on_error);

// Fills the result of one echo.
void MakeEcho(EchoTest& test, EchoElsResult& result);

// Fills the record of a link test and waits as long as it lasts. `now` gives the times that the host file
// leaves out.
void MakeLinkTest(const LinkTest& test, std::string (*now)(), DPortResultRecord& record);

// Fills the result of a pass of the loopback test.
void MakeLoopback(LoopbackTest& test, const DiagTestRequest& request, LoopbackResult& result);

// The results of a pass of the read/write buffer test, port by port and chained; empty when there is no port.
using RWBufferList = std::vector<RWBufferResult>;
std::unique_ptr<RWBufferList> MakeRWBuffer(RWBufferTest& test, const DiagTestRequest& request,
                                           const FCProtocolEntry& port);

}  // namespace lab
