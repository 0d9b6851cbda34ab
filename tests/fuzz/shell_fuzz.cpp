// What a user types at the interactive shell, up to the end of the input.
//
// Oracle: a second implementation of the shell's reading. The pieces that the bytes fall into, the words of
// each, the command that they name and what is printed are what the model below says.
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "c_library.h"
#include "framework/console.h"
#include "framework/run_flags.h"
#include "framework/shell.h"
#include "printed_text.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// Of the thread that runs the shell; the fuzzer has another one, which does sleep.
thread_local bool g_in_shell = false;
thread_local int g_seconds_slept = 0;

}  // namespace

// The shell's own waits take no time here: input is always there, and nobody sends a signal.
extern "C" {

unsigned sleep(unsigned seconds) {
  if (!g_in_shell) return CLibrarys("sleep", &sleep)(seconds);
  g_seconds_slept += static_cast<int>(seconds);
  return 0;
}

int ppoll(pollfd*, nfds_t, const timespec*, const sigset_t*) {
  return 1;
}

int sigprocmask(int, const sigset_t*, sigset_t*) noexcept {
  return 0;
}
}

namespace {

constexpr const char* kUnknown = "Unknown command or invalid target identifier!\r\n";
constexpr const char* kNotSplit = "Error parsing command input string!\n";
constexpr const char* kInputEnds = "Unknown input problem!\r\nQuit...\r\n";
constexpr int kSecondsToBreak = 5;

// Each word with its length, so that nothing in it can be taken for two.
StatusCode Echo(CmdProcessor&, Words& words) {
  for (const std::string& word : words) ConsolePrint(kPrintText, "%zu:%s,", word.size(), word.c_str());
  ConsolePrint(kPrintText, "\n");
  return kSuccess;
}

StatusCode Leave(CmdProcessor&, Words&) {
  return kLeaveShell;
}

// A leaf "echo" and "q", and below the switch "-t" a node "port" with an "echo" of its own.
class Node : public MultipleCmdsProcessor {
 public:
  Node(CmdProcessor* parent, const Place& place) : MultipleCmdsProcessor(parent, place) {
    AddLeaf(std::make_unique<CmdProcessor>(this, Place{.name = "echo"}, Callbacks{.execute = &Echo}));
  }
  void AddQuit() {
    AddLeaf(std::make_unique<CmdProcessor>(this, Place{.name = "q"}, Callbacks{.execute = &Leave}));
  }
  using MultipleCmdsProcessor::AddNode;
};

// Takes the next piece in which the shell reads: up to a line's end, at most 2047 bytes. What comes after a
// null byte in a piece is not seen.
std::string_view TakePiece(std::string_view& input) {
  constexpr std::size_t kMost = 2047;
  const std::size_t line = input.find('\n');
  const std::size_t length =
      std::min(std::min(kMost, input.size()), line == std::string_view::npos ? kMost : line + 1);
  std::string_view piece = input.substr(0, length);
  input.remove_prefix(length);
  piece = piece.substr(0, piece.find('\0'));
  if (piece.ends_with('\n')) piece.remove_suffix(1);
  return piece;
}

// The words of a piece, in memory that all pieces share.
class Splitter {
 public:
  // False when the piece's quotes do not close. Between quotes every byte is part of the word.
  bool Split(std::string_view piece) {
    words_.clear();
    bytes_.clear();
    bytes_.reserve(piece.size());  // where the words are, none of which may move
    bool in_quotes = false;
    bool in_word = false;
    for (const char c : piece) {
      const bool separates = !in_quotes && (c == ' ' || c == '\t' || c == '\r' || c == '\n');
      if (!separates && !in_word) words_.emplace_back(bytes_.data() + bytes_.size(), 0);
      in_word = !separates;
      if (separates) continue;
      if (c == '"') {
        in_quotes = !in_quotes;
      } else {
        bytes_ += c;
        words_.back() = {words_.back().data(), words_.back().size() + 1};
      }
    }
    return !in_quotes;
  }
  std::vector<std::string_view>& Words() { return words_; }

 private:
  std::string bytes_;
  std::vector<std::string_view> words_;
};

bool Is(std::string_view word, std::string_view name) {
  if (word.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = word[i] >= 'A' && word[i] <= 'Z' ? static_cast<char>(word[i] + 32) : word[i];
    if (c != name[i]) return false;
  }
  return true;
}

struct Session {
  std::string printed;
  StatusCode status = kWrongWordCount;
};

void AddEcho(std::span<const std::string_view> words, std::string& printed) {
  if (!words.empty() && words[0] == "?") return;  // its usage, of which it has none
  for (const std::string_view word : words) {
    printed += std::to_string(word.size());
    printed += ':';
    printed += word;
    printed += ',';
  }
  printed += '\n';
}

// What the command of these words prints. True when it leaves the shell.
bool Run(std::vector<std::string_view>& words, std::string& printed) {
  const auto echo = [&] { AddEcho(std::span<const std::string_view>(words).subspan(1), printed); };
  if (Is(words[0], "q")) return words.size() == 1 || words[1] != "?";
  if (Is(words[0], "echo")) {
    echo();
    return false;
  }
  // A single word names a node by its name; such a node does nothing.
  if (words.size() == 1) {
    if (!Is(words[0], "port")) printed += kUnknown;
    return false;
  }
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (!Is(words[i], "-t") || !Is(words[i + 1], "port")) continue;
    words.erase(words.begin() + static_cast<std::ptrdiff_t>(i),
                words.begin() + static_cast<std::ptrdiff_t>(i) + 2);
    if (words.empty() || !Is(words[0], "echo")) break;
    echo();
    return false;
  }
  printed += kUnknown;
  return false;
}

ssize_t ReadInput(void* input, char* buffer, std::size_t size) {
  auto& rest = *static_cast<std::string_view*>(input);
  const std::size_t length = rest.copy(buffer, size);
  rest.remove_prefix(length);
  return static_cast<ssize_t>(length);
}

Session Model(std::string_view input) {
  static Splitter splitter;
  Session session;
  session.printed.reserve(2 * input.size() + 1024);
  while (!input.empty()) {
    session.printed += "$>";
    const bool is_split = splitter.Split(TakePiece(input));
    if (!is_split) session.printed += kNotSplit;
    if (!is_split || splitter.Words().empty() || !Run(splitter.Words(), session.printed)) continue;
    session.status = kSuccess;
    return session;
  }
  session.printed += "$>";
  session.printed += kInputEnds;
  return session;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Node root(nullptr, {.name = "root"});
  Node port(&root, {.name = "port", .switch_word = "-t"});
  root.AddQuit();
  root.AddNode(&port);
  std::string_view input(reinterpret_cast<const char*>(data), size);
  std::FILE* const real = stdin;
  stdin = fopencookie(&input, "r", {&ReadInput, nullptr, nullptr, nullptr});
  Require(stdin != nullptr);
  g_seconds_slept = 0;
  StatusCode status = kSuccess;
  g_in_shell = true;
  const std::string printed = PrintedText::Of([&] { status = RunShell(root); });
  g_in_shell = false;
  std::fclose(stdin);
  stdin = real;
  const Session session = Model({reinterpret_cast<const char*>(data), size});
  Require(printed == session.printed && status == session.status);
  Require(g_seconds_slept == (status == kSuccess ? 0 : kSecondsToBreak));
  Require(gRunFlags == 0);
  return 0;
}
