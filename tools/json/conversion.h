// Turns all documents of a source into JSON.
#pragma once

#include <cstdint>
#include <string>

#include "tools/json/document_writer.h"
#include "tools/json/sink.h"
#include "tools/json/source.h"

namespace zfc_json {

// What the command ends with.
enum Verdict : int {
  kSucceeded = 0,
  kFailed = 1,          // a document says that its command failed
  kNoDocument = 2,      // there is none, or one that can't be followed; also wrong usage
  kRebootRequired = 3,  // all succeeded, and a change takes effect with the next start of the host
};

struct Conversion {
  std::uint64_t documents = 0;
  bool all_succeeded = true;
  bool reboot_required = false;
  std::string problem;  // what kept it from the end of the source; empty for nothing
  std::uint64_t outside_bytes = 0;

  Verdict Result(bool reboot_status) const;
};

// Converts document after document to the end, or up to the first that is broken, of which nothing is written
// but, with WriterOptions::stream, the complete elements of a list.
Conversion Convert(Source& source, Sink& sink, const WriterOptions& options);

}  // namespace zfc_json
