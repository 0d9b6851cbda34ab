// A device library for tests. Its host is an image of raw records that the test laid out itself, byte by
// byte, so that a test can hand over what no real library should: nulls at every level, texts without
// terminator, lists of any length. The records are in read-only memory: a program that writes to one, or
// frees one, dies.
//
// Environment variables say what it does:
//
//   HOSTILE_HOST          file with the host's image (see zfc/host.py); without it the adapter list is null
//   HOSTILE_TRACE         file that receives one line per call, with all arguments. A handle is written "@N":
//                         the handle block is N bytes after the start of the image
//   HOSTILE_RESULT_<CALL> the call's result; 0 without it (1 for the personality check)
//   HOSTILE_TURNS_<CALL>  results separated by ",", one for each time the call is made; the last one holds
//   for
//                         all further times. It goes before HOSTILE_RESULT_<CALL>
//   HOSTILE_COMPONENTS    bytes, as hexadecimal digits, that the read of the component versions gives
//   HOSTILE_MEMO          the same for the flash memo block; neither is written when the call fails
//   HOSTILE_FILL_FAILED   when set, a call that reads a record fills it on a failure too
//   HOSTILE_REBOOT        what is stored as the reboot flag, on a failure too; without it the flag stays
//   HOSTILE_PERSONALITY   the personality in force at the start
//   HOSTILE_CHATTER       calls, separated by commas, or "all": these print a line on standard output
//   HOSTILE_PAUSE         "<CALL>:<milliseconds>": how long the call takes
//   HOSTILE_SPOIL_LOG     "<CALL>:directory" or "<CALL>:symlink": during the call the library output file
//                         is replaced by a folder, or by a symbolic link to another file
//   HOSTILE_SERVICES      when set, the program's exported services are looked up and tried at the start
#include "hostile_library.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

using hostile::AllZero;
using hostile::Answer;
using hostile::Format;
using hostile::NameOf;
using hostile::Quoted;
using hostile::ReadRecord;
using hostile::Setting;
using hostile::Trace;

