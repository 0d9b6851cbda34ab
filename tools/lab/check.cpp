// zfc-lab check: what is wrong in host files and state files, or what they hold.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/file.h"
#include "framework/device_library/harmless_text.h"
#include "host_file/host_keys.h"
#include "recorded/recorded_file.h"
#include "state/state_check.h"
#include "tools/lab/command.h"

namespace zfc_lab {
namespace {

constexpr const char* kHelp =
    "Usage: zfc-lab check FILE...\n"
    "Reads host files, snapshots and state files, and shows everything that is wrong in them:\n"
    "  lab.yaml:4:12: bus: expected a number from 0 to 65535, got '65536'\n"
    "For a good file it shows in one line what the file holds. A file whose adapters are\n"
    "a map is a state file, any other a host file.\n\n"
    "  -h, --help  show this help\n\n"
    "Exit status: 0 all files are good, 1 there is a mistake, 2 wrong usage.\n";

// "1 port", "2 ports"; `things` where an s is not enough.
std::string Counted(std::uint64_t count, const std::string& thing, const std::string& things = "") {
  const std::string several = things.empty() ? thing + 's' : things;
  return std::to_string(count) + ' ' + (count == 1 ? thing : several);
}

std::string HostSummary(const lab::Host& host) {
  std::uint64_t ports = 0;
  std::uint64_t virtual_ports = 0;
  std::uint64_t targets = 0;
  std::uint64_t luns = 0;
  for (const lab::Adapter& adapter : host.adapters) {
    ports += adapter.ports.size();
    for (const lab::Port& port : adapter.ports) {
      virtual_ports += port.entries.size() - 1;
      for (const lab::Entry& entry : port.entries) {
        targets += entry.targets.Count();
        luns += entry.targets.LunCount();
      }
    }
  }
  const std::string of_npiv = virtual_ports > 0 ? Counted(virtual_ports, "virtual port") + ", " : "";
  return Counted(host.adapters.size(), "adapter") + ", " + Counted(ports, "port") + ", " + of_npiv +
         Counted(targets, "target") + ", " + Counted(luns, "LUN");
}

std::string RecordingSummary(const recording::HostRecording& host) {
  std::uint64_t ports = 0;
  std::uint64_t entries = 0;
  std::uint64_t targets = 0;
  std::uint64_t luns = 0;
  for (const recording::AdapterRecording& adapter : host.adapters) {
    ports += adapter.ports.size();
    for (const recording::PhyPortRecording& port : adapter.ports) {
      entries += port.protocols.size();
      for (const recording::ProtocolRecording& protocol : port.protocols) {
        targets += protocol.targets.size();
        for (const recording::TargetRecording& target : protocol.targets) luns += target.luns.size();
      }
    }
  }
  return "snapshot of " + Counted(host.adapters.size(), "adapter") + ", " + Counted(ports, "port") + ", " +
         Counted(entries, "protocol entry", "protocol entries") + ", " + Counted(targets, "target") + ", " +
         Counted(luns, "LUN");
}

std::string StateSummary(const lab::StateContent& content) {
  return "state of " + Counted(content.adapters, "adapter") + " and " + Counted(content.ports, "port") +
         (content.reboot_required ? ", reboot required" : "");
}

// Prints the mistakes of a file, or what it holds. Returns whether it is good.
bool CheckFile(const std::string& name) {
  const std::string shown = Harmless(name);
  std::string text;
  if (lab::ReadFile(name.c_str(), text) != lab::FileResult::kRead) {
    std::printf("%s: can't be read: %s\n", shown.c_str(), std::strerror(errno));
    return false;
  }
  if (lab::IsRecording(text)) {
    recording::HostRecording recording;
    const std::string wrong = lab::ReadRecording(name, text, recording);
    if (wrong.empty()) {
      std::printf("%s: good: %s\n", shown.c_str(), RecordingSummary(recording).c_str());
    } else {
      std::printf("%s\n", Harmless(wrong, LineEnds::kKept).c_str());
    }
    return wrong.empty();
  }
  lab::Host host;
  lab::StateContent content;
  const bool is_state = lab::IsState(text);
  const std::string mistakes =
      is_state ? lab::CheckState(name, text, content) : lab::ReadHost(name, text, host);
  if (!mistakes.empty()) {
    std::printf("%s\n", Harmless(mistakes, LineEnds::kKept).c_str());
    return false;
  }
  const std::string summary = is_state ? StateSummary(content) : HostSummary(host);
  std::printf("%s: good: %s\n", shown.c_str(), summary.c_str());
  return true;
}

tools::ExitStatus Run(const tools::Words& words) {
  tools::Arguments arguments("zfc-lab check", words, {});
  if (!arguments.Good()) return tools::kWrongUsage;
  if (arguments.Operands().empty()) return arguments.Refuse("expected a file");
  bool good = true;
  for (const std::string& name : arguments.Operands()) good = CheckFile(name) && good;
  return good ? tools::kGood : tools::kMistake;
}

}  // namespace

const Command kCheck = {"check", "show what is wrong in host files and state files", kHelp, Run};

}  // namespace zfc_lab
