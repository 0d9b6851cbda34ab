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
#include "framework/device_library/harmless_text.h"
#include "host_file/host_keys.h"
#include "recorded/recorded_file.h"

namespace lab {
namespace {

// The number that the command-line tool names itself by.
constexpr std::uint32_t kCommandLineTool = 11;

std::unique_ptr<Lab> g_lab;
bool g_noted = false;  // outlasts a simulation: a process says it once

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

void Report(const std::string& line) {
  std::fprintf(stderr, "%s\n", Harmless(line, LineEnds::kKept).c_str());
}

Environment ReadEnvironment() {
  Environment environment;
  environment.host_file = Variable("TORPI_LAB_HOST");
  environment.state_file = Variable("TORPI_LAB_STATE");
  environment.trace_file = Variable("TORPI_LAB_TRACE");
  environment.time = Variable("TORPI_LAB_TIME");

  const std::string quiet = Variable("TORPI_LAB_QUIET");
  environment.quiet = quiet == "1" || quiet == "true";

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

namespace {

std::string NameOf(const std::string& host_file) {
  return host_file.empty() ? "built-in host" : host_file;
}

// Reads the text of a host file; of the built-in host without one. Returns an empty text or the mistake.
std::string ReadHostText(const std::string& file, std::string& text) {
  text = file.empty() ? kBuiltinHost : "";
  if (file.empty() || ReadFile(file.c_str(), text) == FileResult::kRead) return {};
  return file + ": can't be read: " + std::strerror(errno);
}

std::string FillHost(const std::string& name, const std::string& text, Host& host) {
  std::string mistake = ReadHost(name, text, host);
  if (mistake.empty()) LinkHost(host);
  return mistake;
}

}  // namespace

std::string LoadHostFile(const std::string& file, Host& host) {
  std::string text;
  if (std::string mistake = ReadHostText(file, text); !mistake.empty()) return mistake;
  if (IsRecording(text)) return file + ": is a recording, which has no state";
  return FillHost(NameOf(file), text, host);
}

Lab::Lab() : environment_(ReadEnvironment()) {
  if (!environment_.mistake.empty()) Report(environment_.mistake);
  if (environment_.trace_file.empty()) return;
  // Opened by its name, a file would be written from its start again, over what else goes to standard error.
  if (environment_.trace_file == "/dev/stderr") {
    trace_descriptor_ = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    return;
  }
  trace_descriptor_ = open(environment_.trace_file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0664);
  if (trace_descriptor_ < 0) Report(environment_.trace_file + ": can't be written: " + std::strerror(errno));
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

  const std::string& file = environment_.host_file;
  std::string text;
  std::string mistake = ReadHostText(file, text);
  if (mistake.empty() && IsRecording(text)) {
    mistake = LoadRecording(NameOf(file), text);
  } else if (mistake.empty()) {
    mistake = FillHost(NameOf(file), text, *host);
    if (mistake.empty() && !environment_.state_file.empty()) {
      mistake = state_.emplace(environment_.state_file).Load(*host);
    }
  }
  if (mistake.empty()) return host;
  Report(mistake);
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

void Lab::NoteSimulation() const {
  if (environment_.quiet || g_noted) return;
  g_noted = true;
  const std::string& file = environment_.host_file;
  Report("zfcesxcli: simulated host (" + (file.empty() ? "built-in" : Escaped(file)) + ")");
}

Chatter Lab::ChatterNow() const {
  if (environment_.chatter != Chatter::kUnset) return environment_.chatter;
  return host_ ? host_->chatter : Chatter::kOff;
}

std::uint32_t Lab::Keep(Adapter& adapter, bool reboot_required) {
  Host& host = GetHost();
  host.reboot_required = host.reboot_required || reboot_required;
  if (!state_) return kSuccess;
  const std::string mistake = state_->Save(host, adapter);
  if (mistake.empty()) return kSuccess;
  Report(mistake);
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
