// The texts that name ports, targets and LUNs. The first bytes make a host of two ports, with a target and a
// LUN each, the others are the word that the user gave.
//
// Oracle: parse(print(x)) = x. The text that is printed of an entry, and no other, names that entry, or the
// first one that is printed so.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "discovery/identifiers.h"
#include "discovery/port_lookup.h"
#include "framework/device_library/calls.h"
#include "support/unit_command_run.h"

namespace {

// A port with a target that has a LUN.
struct Branch {
  LunEntry lun = {};
  TargetEntry target = {};
  FCProtocolEntry fc = {};
  ProtocolList protocols = {};
  PhyPortEntry port = {};
};

struct Host {
  Branch branches[2];
  PortList ports = {};
  AdapterEntry adapter = {};
  AdapterList list = {};
};

const AdapterList* g_list = nullptr;

struct BranchBytes {
  WorldWideName port_name;
  WorldWideName target_name;
  std::uint8_t lun_number[2];
  std::uint8_t
      flags;  // bit 0: an NVMe target; bits 1 and 2, of the second branch: the names of the first one
};

void Require(bool condition) {
  if (!condition) std::abort();
}

void Build(Branch& branch, const BranchBytes& bytes) {
  branch.fc.port_name = bytes.port_name;
  branch.target.port_name = bytes.target_name;
  branch.lun.number = static_cast<std::uint16_t>(bytes.lun_number[0] << 8 | bytes.lun_number[1]);
  branch.target.state_flags[5] = (bytes.flags & 1) != 0 ? 0x08 : 0;
  branch.target.first_lun = &branch.lun;
  branch.fc.first_target = &branch.target;
  branch.protocols.first = &branch.fc;
  branch.port.protocols = &branch.protocols;
}

void Build(Host& host, BranchBytes (&bytes)[2]) {
  if ((bytes[1].flags & 2) != 0) bytes[1].port_name = bytes[0].port_name;
  if ((bytes[1].flags & 4) != 0) bytes[1].target_name = bytes[0].target_name;
  for (int i = 0; i < 2; ++i) Build(host.branches[i], bytes[i]);
  host.branches[0].port.next = &host.branches[1].port;
  host.ports.first = &host.branches[0].port;
  host.adapter.ports = &host.ports;
  host.list.first = &host.adapter;
  g_list = &host.list;
}

struct Identifiers {
  explicit Identifiers(const Branch& branch)
      : port(PortIdentifier(branch.fc)), target(TargetIdentifier(branch.fc, branch.target)) {
    LunIdentifiers luns(branch.fc, branch.target);
    lun = luns.Of(branch.lun);
  }

  std::string port;
  std::string target;
  std::string lun;
};

// The branch whose identifier the text is; null when it is none.
const Branch* Named(const Host& host, const Identifiers (&all)[2], const std::string& text,
                    std::string Identifiers::*kind) {
  for (int i = 0; i < 2; ++i) {
    if (all[i].*kind == text) return &host.branches[i];
  }
  return nullptr;
}

}  // namespace

const AdapterList* TORPI_GetAdapterList() {
  return g_list;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  BranchBytes bytes[2] = {};
  const std::size_t taken = std::min(size, sizeof bytes);
  std::memcpy(&bytes, data, taken);
  Host host;
  Build(host, bytes);
  const Identifiers all[2] = {Identifiers(host.branches[0]), Identifiers(host.branches[1])};

  std::string word(data + taken, data + size);
  std::erase(word, '\0');  // a word holds none
  for (const std::string& text :
       {word, all[0].port, all[0].target, all[0].lun, all[1].port, all[1].target, all[1].lun}) {
    TestRun test({text});
    PortSelection port;
    const Branch* branch = Named(host, all, text, &Identifiers::port);
    Require((GetPhyPortFromPortString(test.run, port) == kSuccess) == (branch != nullptr));
    Require(port.fc == (branch != nullptr ? &branch->fc : nullptr));
    TargetSelection target;
    branch = Named(host, all, text, &Identifiers::target);
    Require((GetTargetFromTargetString(test.run, target) == kSuccess) == (branch != nullptr));
    Require(target.target == (branch != nullptr ? &branch->target : nullptr));
    LunSelection lun;
    branch = Named(host, all, text, &Identifiers::lun);
    Require((GetLunFromLunString(test.run, lun) == kSuccess) == (branch != nullptr));
    Require(lun.lun == (branch != nullptr ? &branch->lun : nullptr));
  }
  return 0;
}
