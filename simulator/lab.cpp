#include "lab.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <utility>

#include "base/file.h"
#include "base/results.h"
#include "base/text.h"
#include "host_file/host_keys.h"
#include "recorded/recorded_file.h"
#include "state/state_file.h"

namespace lab {
namespace {

// The number that the command-line tool names itself by.
constexpr std::uint32_t kCommandLineTool = 11;

std::unique_ptr<Lab> g_lab;

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

void Tell(const std::string& mistake) {
  std::fprintf(stderr, "%s\n", mistake.c_str());
}

Environment ReadEnvironment() {
  Environment environment;
  environment.host_file = Variable("TORPI_LAB_HOST");
  environment.state_file = Variable("TORPI_LAB_STATE");
  environment.trace_file = Variable("TORPI_LAB_TRACE");
  environment.time = Variable("TORPI_LAB_TIME");

  const std::string chatter = Variable("TORPI_LAB_CHATTER");
  if (chatter == "1" || chatter == "true") {
    environment.chatter = Chatter::kAllCalls;
  } else if (chatter == "ports") {
    environment.chatter = Chatter::kPortCalls;
  } else if (chatter == "0" || chatter == "false") {
    environment.chatter = Chatter::kOff;
  } else if (!chatter.empty()) {
    environment.mistake = "TORPI_LAB_CHATTER: expected one of 0, 1, ports, got '" + chatter + "'";
  }

  if (const std::string wrong = environment.faults.AddList(Variable("TORPI_LAB_FAULTS")); !wrong.empty()) {
    environment.mistake = "TORPI_LAB_FAULTS: " + wrong;
  }
  FlashMemoBlock memo{};
  if (!environment.time.empty() && !ReadTime(environment.time, memo)) {
    environment.mistake =
        "TORPI_LAB_TIME: expected a time like 2026-03-14 09:26:53, got '" + environment.time + "'";
  }
  return environment;
}

}  // namespace

Lab::Lab() : environment_(ReadEnvironment()) {
  if (!environment_.mistake.empty()) Tell(environment_.mistake);
  if (environment_.trace_file.empty()) return;
  trace_descriptor_ = open(environment_.trace_file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (trace_descriptor_ < 0) Tell(environment_.trace_file + ": can't be written: " + std::strerror(errno));
}

Lab::~Lab() {
  if (trace_descriptor_ >= 0) close(trace_descriptor_);
}

Lab& Lab::Get() {
  if (!g_lab) g_lab = std::make_unique<Lab>();
  return *g_lab;
}

void Lab::Reset() {
  g_lab.reset();
}

std::unique_ptr<Host> Lab::LoadHost() {
  auto host = std::make_unique<Host>();
  if (!environment_.mistake.empty()) return host;

  const bool builtin = environment_.host_file.empty();
  const std::string name = builtin ? "built-in host" : environment_.host_file;
  std::string text;
  std::string mistake;
  if (!builtin && ReadFile(name.c_str(), text) != FileResult::kRead) {
    mistake = name + ": can't be read: " + std::strerror(errno);
  } else if (!builtin && IsRecording(text)) {
    mistake = LoadRecording(name, text);
    if (mistake.empty()) return host;
  } else {
    mistake = ReadHost(name, builtin ? kBuiltinHost : text, *host);
  }
  if (mistake.empty()) {
    LinkHost(*host);
    if (!environment_.state_file.empty()) mistake = LoadState(environment_.state_file, *host);
  }
  if (mistake.empty()) return host;
  Tell(mistake);
  return std::make_unique<Host>();
}

// What calls change is refused on a recorded host, so it has no state either.
std::string Lab::LoadRecording(const std::string& name, const std::string& text) {
  recording::HostRecording recording;
  std::string mistake = ReadRecording(name, text, recording);
  if (mistake.empty()) recorded_ = std::make_unique<RecordedHost>(std::move(recording));
  return mistake;
}

Host& Lab::GetHost() {
  if (!host_) {
    host_ = LoadHost();
    host_->faults.Override(environment_.faults);
  }
  return *host_;
}

Chatter Lab::ChatterNow() const {
  if (environment_.chatter != Chatter::kUnset) return environment_.chatter;
  return host_ ? host_->chatter : Chatter::kOff;
}

std::uint32_t Lab::Keep(Adapter& adapter, bool reboot_required) {
  Host& host = GetHost();
  adapter.changed = true;
  host.reboot_required = host.reboot_required || reboot_required;
  if (environment_.state_file.empty()) return kSuccess;
  const std::string mistake = SaveState(environment_.state_file, host);
  if (mistake.empty()) return kSuccess;
  Tell(mistake);
  return kStateNotSaved;
}

void Lab::StampUpdate(FlashMemoBlock& memo) const {
  if (environment_.time.empty()) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    memo.update_year = static_cast<std::uint16_t>(local.tm_year + 1900);
    memo.update_month = static_cast<std::uint8_t>(local.tm_mon + 1);
    memo.update_day = static_cast<std::uint8_t>(local.tm_mday);
    memo.update_hour = static_cast<std::uint8_t>(local.tm_hour);
    memo.update_minute = static_cast<std::uint8_t>(local.tm_min);
    memo.update_second = static_cast<std::uint8_t>(local.tm_sec);
  } else {
    ReadTime(environment_.time, memo);
  }
  std::memcpy(memo.tool_id, tool_id_ == kCommandLineTool ? "ECLI" : "ZNFL", sizeof memo.tool_id);
  std::memcpy(memo.tool_version, tool_version_, sizeof memo.tool_version);
}

void Lab::Trace(std::string line) {
  if (trace_descriptor_ < 0) return;
  line += '\n';
  // One write per line, so that lines of several processes don't mix. A trace that is cut short is no reason
  // to fail the call.
  [[maybe_unused]] const ssize_t written = write(trace_descriptor_, line.data(), line.size());
}

}  // namespace lab
