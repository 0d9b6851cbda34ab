// zfc-json: the documents of zfcesxcli as JSON.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "framework/device_library/harmless_text.h"
#include "runtime/out_of_memory.h"
#include "tools/common/arguments.h"
#include "tools/json/conversion.h"
#include "tools/json/program.h"
#include "tools/json/sink.h"
#include "tools/json/source.h"

namespace zfc_json {
namespace {

constexpr const char* kHelp =
    "Usage: zfcesxcli WORD... | zfc-json [OPTION...]\n"
    "       zfc-json [OPTION...] -- WORD...\n"
    "Writes the XML documents of zfcesxcli as JSON, one value a line. The second form runs the zfcesxcli of\n"
    "the same folder with these words.\n\n"
    "  --raw-only        of a report, only its text\n"
    "  --parsed-only     of a report, only its lines\n"
    "  --stream          one value for each structure of a list, at once: a list of any length takes no "
    "memory\n"
    "  --reboot-status   exit status 3 when a change that succeeded needs a reboot\n"
    "  -h, --help        this text\n\n"
    "Exit status: 0 success; 1 a command failed, as its document says; 2 no document, a broken one, or "
    "wrong\n"
    "usage; 3 see --reboot-status.\n";

void Report(const std::string& what) {
  std::fprintf(stderr, "zfc-json: %s\n", Harmless(what).c_str());
}

// Status 0, with which a program without memory ends, would say that all went well.
void EndAsBroken(void*) {
  constexpr std::string_view kMessage = "zfc-json: out of memory\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(kNoDocument);
}

Verdict ConvertDescriptor(int descriptor, const WriterOptions& options, bool reboot_status) {
  DescriptorSource source(descriptor);
  DescriptorSink sink(STDOUT_FILENO);
  const Conversion conversion = Convert(source, sink, options);
  if (conversion.documents > 0 && conversion.outside_bytes > 0) {
    Report("passed over " + std::to_string(conversion.outside_bytes) + " bytes outside of documents");
  }
  if (source.Error() != 0) {
    Report(std::string("the input can't be read: ") + std::strerror(source.Error()));
    return kNoDocument;
  }
  if (sink.Error() != 0) {
    Report(std::string("standard output can't be written: ") + std::strerror(sink.Error()));
    return kNoDocument;
  }
  if (!conversion.problem.empty()) Report(conversion.problem);
  return conversion.Result(reboot_status);
}

Verdict ConvertProgram(const tools::Words& words, const WriterOptions& options, bool reboot_status) {
  Program program;
  if (const std::string failure = program.Start(words); !failure.empty()) {
    Report(failure);
    return kNoDocument;
  }
  const Verdict verdict = ConvertDescriptor(program.Output(), options, reboot_status);
  const std::string failure = program.Wait();
  if (failure.empty()) return verdict;
  Report(failure);
  return kNoDocument;
}

int Run(const tools::Words& given) {
  const EndStep without_memory(&EndAsBroken, nullptr);
  // What follows "--" is the program's: also words that look like options.
  const auto dashes = std::find(given.begin(), given.end(), "--");
  const tools::Words words(dashes == given.end() ? dashes : dashes + 1, given.end());
  tools::Arguments arguments(
      "zfc-json", {given.begin(), dashes},
      {{"--raw-only"}, {"--parsed-only"}, {"--stream"}, {"--reboot-status"}, {"--help", "-h"}});
  if (!arguments.Good()) return kNoDocument;
  if (arguments.Has("--help")) {
    std::fputs(kHelp, stdout);
    return kSucceeded;
  }
  if (!arguments.Operands().empty()) {
    return arguments.Refuse("'" + arguments.Operands().front() + "': the words of a command follow '--'");
  }
  if (dashes != given.end() && words.empty()) return arguments.Refuse("no words after '--'");
  if (arguments.Has("--raw-only") && arguments.Has("--parsed-only")) {
    return arguments.Refuse("--raw-only and --parsed-only leave nothing");
  }
  const WriterOptions options = {.raw = !arguments.Has("--parsed-only"),
                                 .parsed = !arguments.Has("--raw-only"),
                                 .stream = arguments.Has("--stream")};
  // Another file would get its number, and with it the JSON.
  if (fcntl(STDOUT_FILENO, F_GETFD) < 0) {
    Report("standard output is closed");
    return kNoDocument;
  }
  const bool reboot_status = arguments.Has("--reboot-status");
  if (!words.empty()) return ConvertProgram(words, options, reboot_status);
  return ConvertDescriptor(STDIN_FILENO, options, reboot_status);
}

}  // namespace
}  // namespace zfc_json

int main(int argc, char** argv) {
  return zfc_json::Run({argv + std::min(argc, 1), argv + argc});
}