namespace {

constexpr char kOutputFile[] = "/var/tmp/torpi-output.log";

// The value after "<call>:" in a setting, or an empty text.
std::string SettingOfCall(const char* setting, const char* call) {
  const std::string value = Setting(setting);
  const std::string prefix = std::string(call) + ":";
  return value.compare(0, prefix.size(), prefix) == 0 ? value.substr(prefix.size()) : "";
}

// The image: a header, the places that hold pointers, then the records. A pointer holds the distance of what
// it points at from the first record.
struct ImageHeader {
  std::uint64_t list;  // where the adapter list is; all ones: the list is null
  std::uint64_t pointer_count;
  std::uint64_t size;
};

struct Image {
  const unsigned char* records = nullptr;
  std::uint64_t size = 0;
  const AdapterList* list = nullptr;
};

void ReadFully(int file, void* target, std::size_t size) {
  auto* at = static_cast<char*>(target);
  while (size > 0) {
    const ssize_t count = read(file, at, size);
    if (count <= 0) std::abort();
    at += count;
    size -= static_cast<std::size_t>(count);
  }
}

Image LoadImage(const std::string& name) {
  Image image;
  const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return image;
  ImageHeader header;
  ReadFully(file, &header, sizeof header);
  if (header.list != ~std::uint64_t{0}) {
    std::vector<std::uint64_t> pointers(header.pointer_count);
    ReadFully(file, pointers.data(), pointers.size() * sizeof(std::uint64_t));
    void* memory = mmap(nullptr, header.size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) std::abort();
    auto* records = static_cast<unsigned char*>(memory);
    ReadFully(file, records, header.size);
    for (const std::uint64_t at : pointers) {
      std::uint64_t target;
      std::memcpy(&target, records + at, sizeof target);
      const unsigned char* pointer = records + target;
      std::memcpy(records + at, &pointer, sizeof pointer);
    }
    if (mprotect(memory, header.size, PROT_READ) != 0) std::abort();
    image.records = records;
    image.size = header.size;
    image.list = reinterpret_cast<const AdapterList*>(records + header.list);
  }
  close(file);
  return image;
}

const Image& Host() {
  static const Image image = LoadImage(Setting("HOSTILE_HOST"));
  return image;
}

void Pause(const char* call) {
  const std::string text = SettingOfCall("HOSTILE_PAUSE", call);
  if (text.empty()) return;
  const long milliseconds = std::strtol(text.c_str(), nullptr, 10);
  timespec left{milliseconds / 1000, milliseconds % 1000 * 1000000};
  while (nanosleep(&left, &left) != 0) {
  }
}

void SpoilLog(const char* call) {
  const std::string how = SettingOfCall("HOSTILE_SPOIL_LOG", call);
  if (how.empty()) return;
  unlink(kOutputFile);
  const int result =
      how == "symlink" ? symlink("/var/tmp/elsewhere.log", kOutputFile) : mkdir(kOutputFile, 0755);
  if (result != 0) std::abort();
}

void Chatter(const char* call) {
  const std::string calls = Setting("HOSTILE_CHATTER").append(",");
  if (calls != "all," && calls.find(std::string(call).append(",")) == std::string::npos) return;
  std::printf("<%s> chatters & is 100%% sure\n", call);
}

LibraryStatus ResultInTurn(const char* call, const std::string& turns) {
  static std::map<std::string, unsigned> made;
  std::size_t at = 0;
  for (unsigned turn = made[call]++; turn > 0; --turn) {
    const std::size_t comma = turns.find(',', at);
    if (comma == std::string::npos) break;
    at = comma + 1;
  }
  return static_cast<LibraryStatus>(std::strtoul(turns.c_str() + at, nullptr, 0));
}

std::uint8_t& Personality() {
  static auto value =
      static_cast<std::uint8_t>(std::strtoul(Setting("HOSTILE_PERSONALITY").c_str(), nullptr, 0));
  return value;
}

template <typename Function>
Function* Service(const char* name) {
  void* found = dlsym(RTLD_DEFAULT, name);
  if (!found) {
    Trace(std::string("service ") + name + " is missing");
    return nullptr;
  }
  Function* function;
  static_assert(sizeof function == sizeof found);
  std::memcpy(&function, &found, sizeof function);
  return function;
}

void TryServices() {
  auto* log = Service<int(int, const char*, ...)>("CoreLogMessage");
  auto* allocate = Service<void*(std::size_t)>("CoreMalloc");
  auto* allocate_zeroed = Service<void*(std::size_t)>("CoreZMalloc");
  auto* release = Service<void(void*)>("CoreFree");
  auto* name_of_type = Service<const char*(int)>("TranslateMessageTypeToString");
  if (!log || !allocate || !allocate_zeroed || !release || !name_of_type) return;

  Trace(Format("CoreLogMessage gives %d", log(3, "port %d is %s, 100%%s", 7, "down")));
  Trace(Format("CoreMalloc(0) gives %s", allocate(0) ? "a block" : "null"));
  void* block = allocate(64);
  Trace(Format("CoreMalloc(64) gives %s", block ? "a block" : "null"));
  if (block) std::memset(block, 0xA5, 64);
  release(block);
  void* zeroed = allocate_zeroed(64);
  Trace(Format("CoreZMalloc(64) gives %s", !zeroed ? "null" : AllZero(zeroed, 64) ? "zeros" : "something"));
  release(zeroed);
  Trace(Format("CoreZMalloc(0) gives %s", allocate_zeroed(0) ? "a block" : "null"));
  release(nullptr);
  std::string names;
  for (const int type : {1, 2, 3, 100, 0, 4, -1}) names += std::string(" ") + name_of_type(type);
  Trace("message types:" + names);
}

}  // namespace

