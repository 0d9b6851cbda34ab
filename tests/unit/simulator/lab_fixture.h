// A fresh simulation per test, with a folder of its own and a clean environment.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "framework/device_library/calls.h"
#include "lab.h"
#include "support/unit_files.h"

class LabTest : public testing::Test {
 protected:
  LabTest() {
    ForgetVariables();
    lab::Lab::Reset();
    setenv("TORPI_LAB_TRACE", Path("trace").c_str(), 1);
    setenv("TORPI_LAB_QUIET", "1", 1);
  }
  ~LabTest() override {
    lab::Lab::Reset();
    ForgetVariables();
  }

  std::string Path(const std::string& name) const { return folder_ / name.c_str(); }

  // Writes a file into the test's folder and returns its path.
  std::string Write(const std::string& name, const std::string& text) const {
    WriteContent(Path(name), text);
    return Path(name);
  }
  std::string Read(const std::string& name) const { return ContentOf(Path(name)); }

  void UseHost(const std::string& yaml) const {
    setenv("TORPI_LAB_HOST", Write("lab.yaml", yaml).c_str(), 1);
  }
  void UseState() const { setenv("TORPI_LAB_STATE", Path("state.yaml").c_str(), 1); }

  // What the next run of a program would see.
  static void NextRun() { lab::Lab::Reset(); }

  // The entry at these places in the lists, counted from 0.
  static const AdapterEntry* AdapterAt(unsigned adapter) {
    const AdapterEntry* entry = TORPI_GetAdapterList()->first;
    while (adapter-- > 0) entry = entry->next;
    return entry;
  }
  static const FCProtocolEntry* EntryAt(unsigned adapter, unsigned port = 0, unsigned protocol = 0) {
    const PhyPortEntry* port_entry = AdapterAt(adapter)->ports->first;
    while (port-- > 0) port_entry = port_entry->next;
    const FCProtocolEntry* entry = port_entry->protocols->first;
    while (protocol-- > 0) entry = entry->next;
    return entry;
  }
  static const DeviceHandle* HandleAt(unsigned adapter, unsigned port = 0) {
    return &EntryAt(adapter, port)->handle;
  }

 private:
  static void ForgetVariables() {
    for (const char* name : {"TORPI_LAB_HOST", "TORPI_LAB_STATE", "TORPI_LAB_TRACE", "TORPI_LAB_TIME",
                             "TORPI_LAB_FAULTS", "TORPI_LAB_CHATTER", "TORPI_LAB_QUIET"}) {
      unsetenv(name);
    }
  }

  const ScratchFolder folder_;
};
