// The congestion calls of the device library under the tests' control.
#pragma once

#include <string>
#include <vector>

#include "framework/device_library/calls.h"

struct FakeCongestion {
  LibraryStatus enabled_result = 0;
  std::uint8_t enabled = 1;
  LibraryStatus list_result = 0;
  SCMRStatisticsEntry* list = nullptr;
  LibraryStatus free_result = 0;
  std::vector<const SCMRStatisticsEntry*> freed;
  SCMRProfile profile = {};
  std::vector<std::string> calls;
};

// The one of the process; a test that uses it begins by giving it a fresh value.
FakeCongestion& Congestion();
