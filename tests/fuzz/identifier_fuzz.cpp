// The texts that name ports, targets and LUNs. The first bytes make a host, the others are the word that the
// user gave: it must name what it is the identifier of, and nothing else.
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

struct Host {
  LunEntry lun = {};
  TargetEntry target = {};
  FCProtocolEntry fc = {};
  ProtocolList protocols = {};
  PhyPortEntry port = {};
  PortList ports = {};
  AdapterEntry adapter = {};
  AdapterList list = {};
};

const AdapterList* g_list = nullptr;

struct HostBytes {
  WorldWideName port_name;
  WorldWideName target_name;
  std::uint8_t lun_number[2];
  std::uint8_t is_nvme;
};

void Require(bool condition) {
  if (!condition) std::abort();
}

void Build(Host& host, const HostBytes& bytes) {
  host.fc.port_name = bytes.port_name;
  host.target.port_name = bytes.target_name;
  host.lun.number = static_cast<std::uint16_t>(bytes.lun_number[0] << 8 | bytes.lun_number[1]);
  host.target.state_flags[5] = (bytes.is_nvme & 1) != 0 ? 0x08 : 0;
  host.target.first_lun = &host.lun;
  host.fc.first_target = &host.target;
  host.protocols.first = &host.fc;
  host.port.protocols = &host.protocols;
  host.ports.first = &host.port;
  host.adapter.ports = &host.ports;
  host.list.first = &host.adapter;
  g_list = &host.list;
}

}  // namespace

const AdapterList* TORPI_GetAdapterList() {
  return g_list;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  HostBytes bytes = {};
  const std::size_t taken = std::min(size, sizeof bytes);
  std::memcpy(&bytes, data, taken);
  Host host;
  Build(host, bytes);
  const std::string port = PortIdentifier(host.fc);
  const std::string target = TargetIdentifier(host.fc, host.target);
  LunIdentifiers luns(host.fc, host.target);
  const std::string lun(luns.Of(host.lun));

  std::string word(data + taken, data + size);
  std::erase(word, '\0');  // a word holds none
  for (const std::string& text : {word, port, target, lun}) {
    TestRun test({text});
    PortSelection found_port;
    Require((GetPhyPortFromPortString(test.run, found_port) == kSuccess) == (text == port));
    Require((found_port.fc == &host.fc) == (text == port));
    TargetSelection found_target;
    Require((GetTargetFromTargetString(test.run, found_target) == kSuccess) == (text == target));
    Require((found_target.target == &host.target) == (text == target));
    LunSelection found_lun;
    Require((GetLunFromLunString(test.run, found_lun) == kSuccess) == (text == lun));
    Require((found_lun.lun == &host.lun) == (text == lun));
  }
  return 0;
}
