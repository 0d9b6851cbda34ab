// zfc-lab new: a host file to start from.
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "base/limits.h"
#include "base/named_number.h"
#include "device/family_table.h"
#include "framework/device_library/harmless_text.h"
#include "tools/common/new_file.h"
#include "tools/lab/command.h"

namespace zfc_lab {
namespace {

constexpr const char* kHelp =
    "Usage: zfc-lab new [OPTION...]\n"
    "Writes a host file with remarks: one adapter, to be changed as needed.\n\n"
    "      --family FAMILY  aster, birch, cedar, ginkgo, elm, fern, hazel, iris or dahlia;\n"
    "                       without it elm\n"
    "      --ports N        ports of the adapter, 0 to 64; without it 2\n"
    "      --targets N      targets of each port, 0 to 4096; without it 1\n"
    "      --luns N         LUNs of each target, 0 to 16384; without it 4\n"
    "  -o, --output FILE    write to FILE instead of standard output\n"
    "      --force          replace FILE\n"
    "  -h, --help           show this help\n\n"
    "Exit status: 0 good, 1 the file could not be written, 2 wrong usage.\n";

struct Plan {
  const lab::Family* family;
  long ports;
  long targets;
  long luns;
};

// The file's parts. What is in <> is filled in.
constexpr const char* kHead =
    R"(# A host for the simulated device library. Every key that is left out has a default.
# Play it with: TORPI_LAB_HOST=this-file.yaml zfcesxcli -t adapter listcli
# docs/lab-host.md has all keys; zfc-lab check this-file.yaml shows what is wrong.
adapters:
  - family: <family>
    model: <model>  # a text of at most 32 bytes, as the serial number is
    serial: LAB00001
)";
constexpr const char* kFirstPort =
    R"(      - link: up  # or down
        speed: <speed>  # in Gbps, one of <speeds>
        # wwpn: 21:00:00:0e:1e:11:22:33  # without it one is made; every port has its own
        # sfp: none  # an empty cage, or a map of what the module says of itself
)";
constexpr const char* kOtherPort =
    R"(      - link: up
)";
constexpr const char* kTargets =
    R"(        targets:  # name, address and texts of each are made for it
          - count: <targets>
            luns: <luns>  # a number, a range like 0-63, or a list: [0-3, {number: 100, size: 2097152}]
)";

std::string Filled(std::string text, std::string_view word, std::string_view content) {
  const std::size_t at = text.find(word);
  return at == std::string::npos ? text : text.replace(at, word.size(), content);
}

std::string SpeedName(std::uint32_t code) {
  for (const lab::NamedNumber& speed : lab::kSpeedCodes) {
    if (speed.number == code) return speed.name;
  }
  return {};
}

std::string SpeedNames() {
  std::string names;
  for (const lab::NamedNumber& speed : lab::kSpeedCodes) {
    names += (names.empty() ? "" : ", ") + std::string(speed.name);
  }
  return names;
}

std::string LunNumbers(long count) {
  if (count == 0) return "[]";
  return count == 1 ? "0" : "0-" + std::to_string(count - 1);
}

std::string TargetsText(const Plan& plan) {
  if (plan.targets == 0) return "        targets: []\n";
  const std::string text = Filled(kTargets, "<targets>", std::to_string(plan.targets));
  return Filled(text, "<luns>", LunNumbers(plan.luns));
}

std::string HostText(const Plan& plan) {
  std::string text = Filled(kHead, "<family>", plan.family->name);
  text = Filled(text, "<model>", plan.family->model);
  if (plan.ports == 0) return text + "    ports: []\n";
  text += "    ports:\n";
  const std::string first = Filled(kFirstPort, "<speed>", SpeedName(plan.family->speed));
  text += Filled(first, "<speeds>", SpeedNames()) + TargetsText(plan);
  for (long number = 1; number < plan.ports; ++number) text += kOtherPort + TargetsText(plan);
  return text;
}

// Whether a host can be this large, which its single limits alone do not say.
bool Fits(const Plan& plan) {
  const auto targets = static_cast<std::uint64_t>(plan.ports * plan.targets);
  return targets <= lab::kLimits.host_targets &&
         targets * static_cast<std::uint64_t>(plan.luns) <= lab::kLimits.host_luns;
}

tools::ExitStatus Run(const tools::Words& words) {
  tools::Arguments arguments("zfc-lab new", words,
                             {{"--family", "", "FAMILY"},
                              {"--ports", "", "N"},
                              {"--targets", "", "N"},
                              {"--luns", "", "N"},
                              {"--output", "-o", "FILE"},
                              {"--force"}});
  if (!arguments.Good()) return tools::kWrongUsage;
  if (!arguments.Operands().empty()) {
    return arguments.Refuse("unexpected word '" + arguments.Operands().front() + "'");
  }
  const std::string* const family = arguments.Value("--family");
  const lab::Limits& limits = lab::kLimits;
  const Plan plan = {lab::FindFamily(family != nullptr ? *family : "elm"),
                     arguments.Number("--ports", 0, static_cast<long>(limits.ports), 2),
                     arguments.Number("--targets", 0, static_cast<long>(limits.targets), 1),
                     arguments.Number("--luns", 0, static_cast<long>(limits.luns), 4)};
  if (!arguments.Good()) return tools::kWrongUsage;
  if (plan.family == nullptr) return arguments.Refuse("--family: unknown family '" + *family + "'");
  if (!Fits(plan)) {
    return arguments.Refuse("a host has at most " + std::to_string(limits.host_targets) + " targets and " +
                            std::to_string(limits.host_luns) + " LUNs");
  }
  const std::string* const output = arguments.Value("--output");
  const std::string failure =
      tools::WriteOutput(output != nullptr ? *output : "", HostText(plan), arguments.Has("--force"));
  if (failure.empty()) return tools::kGood;
  std::fprintf(stderr, "zfc-lab new: %s\n", Harmless(failure).c_str());
  return tools::kMistake;
}

}  // namespace

const Command kNew = {"new", "write a host file to start from", kHelp, Run};

}  // namespace zfc_lab
