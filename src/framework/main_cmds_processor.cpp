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
#include "framework/table.h"
#include "runtime/debug_log.h"
#include "runtime/timing_scope.h"

namespace {

constexpr const char* kClassName = "MainCmdsProcessor";
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
  const TraceScope trace({kClassName, __func__});
  if (!words.empty()) return RefuseParameters();
  DebugLog("Exiting the program...\r\n");
  return kQuit;
}

StatusCode CmdLog(CmdProcessor&, Words& words) {
  const TraceScope trace({kClassName, __func__});
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
  const TraceScope trace({kClassName, __func__});
  if (!words.empty()) return RefuseParameters();
  ConsolePrint(kPrintPrompt, "%s v%s\r\n", kProgramName, kProgramVersion);
  return kSuccess;
}

StatusCode CmdRootHelp(CmdProcessor& root, Words& words) {
  const TraceScope trace({kClassName, __func__});
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

// One command of the root. Its usage index is its number, from 1 on; the help has 0 under all of its names.
struct RootCommand {
  const char* name;
  const char* description;
  const char* usage;  // null: the help
  CmdProcessor::Callback execute;
  bool hidden = false;
};

constexpr RootCommand HelpNamed(const char* name) {
  return {name, "list of available commands", nullptr, &CmdRootHelp};
}

constexpr RootCommand HiddenHelpNamed(const char* name) {
  RootCommand help = HelpNamed(name);
  help.hidden = true;
  return help;
}

constexpr RootCommand kCommands[] = {
    {"q", "quit the program", "Usage: q\r\n    return to the parent prompt.\r\n", &CmdQuit},
    {"log", "log all command input and output to a file",
     "Usage: log [<filename>]\r\n"
     "    filename    : The file to log all the output to. \r\n"
     "                    If no filename is supplied, the currently open log \r\n"
     "                    file will be closed.\r\n",
     &CmdLog},
    {"version", "display version of this program",
     "Usage: version\r\n    display version of this program.\r\n", &CmdVersion},
    HelpNamed("help"),
    HiddenHelpNamed("?"),
    HiddenHelpNamed("/h"),
    HiddenHelpNamed("/help"),
    HiddenHelpNamed("/?"),
};

constexpr Table<RootCommand> kTable = TableOf<kCommands>();

constexpr std::uint32_t kHelpIndex = 0;

StatusCode CmdRootUsage(CmdProcessor& root, Words&, std::uint32_t index) {
  const TraceScope trace({kClassName, __func__});
  if (index == kHelpIndex) {
    Words no_words;
    CmdRootHelp(root, no_words);
    return kSuccess;
  }
  const char* const usage = index > kTable.size() ? nullptr : kTable[index - 1].usage;
  if (usage == nullptr) return kNoSuchUsage;
  ConsolePrint(kPrintText, "%s", usage);
  return kSuccess;
}

}  // namespace

MainCmdsProcessor::MainCmdsProcessor()
    : MultipleCmdsProcessor(nullptr, {.name = "main", .description = "the main commands processor"}) {}

MainCmdsProcessor::~MainCmdsProcessor() {
  CloseLogMirror();
}

StatusCode MainCmdsProcessor::Initialize(Words&) {
  const TraceScope trace({kClassName, __func__});
  const long level = DebugLevelFromEnvironment();
  const std::uint32_t library_level = level == kDebugEverything ? kLibraryTrace : 0;

  OutputBracket bracket(FunctionName{kClassName, __func__});
  if (!bracket.IsOpen()) {
    // A library that cannot be kept apart from the documents is not started, and this run has no output at
    // all.
    SilenceStandardOutput();
    return kFileNotFound;
  }
  ConsolePrint(kPrintText, "FC ESXCLI Debug level = %ld\n", level);
  ConsolePrint(kPrintText, "TORPI Debug level = %d\n", static_cast<int>(library_level));
  TORPI_Initialize(library_level, 0);
  TORPI_SetToolID(kToolId);
  TORPI_SetToolVersion(kToolMajor, kToolMinor, 0, 0);
  bracket.Close();

  has_nodes_ = true;
  nodes_ = MakeNodesForLog(*this, top_level_);
  return kSuccess;
}

StatusCode MainCmdsProcessor::Uninitialize(Words&) {
  const TraceScope trace({kClassName, __func__});
  TORPI_Uninitialize();
  DropChildren();
  for (auto& node : nodes_) node.reset();  // in the order of their creation
  nodes_.clear();
  has_nodes_ = false;
  return kSuccess;
}

StatusCode MainCmdsProcessor::Usage(Words&, std::uint32_t) {
  const TraceScope trace({kClassName, __func__});
  // The root is nobody's child, so the tree itself never asks for these words.
  ConsolePrint(kPrintText, "Usage: legacy\r\n    legacy commands are supported in this mode.\r\n");
  return kSuccess;
}

StatusCode MainCmdsProcessor::Execute(Words& words) {
  const TraceScope trace({kClassName, __func__});
  if (!RunFlagIsSet(RUN_FLAG_BATCH) && words.empty()) return RunShell(*this);
  // Any word counts: a command with an argument "q" does nothing either.
  if (HasShellOnlyWord(words)) return kSuccess;
  return DispatchWords(*this, words);
}

void MainCmdsProcessor::BuildChildren() {
  const bool makes_nodes = has_nodes_ && nodes_.empty();
  AddUnmade(kTable.size() + (makes_nodes ? top_level_.size() : 0));
  for (const auto& node : nodes_) AddNode(node.get());
}

CmdProcessor::Place MainCmdsProcessor::PlaceOf(std::size_t index) const {
  if (index >= kTable.size()) return PlaceOfNode(top_level_[index - kTable.size()]);
  const RootCommand command = kTable[index];
  const auto number = static_cast<std::uint32_t>(index + 1);
  return {.name = command.name,
          .description = command.description,
          .hidden = command.hidden,
          .usage_index = command.usage == nullptr ? kHelpIndex : number};
}

std::unique_ptr<CmdProcessor> MainCmdsProcessor::MakeChild(std::size_t index) {
  if (index >= kTable.size()) {
    const SubNode row = top_level_[index - kTable.size()];
    return row.make(this, row);
  }
  return std::make_unique<CmdProcessor>(this, PlaceOf(index),
                                        Callbacks{.execute = kTable[index].execute, .usage = &CmdRootUsage});
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