namespace hostile {

std::string Setting(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value ? value : "";
}

void Trace(const std::string& line) {
  const std::string name = Setting("HOSTILE_TRACE");
  if (name.empty()) return;
  const int file = open(name.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  const std::string text = line + "\n";
  if (file < 0 || write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) std::abort();
  close(file);
}

std::string Format(const char* format, ...) {
  char text[512];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

std::string NameOf(const DeviceHandle* handle) {
  const auto* at = reinterpret_cast<const unsigned char*>(handle);
  const Image& host = Host();
  if (at < host.records || at >= host.records + host.size) return "@outside";
  return Format("@%zu", static_cast<std::size_t>(at - host.records));
}

std::string Quoted(const char* text) {
  return text ? std::string(1, '"').append(text).append(1, '"') : "null";
}

std::string BufferText(const void* buffer, std::size_t size) {
  return AllZero(buffer, size) ? "zeroed buffer" : "used buffer";
}

std::string Hex(const void* record, std::size_t size) {
  constexpr char kDigits[] = "0123456789abcdef";
  const auto* const bytes = static_cast<const unsigned char*>(record);
  std::string digits;
  for (std::size_t i = 0; i < size; ++i) {
    digits += kDigits[bytes[i] >> 4];
    digits += kDigits[bytes[i] & 0x0f];
  }
  return digits;
}

LibraryStatus Answer(const char* call, const std::string& arguments, LibraryStatus without_setting) {
  Trace(std::string(call) + "(" + arguments + ")");
  Chatter(call);
  Pause(call);
  SpoilLog(call);
  const std::string turns = Setting(std::string("HOSTILE_TURNS_") + call);
  if (!turns.empty()) return ResultInTurn(call, turns);
  const std::string result = Setting(std::string("HOSTILE_RESULT_") + call);
  return result.empty() ? without_setting
                        : static_cast<LibraryStatus>(std::strtoul(result.c_str(), nullptr, 0));
}

bool AllZero(const void* buffer, std::size_t size) {
  const auto* bytes = static_cast<const unsigned char*>(buffer);
  for (std::size_t i = 0; i < size; ++i) {
    if (bytes[i] != 0) return false;
  }
  return true;
}

void Fill(const char* setting, void* target, std::size_t size) {
  const std::string digits = Setting(setting);
  auto* bytes = static_cast<unsigned char*>(target);
  for (std::size_t i = 0; i < size && 2 * i + 1 < digits.size(); ++i) {
    bytes[i] = static_cast<unsigned char>(std::stoul(digits.substr(2 * i, 2), nullptr, 16));
  }
}

LibraryStatus ReadRecord(const char* call, const char* setting, const DeviceHandle* handle, void* out,
                         std::size_t size) {
  const LibraryStatus result = Answer(call, NameOf(handle) + ", " + BufferText(out, size));
  if (result == 0 || !Setting("HOSTILE_FILL_FAILED").empty()) Fill(setting, out, size);
  return result;
}

}  // namespace hostile

extern "C" {

LibraryStatus TORPI_Initialize(std::uint32_t debug_level, std::uint32_t zero) {
  const LibraryStatus result = Answer("TORPI_Initialize", Format("%u, %u", debug_level, zero));
  if (std::getenv("HOSTILE_SERVICES")) TryServices();
  return result;
}

LibraryStatus TORPI_SetToolID(std::uint32_t tool) {
  return Answer("TORPI_SetToolID", Format("%u", tool));
}

LibraryStatus TORPI_SetToolVersion(std::uint32_t major, std::uint32_t minor, std::uint32_t zero_1,
                                   std::uint32_t zero_2) {
  return Answer("TORPI_SetToolVersion", Format("%u, %u, %u, %u", major, minor, zero_1, zero_2));
}

LibraryStatus TORPI_Uninitialize() {
  return Answer("TORPI_Uninitialize", "");
}

const AdapterList* TORPI_GetAdapterList() {
  Answer("TORPI_GetAdapterList", "");
  return Host().list;
}

LibraryStatus TORPI_IsRebootRequired(std::uint8_t* out_required) {
  const LibraryStatus result = Answer("TORPI_IsRebootRequired", Format("%u", *out_required));
  const std::string required = Setting("HOSTILE_REBOOT");
  if (!required.empty())
    *out_required = static_cast<std::uint8_t>(std::strtoul(required.c_str(), nullptr, 0));
  return result;
}

LibraryStatus TORPI_doOptionROMUpdate(const DeviceHandle* handle, const char* file, std::uint32_t zero) {
  return Answer("TORPI_doOptionROMUpdate", NameOf(handle) + ", " + Quoted(file) + Format(", %u", zero));
}

LibraryStatus TORPI_UpdateSpecificFlashRegionFromFile(const DeviceHandle* handle, const char* file) {
  return Answer("TORPI_UpdateSpecificFlashRegionFromFile", NameOf(handle) + ", " + Quoted(file));
}

LibraryStatus TORPI_UpdateAdapterFirmwareTableFromFile(const DeviceHandle* handle, const char* file) {
  return Answer("TORPI_UpdateAdapterFirmwareTableFromFile", NameOf(handle) + ", " + Quoted(file));
}

LibraryStatus TORPI_UpdateAdapterPEPCfgFromFile(const DeviceHandle* handle, const char* file) {
  return Answer("TORPI_UpdateAdapterPEPCfgFromFile", NameOf(handle) + ", " + Quoted(file));
}

LibraryStatus TORPI_GetFlashComponentVersion(const DeviceHandle* handle, FlashComponentVersions* out) {
  return ReadRecord("TORPI_GetFlashComponentVersion", "HOSTILE_COMPONENTS", handle, out, sizeof *out);
}

LibraryStatus TORPI_GetAdapterFlashMemoBlock(const DeviceHandle* handle, FlashMemoBlock* out) {
  return ReadRecord("TORPI_GetAdapterFlashMemoBlock", "HOSTILE_MEMO", handle, out, sizeof *out);
}

std::uint32_t TORPI_CheckOrindaPersonalityChangeOption(const DeviceHandle* handle) {
  return Answer("TORPI_CheckOrindaPersonalityChangeOption", NameOf(handle), 1);
}

LibraryStatus TORPI_GetPersonalityType(const DeviceHandle* handle, std::uint8_t* out_personality) {
  const LibraryStatus result = Answer("TORPI_GetPersonalityType", NameOf(handle));
  if (result == 0) *out_personality = Personality();
  return result;
}

LibraryStatus TORPI_ChangePersonalityType(const DeviceHandle* handle, std::uint8_t personality) {
  const LibraryStatus result =
      Answer("TORPI_ChangePersonalityType", NameOf(handle) + Format(", %u", personality));
  if (result == 0) Personality() = personality;
  return result;
}

}  // extern "C"
