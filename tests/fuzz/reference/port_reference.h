// The reports of an adapter, a port and its counters, a second time.
#pragma once

#include <cstdint>
#include <string>

namespace reference {

// What the reports of a port are made of, as bytes.
struct PortBytes {
  const void* adapter;     // 400 bytes
  const void* port;        // the record of the physical port, 24 bytes
  const void* fc;          // the record of the protocol, 2688 bytes
  const void* lockdown;    // 40 bytes
  const void* components;  // 256 bytes
  const void* memo;        // 48 bytes
  const void* temperature;
};

// The documents of `port info get`, `adapter info get` and `port stats get`.
std::string PortDocument(bool xml, const PortBytes& bytes);
std::string AdapterDocument(bool xml, const PortBytes& bytes);
std::string PortStatisticsDocument(bool xml, const PortBytes& bytes, bool firmware);

}  // namespace reference
