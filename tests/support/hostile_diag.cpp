// The calls of the diagnostics. HOSTILE_SCRIPT_<CALL> says what each answers, time after time: steps
// separated by
// ";", of which the last one holds for all further calls. A step is "<result>/<record>", the record being
// hexadecimal digits; what they leave out of a record is noise. A call that answers a list has records
// separated by ",", and none at all for null. "!" in front of a step replaces the library output file by a
// folder after the call, so that the next bracket cannot be opened. Without a script a call answers as all
// calls do, and writes nothing.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

#include "hostile_library.h"

using hostile::Answer;
using hostile::BufferText;
using hostile::Format;
using hostile::NameOf;
using hostile::Quoted;
using hostile::Setting;

namespace {

constexpr unsigned char kNoise = 0xA5;

struct Step {
  LibraryStatus result = 0;
  bool has_records = false;
  std::vector<std::string> records;  // bytes
  bool spoils = false;
};

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t end; (end = text.find(separator, begin)) != std::string::npos; begin = end + 1) {
    parts.push_back(text.substr(begin, end - begin));
  }
  parts.push_back(text.substr(begin));
  return parts;
}

std::string Bytes(const std::string& digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::strtoul(digits.substr(i, 2).c_str(), nullptr, 16));
  }
  return bytes;
}

Step ReadStep(std::string text) {
  Step step;
  step.spoils = !text.empty() && text[0] == '!';
  if (step.spoils) text.erase(0, 1);
  const std::size_t slash = text.find('/');
  step.result = static_cast<LibraryStatus>(std::strtoul(text.substr(0, slash).c_str(), nullptr, 0));
  if (slash == std::string::npos) return step;
  step.has_records = true;
  const std::string records = text.substr(slash + 1);
  if (records.empty()) return step;
  for (const std::string& record : Split(records, ',')) step.records.push_back(Bytes(record));
  return step;
}

// The step of a call that is made now.
Step Perform(const char* call, const std::string& arguments) {
  static std::map<std::string, std::size_t> made;
  const std::string script = Setting(std::string("HOSTILE_SCRIPT_") + call);
  if (script.empty()) {
    Step step;
    step.result = Answer(call, arguments);
    return step;
  }
  Answer(call, arguments);
  const std::vector<std::string> steps = Split(script, ';');
  const Step step = ReadStep(steps[std::min(made[call]++, steps.size() - 1)]);
  if (step.spoils &&
      (unlink("/var/tmp/torpi-output.log") != 0 || mkdir("/var/tmp/torpi-output.log", 0755) != 0)) {
    std::abort();
  }
  return step;
}

// Writes a record: what the step gives of it, and noise after it.
void Write(void* target, std::size_t size, const std::string& bytes) {
  if (bytes.size() > size) std::abort();
  std::memset(target, kNoise, size);
  std::memcpy(target, bytes.data(), bytes.size());
}

template <typename Record>
void WriteFirst(const Step& step, Record& record) {
  if (step.has_records) Write(&record, sizeof record, step.records.empty() ? "" : step.records[0]);
}

std::string Hex(const void* record, std::size_t size) {
  std::string digits;
  for (std::size_t i = 0; i < size; ++i)
    digits += Format("%02x", static_cast<const unsigned char*>(record)[i]);
  return digits;
}

LibraryStatus ReadFlag(const char* call, const DeviceHandle* handle, std::uint8_t* flag) {
  const Step step = Perform(call, NameOf(handle) + Format(", %u", *flag));
  WriteFirst(step, *flag);
  return step.result;
}

// A destination name with its whole buffer: the text, and how many zeros follow up to 32 bytes.
std::string NameArgument(const char* name) {
  const std::size_t length = strnlen(name, 32);
  const std::size_t zeros = static_cast<std::size_t>(std::count(name + length, name + 32, '\0'));
  return Format("\"%.32s\" and %zu zeros", name, zeros);
}

LibraryStatus RemoteTest(const char* call, const std::string& arguments, std::uint32_t* value,
                         std::uint8_t* buffer, std::uint32_t size) {
  const Step step = Perform(call, arguments + Format(", %u, ", *value) + BufferText(buffer, size));
  *value = 0xA5A5A5A5;
  std::memset(buffer, kNoise, size);
  return step.result;
}

// The lists that were handed out and have not been freed, by their number from 1.
std::map<RWBufferResult*, unsigned>& Lists() {
  static std::map<RWBufferResult*, unsigned> lists;
  return lists;
}

}  // namespace

