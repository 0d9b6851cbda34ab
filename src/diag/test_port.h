// The port that a diagnostic command runs on: how every one of them begins.
#pragma once

#include "framework/device_library/port_entry.h"
#include "framework/status.h"
#include "framework/words.h"

// Resolves the port identifier in word 0 and stores its entry in `fc`. Returns the status of the look-up, and
// kVirtualPort for a virtual port. `class_name` words the log line.
StatusCode SelectTestPort(const char* class_name, const Words& words, const FCProtocolEntry*& fc);
