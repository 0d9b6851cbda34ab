#include "device/device_command.h"

#include <stdio_ext.h>

#include <cstdio>
#include <string>

#include "framework/device_library/calls.h"
#include "framework/output_bracket.h"

namespace {

constexpr std::size_t kOutputBytes = std::size_t{1} << 18;

char output[kOutputBytes];
std::size_t output_size = 0;

ssize_t Keep(void*, const char* text, std::size_t size) {
  Require(size <= kOutputBytes - output_size);
  std::memcpy(output + output_size, text, size);
  output_size += size;
  return static_cast<ssize_t>(size);
}

ssize_t Forget(void*, const char*, std::size_t size) {
  return static_cast<ssize_t>(size);
}

std::FILE* Stream(cookie_write_function_t* write) {
  static char buffers[2][1 << 16];
  static std::size_t used = 0;
  std::FILE* const stream = fopencookie(nullptr, "w", {nullptr, write, nullptr, nullptr});
  Require(stream != nullptr && std::setvbuf(stream, buffers[used], _IOFBF, sizeof buffers[used]) == 0);
  __fsetlocking(stream, FSETLOCKING_BYCALLER);  // one thread prints
  ++used;
  return stream;
}

std::FILE* DocumentStream() {
  static std::FILE* const stream = Stream(&Keep);
  return stream;
}

std::FILE* LibraryStream() {
  static std::FILE* const stream = Stream(&Forget);
  return stream;
}

template <class Record>
Record* NewRecord() {
  return static_cast<Record*>(std::calloc(1, sizeof(Record)));
}

}  // namespace

// The bracket without its file.
OutputBracket::OutputBracket(const FunctionName&, const char*)
    : standard_output_(stdout), library_output_(LibraryStream()) {
  stdout = library_output_;
}

void OutputBracket::Close() {
  if (library_output_ == nullptr) return;
  stdout = standard_output_;
  library_output_ = nullptr;
}

const AdapterList* TORPI_GetAdapterList() {
  Require(stdout == DocumentStream());  // asked outside any bracket
  return &Host().list;
}

LibraryStatus TORPI_IsRebootRequired(std::uint8_t*) {
  return kLibrarySuccess;
}

DeviceHost::DeviceHost()
    : adapter(NewRecord<AdapterEntry>()),
      port(NewRecord<PhyPortEntry>()),
      fc(NewRecord<FCProtocolEntry>()),
      target(NewRecord<TargetEntry>()),
      lun(NewRecord<LunEntry>()) {
  Link();
}

void DeviceHost::Link() {
  list.first = adapter;
  adapter->ports = &ports;
  adapter->next = nullptr;
  ports.first = port;
  port->protocols = &protocols;
  port->next = nullptr;
  protocols.first = fc;
  fc->next = nullptr;
  fc->first_target = target;
  if (!(fc->protocol_type == ProtocolType::kFcoe)) fc->protocol_type = ProtocolType::kFc;
  target->first_lun = lun;
  target->next = nullptr;
  lun->next = nullptr;
}

DeviceHost& Host() {
  static DeviceHost host;
  return host;
}

void ChoosePciIdentity(FCProtocolEntry& fc, std::uint8_t choice) {
  // Each family, devices that two families share, one of another maker and some that no family has.
  constexpr std::uint16_t kDevices[] = {0x3A02, 0x5C12, 0x3B40, 0x3B41, 0x7102, 0x7122, 0x7132, 0x7932,
                                        0x3432, 0x3C32, 0x3522, 0x3D22, 0x3D62, 0x3150, 0x3350, 0x3850,
                                        0x3950, 0x3640, 0x3748, 0x3A40, 0x3E48, 0x3641, 0x0000, 0xFFFF};
  constexpr std::size_t kCount = sizeof kDevices / sizeof kDevices[0];
  fc.pci.vendor_id = choice % 32 == 31 ? 0x1C9F : 0x1C9E;
  fc.pci.device_id = kDevices[choice % kCount];
}

std::string_view RunCommand(NodeClass (*node_class)(), std::string_view word, Words words, bool xml) {
  output_size = 0;
  std::FILE* const document = DocumentStream();
  stdout = document;
  const NodeClass description = node_class();
  for (const CommandRow& row : description.commands) {
    if (word != row.word) continue;
    Serializer out;
    CommandRun run(description, "CmdCommon", out, words, xml ? OUTPUT_XML : OUTPUT_CLI);
    row.run(run);
    Require(stdout == document);  // no bracket is left open
    std::fflush(document);
    return {output, output_size};
  }
  std::abort();
}

std::string PortIdentifier() {
  return "FC_" + Host().fc->port_name.Text();
}

std::string TargetIdentifier() {
  return PortIdentifier() + "_Target_" + Host().target->port_name.Text();
}

std::string LunIdentifier() {
  return TargetIdentifier() + (IsNvmeTarget(*Host().target) ? "_NSID_" : "_LUN_") +
         std::to_string(Host().lun->number);
}

void RequireSame(std::string_view found, std::string_view expected) {
  if (found == expected) return;
  std::size_t same = 0;
  while (same < found.size() && same < expected.size() && found[same] == expected[same]) ++same;
  const std::size_t from = found.rfind('\n', same == 0 ? 0 : same - 1);
  const std::size_t begin = from == std::string_view::npos ? 0 : from + 1;
  const auto show = [begin](const char* what, std::string_view text) {
    const std::string_view rest = text.substr(begin < text.size() ? begin : text.size(), 200);
    std::fprintf(stderr, "%s: %.*s\n", what, static_cast<int>(rest.size()), rest.data());
  };
  std::fprintf(stderr, "the documents differ at byte %zu\n", same);
  show("found", found);
  show("expected", expected);
  std::abort();
}