extern "C" {

std::uint32_t TORPI_CheckAdapterDPortOption(const DeviceHandle* handle) {
  return Perform("TORPI_CheckAdapterDPortOption", NameOf(handle)).result;
}

LibraryStatus TORPI_ConfigureAdapterDPortSettings(const DeviceHandle* handle, std::uint8_t enable,
                                                  std::uint32_t zero) {
  return Perform("TORPI_ConfigureAdapterDPortSettings", NameOf(handle) + Format(", %u, %u", enable, zero))
      .result;
}

DPortResultRecord TORPI_DiagnosticDPortTest(const DeviceHandle* handle, DPortResultRecord* zeroed) {
  const std::string arguments = NameOf(handle) + ", " + BufferText(zeroed, sizeof *zeroed);
  DPortResultRecord record = {};
  WriteFirst(Perform("TORPI_DiagnosticDPortTest", arguments), record);
  return record;
}

LibraryStatus TORPI_DiagnosticDPortTestV2(const DeviceHandle* handle, DPortResultRecord* out) {
  const std::string arguments = NameOf(handle) + ", " + BufferText(out, sizeof *out);
  const Step step = Perform("TORPI_DiagnosticDPortTestV2", arguments);
  WriteFirst(step, *out);
  return step.result;
}

LibraryStatus TORPI_DiagnosticsCTCommand(const DeviceHandle* handle, const char* port_name,
                                         std::uint32_t count, std::uint32_t stop_on_error,
                                         std::uint32_t* out_value, std::uint8_t* out_buffer,
                                         std::uint32_t buffer_size, std::uint32_t test_type) {
  return RemoteTest("TORPI_DiagnosticsCTCommand",
                    NameOf(handle) + ", " + NameArgument(port_name) +
                        Format(", %u, %u, size %u, type %u", count, stop_on_error, buffer_size, test_type),
                    out_value, out_buffer, buffer_size);
}

LibraryStatus TORPI_DiagnosticsFCPingTest(const DeviceHandle* handle, const char* port_name,
                                          std::uint32_t count, std::uint32_t stop_on_error,
                                          std::uint32_t* out_value, std::uint8_t* out_buffer,
                                          std::uint32_t buffer_size) {
  return RemoteTest("TORPI_DiagnosticsFCPingTest",
                    NameOf(handle) + ", " + NameArgument(port_name) +
                        Format(", %u, %u, size %u", count, stop_on_error, buffer_size),
                    out_value, out_buffer, buffer_size);
}

LibraryStatus TORPI_DiagnosticsEchoElsTest(const DeviceHandle* handle, const char* port_name,
                                           std::uint32_t count, std::uint32_t stop_on_error,
                                           std::uint32_t destination_kind, EchoElsResult* out) {
  const Step step = Perform("TORPI_DiagnosticsEchoElsTest",
                            NameOf(handle) + ", " + NameArgument(port_name) +
                                Format(", %u, %u, kind %u, ", count, stop_on_error, destination_kind) +
                                BufferText(out, sizeof *out));
  WriteFirst(step, *out);
  return step.result;
}

LoopbackResult TORPI_DiagnosticsLoopBackTest(const DeviceHandle* handle, const DiagTestRequest* request) {
  LoopbackResult result = {};
  WriteFirst(Perform("TORPI_DiagnosticsLoopBackTest", NameOf(handle) + ", " + Hex(request, sizeof *request)),
             result);
  return result;
}

RWBufferResult* TORPI_DiagnosticsReadWriteBufferTest(const DeviceHandle* handle,
                                                     const DiagTestRequest* request) {
  static unsigned lists = 0;
  const Step step =
      Perform("TORPI_DiagnosticsReadWriteBufferTest", NameOf(handle) + ", " + Hex(request, sizeof *request));
  RWBufferResult* first = nullptr;
  for (auto record = step.records.rbegin(); record != step.records.rend(); ++record) {
    auto* node = static_cast<RWBufferResult*>(std::malloc(sizeof(RWBufferResult)));
    if (node == nullptr) std::abort();
    Write(node, sizeof *node, *record);
    node->next = first;
    first = node;
  }
  if (first != nullptr) Lists()[first] = ++lists;
  return first;
}

LibraryStatus TORPI_FreeRWBufferTestResultList(RWBufferResult* list) {
  const auto found = Lists().find(list);
  const bool known = found != Lists().end();
  const LibraryStatus result = Answer("TORPI_FreeRWBufferTestResultList",
                                      known ? Format("list %u", found->second) : "no list of this library");
  if (!known) return result;
  Lists().erase(found);
  while (list != nullptr) {
    RWBufferResult* const next = list->next;
    std::free(list);
    list = next;
  }
  return result;
}

LibraryStatus TORPI_GetNVMeHostNQNStatus(const DeviceHandle* handle, std::uint8_t* out_registered) {
  return ReadFlag("TORPI_GetNVMeHostNQNStatus", handle, out_registered);
}

LibraryStatus TORPI_RegisterDeregisterNVMeHostNQN(const DeviceHandle* handle, std::uint8_t action) {
  return Perform("TORPI_RegisterDeregisterNVMeHostNQN", NameOf(handle) + Format(", %u", action)).result;
}

LibraryStatus TORPI_IsMezzAdapter(const DeviceHandle* handle, std::uint8_t* out_is_mezz) {
  return ReadFlag("TORPI_IsMezzAdapter", handle, out_is_mezz);
}

}  // extern "C"
