#include "framework/main_cmds_processor.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "framework/console.h"
#include "framework/device_library/calls.h"
#include "framework/output_bracket.h"
#include "framework/run_flags.h"
#include "framework/shell.h"
#include "runtime/debug_log.h"

namespace {

constexpr const char* kProgramName = "Halcyr Sorvex Meridot FC ESXCLI Plugin";
constexpr const char* kProgramVersion = "1.9.0";

constexpr std::uint32_t kToolId = 11;
constexpr std::uint32_t kToolMajor = 1;
constexpr std::uint32_t kToolMinor = 9;

constexpr long kDebugEverything = 65535;  // the debug level that also turns on the library's own trace
constexpr std::uint32_t kLibraryTrace = 31;

std::unique_ptr<MainCmdsProcessor> main_processor;

// The debug level that the environment asks for; 0 when it asks for none.
long DebugLevelFromEnvironment() {
  const char* const level = std::getenv("ZNFC_DEBUG_LEVEL");
  return level == nullptr ? 0 : std::strtol(level, nullptr, 10);
}

StatusCode RefuseParameters() {
  ConsolePrint(kPrintError, "Command parameter Error!\r\n");
  return kWrongWordCount;
}

StatusCode CmdQuit(CmdProcessor&, Words& words) {
  if (!words.empty()) return RefuseParameters();
  DebugLog("Exiting the program...\r\n");
  return kQuit;
}

StatusCode CmdLog(CmdProcessor&, Words& words) {
  if (words.empty()) {
    CloseLogMirror();
    return kSuccess;
  }
  const char* const path = words[0].c_str();
  if (!OpenLogMirror(path)) {
    DebugLog("open() %s failed %d (%s)\n", path, errno, std::strerror(errno));
    ConsolePrint(kPrintError, "Failed to create file %s\n", path);
  }
  return kSuccess;
}

StatusCode CmdVersion(CmdProcessor&, Words& words) {
  if (!words.empty()) return RefuseParameters();
  ConsolePrint(kPrintPrompt, "%s v%s\r\n", kProgramName, kProgramVersion);
  return kSuccess;
}

StatusCode CmdRootHelp(CmdProcessor& root, Words& words) {
  ConsolePrint(kPrintHelpHead,
               "\r\nFollowing is the list of available commands.\r\n"
               "For detailed information of each command, please type 'command ?'\r\n");
  ConsolePrint(kPrintHelpNote, "All commands are case insensitive.\r\n\r\n");
  const StatusCode status = root.Help(words);
  if (RunFlagIsSet(RUN_FLAG_BATCH)) {
    ConsolePrint(kPrintText,
                 "\nFor a complete help. Please refer to ZFC_ESXCLI_Readme.txt in the same folder.\r\n");
  }
  return status;
}

// Texts of the leaves' usage indexes; index 0 is the help.
constexpr const char* kUsage[] = {
    nullptr,
    "Usage: q\r\n    return to the parent prompt.\r\n",
    "Usage: log [<filename>]\r\n"
    "    filename    : The file to log all the output to. \r\n"
    "                    If no filename is supplied, the currently open log \r\n"
    "                    file will be closed.\r\n",
    "Usage: version\r\n    display version of this program.\r\n",
};

StatusCode CmdRootUsage(CmdProcessor& root, Words&, std::uint32_t index) {
  if (index == 0) {
    Words no_words;
    CmdRootHelp(root, no_words);
    return kSuccess;
  }
  if (index >= std::size(kUsage)) return kNoSuchUsage;
  ConsolePrint(kPrintText, "%s", kUsage[index]);
  return kSuccess;
}

constexpr const char* kHelpDescription = "list of available commands";

struct RootLeaf {
  const char* name;
  std::uint32_t usage_index;
  bool hidden;
  const char* description;
  CmdProcessor::Callback execute;
};

constexpr RootLeaf kLeaves[] = {
    {"q", 1, false, "quit the program", &CmdQuit},
    {"log", 2, false, "log all command input and output to a file", &CmdLog},
    {"version", 3, false, "display version of this program", &CmdVersion},
    {"help", 0, false, kHelpDescription, &CmdRootHelp},
    {"?", 0, true, kHelpDescription, &CmdRootHelp},
    {"/h", 0, true, kHelpDescription, &CmdRootHelp},
    {"/help", 0, true, kHelpDescription, &CmdRootHelp},
    {"/?", 0, true, kHelpDescription, &CmdRootHelp},
};

}  // namespace

MainCmdsProcessor::MainCmdsProcessor()
    : MultipleCmdsProcessor(nullptr, {.name = "main", .description = "the main commands processor"}) {}

MainCmdsProcessor::~MainCmdsProcessor() {
  CloseLogMirror();
}

StatusCode MainCmdsProcessor::Initialize(Words&) {
  const long level = DebugLevelFromEnvironment();
  const std::uint32_t library_level = level == kDebugEverything ? kLibraryTrace : 0;

  OutputBracket bracket(FunctionName{"MainCmdsProcessor", __func__});
  if (!bracket.IsOpen()) {
    // A library that cannot be kept apart from the documents is not started, and this run has no output at
    // all.
    SilenceStandardOutput();
    return kFileNotFound;
  }
  std::printf("FC ESXCLI Debug level = %ld\n", level);
  std::printf("TORPI Debug level = %d\n", static_cast<int>(library_level));
  TORPI_Initialize(library_level, 0);
  TORPI_SetToolID(kToolId);
  TORPI_SetToolVersion(kToolMajor, kToolMinor, 0, 0);
  bracket.Close();

  nodes_.reserve(top_level_.size());
  for (const SubNode& node : top_level_) nodes_.push_back(node.make(this, node));
  return kSuccess;
}

StatusCode MainCmdsProcessor::Uninitialize(Words&) {
  TORPI_Uninitialize();
  DropChildren();
  for (auto& node : nodes_) node.reset();  // in the order of their creation
  nodes_.clear();
  return kSuccess;
}

StatusCode MainCmdsProcessor::Usage(Words&, std::uint32_t) {
  // The root is nobody's child, so the tree itself never asks for these words.
  ConsolePrint(kPrintText, "Usage: legacy\r\n    legacy commands are supported in this mode.\r\n");
  return kSuccess;
}

StatusCode MainCmdsProcessor::Execute(Words& words) {
  if (!RunFlagIsSet(RUN_FLAG_BATCH) && words.empty()) return RunShell(*this);
  // Deliberately looks at every word: a command with an argument "q" does nothing either.
  if (HasShellOnlyWord(words)) return kSuccess;
  return DispatchWords(*this, words);
}

void MainCmdsProcessor::BuildChildren() {
  for (const RootLeaf& leaf : kLeaves) {
    AddLeaf(std::make_unique<CmdProcessor>(this,
                                           Place{.name = leaf.name,
                                                 .description = leaf.description,
                                                 .hidden = leaf.hidden,
                                                 .usage_index = leaf.usage_index},
                                           Callbacks{.execute = leaf.execute, .usage = &CmdRootUsage}));
  }
  for (const auto& node : nodes_) AddNode(node.get());
}

MainCmdsProcessor* GetMainProcessor() {
  if (main_processor == nullptr) main_processor = std::make_unique<MainCmdsProcessor>();
  return main_processor.get();
}

void ReleaseMainProcessor() {
  main_processor.reset();
}

bool HasShellOnlyWord(const Words& words) {
  return std::any_of(words.begin(), words.end(), [](const std::string& word) {
    return EqualNoCase(word, "version") || EqualNoCase(word, "q");
  });
}
