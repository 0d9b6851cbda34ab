#include "discovery/adapter_lookup.h"

#include <algorithm>
#include <string_view>

#include "discovery/host_walk.h"
#include "framework/device_library/calls.h"

namespace {

struct IdentifierParts {
  std::string_view type;
  std::string_view model;
  std::string_view serial_number;
};

// Takes the next token off `text`. Runs of underscores count as one separator, leading ones are skipped.
std::string_view NextToken(std::string_view& text) {
  const std::size_t begin = text.find_first_not_of('_');
  if (begin == std::string_view::npos) return {};
  const std::size_t end = std::min(text.find('_', begin), text.size());
  const std::string_view token = text.substr(begin, end - begin);
  text.remove_prefix(end);
  return token;
}

// Splits an identifier at its underscores; a fourth and further tokens are dropped. A model or a serial
// number that itself holds an underscore can therefore not be named.
IdentifierParts SplitIdentifier(std::string_view text) {
  IdentifierParts parts;
  parts.type = NextToken(text);
  parts.model = NextToken(text);
  parts.serial_number = NextToken(text);
  return parts;
}

bool Matches(const AdapterEntry& adapter, const IdentifierParts& wanted) {
  return adapter.ports != nullptr && EqualNoCase(adapter.model.View(), wanted.model) &&
         EqualNoCase(adapter.serial_number.View(), wanted.serial_number);
}

// Selects a matching adapter. A Fibre Channel entry that an earlier adapter of the same name left in
// `selection` stays, unless a port with a lower number than this adapter's first one has an entry.
void Select(const AdapterEntry& adapter, AdapterSelection& selection) {
  selection.adapter = &adapter;
  selection.port = adapter.ports->first;
  for (const PhyPortEntry& port : PortsOf(adapter)) {
    for (const FCProtocolEntry& entry : ProtocolsOf(port)) {
      if (!IsFcEntry(entry)) continue;
      if (selection.fc == nullptr) selection.fc = &entry;
      if (port.number < selection.port->number) {
        selection.fc = &entry;
        selection.port = &port;
      }
    }
  }
}

}  // namespace

std::string AdapterIdentifier(const AdapterEntry& adapter) {
  const std::string_view model = adapter.model.View();
  const std::string_view serial_number = adapter.serial_number.View();
  std::string identifier = "Adapter_";
  identifier.reserve(identifier.size() + model.size() + 1 + serial_number.size());
  return identifier.append(model).append("_").append(serial_number);
}

StatusCode GetPhyPortFromAdapterString(CommandRun& run, AdapterSelection& selection) {
  const FunctionScope function(run, {"AdapterCmdsProcessor", __func__});
  selection = {};
  const std::string_view identifier = WordAt(run.words, 0);
  if (IsHelpWord(identifier)) {
    run.Trace("Invoking Help");
    return kHelpWord;
  }
  const IdentifierParts wanted = SplitIdentifier(identifier);
  if (!EqualNoCase(wanted.type, "Adapter")) {
    return run.Refuse(kInvalidParameter, "Invalid Adapter identifier %s",
                      run.words.empty() ? "" : run.words[0].c_str());
  }
  const AdapterList* const list = TORPI_GetAdapterList();
  if (list == nullptr) return run.Refuse(kHostNotFound, "Adapter List is NULL");
  // All adapters, with no early stop: of two with the same model and serial number the later one is taken.
  for (const AdapterEntry& adapter : AdaptersOf(*list)) {
    if (Matches(adapter, wanted)) Select(adapter, selection);
  }
  const bool complete = selection.adapter != nullptr && selection.port != nullptr && selection.fc != nullptr;
  return complete ? kSuccess : kInvalidParameter;
}

StatusCode SelectAdapter(CommandRun& run, AdapterSelection& selection) {
  const StatusCode status = GetPhyPortFromAdapterString(run, selection);
  if (status != kSuccess) run.LogFailure("Get phy port failed err=%d", static_cast<int>(status));
  return status;
}
