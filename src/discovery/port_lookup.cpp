#include "discovery/port_lookup.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "discovery/host_walk.h"
#include "discovery/identifiers.h"
#include "framework/device_library/calls.h"

namespace {

// The words of an identifier that say its kind, each cut at an underscore or an apostrophe; empty where the
// text ends or departs from the form before it. The names between them are skipped here: only the exact
// reading of the whole text decides what it names.
struct KindWords {
  char port[16] = {};
  char target[16] = {};
  char lun[9] = {};
};

KindWords ReadKindWords(const char* text) {
  KindWords kind;
  unsigned char octet = 0;
  unsigned char* const skipped = &octet;
  unsigned number = 0;
  // A part that does not scan leaves the words after it empty. NOLINTNEXTLINE(cert-err34-c)
  std::sscanf(text,
              "%15[^'_']_%hhx:%hhx:%hhx:%hhx:%hhx:%hhx:%hhx:%hhx"
              "_%15[^'_']_%hhx:%hhx:%hhx:%hhx:%hhx:%hhx:%hhx:%hhx_%8[^'_']_%u",
              kind.port, skipped, skipped, skipped, skipped, skipped, skipped, skipped, skipped, kind.target,
              skipped, skipped, skipped, skipped, skipped, skipped, skipped, skipped, kind.lun, &number);
  return kind;
}

// How far down an identifier leads.
enum class Depth : std::uint8_t { kPort, kTarget, kLun };

// The part of the identifier whose word is another one, as the debug log names it; null when it is of the
// right kind.
const char* WrongPart(const KindWords& kind, Depth depth) {
  if (!EqualNoCase(kind.port, "FC")) return "Port";
  if (depth >= Depth::kTarget && !EqualNoCase(kind.target, "Target")) return "Tgt";
  const bool is_lun = EqualNoCase(kind.lun, "LUN") || EqualNoCase(kind.lun, "NSID");
  return depth >= Depth::kLun && !is_lun ? "Lun" : nullptr;
}

// The steps that the three look-ups share: the help word, the kind of the identifier, the adapter list.
StatusCode OpenHost(const CommandRun& run, Depth depth, const AdapterList*& list) {
  if (IsHelpWord(WordAt(run.words, 0))) return kHelpWord;
  const char* const identifier = run.words.empty() ? "" : run.words[0].c_str();
  if (const char* const wrong = WrongPart(ReadKindWords(identifier), depth); wrong != nullptr) {
    return run.Refuse(kInvalidParameter, "Invalid %s identifier %s", wrong, identifier);
  }
  list = TORPI_GetAdapterList();
  return list != nullptr ? kSuccess : run.Refuse(kHostNotFound, "Adapter List is NULL");
}

// Logs the failure of a look-up of `what` and returns its status.
StatusCode LogLookup(const CommandRun& run, const char* what, StatusCode status) {
  if (status != kSuccess) run.LogFailure("Get %s failed err=%d", what, static_cast<int>(status));
  return status;
}

}  // namespace

StatusCode GetPhyPortFromPortString(CommandRun& run, PortSelection& selection) {
  const FunctionScope function(run, {"PhysicalPortCmdsProcessor", __func__});
  selection = {};
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenHost(run, Depth::kPort, list); status != kSuccess) return status;

  std::string_view text = run.words[0];
  WorldWideName wanted;
  if (!TakePort(text, wanted) || !text.empty()) return kInvalidParameter;
  const bool found = VisitFcEntries(*list, [&](const auto& adapter, const auto& port, const auto& entry) {
    if (entry.port_name != wanted) return false;
    selection = {&adapter, &port, &entry};
    return true;
  });
  return found ? kSuccess : kInvalidParameter;
}

StatusCode GetTargetFromTargetString(CommandRun& run, TargetSelection& selection) {
  const FunctionScope function(run, {"FCTargetCmdsProcessor", __func__});
  selection = {};
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenHost(run, Depth::kTarget, list); status != kSuccess) return status;

  std::string_view text = run.words[0];
  WorldWideName wanted_port;
  WorldWideName wanted;
  if (!TakePort(text, wanted_port) || !TakeTarget(text, wanted) || !text.empty()) return kInvalidParameter;
  const bool found = VisitFcEntries(*list, [&](const auto&, const auto&, const auto& entry) {
    if (entry.port_name != wanted_port) return false;
    for (const TargetEntry& target : TargetsOf(entry)) {
      if (target.port_name != wanted) continue;
      selection = {&entry, &target};
      return true;
    }
    return false;
  });
  return found ? kSuccess : kInvalidParameter;
}

StatusCode GetLunFromLunString(CommandRun& run, LunSelection& selection) {
  const FunctionScope function(run, {"FCLunCmdsProcessor", __func__});
  selection = {};
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenHost(run, Depth::kLun, list); status != kSuccess) return status;

  std::string_view text = run.words[0];
  WorldWideName wanted_port;
  WorldWideName wanted_target;
  bool is_namespace = false;
  std::uint32_t number = 0;
  if (!TakePort(text, wanted_port) || !TakeTarget(text, wanted_target) ||
      !TakeLun(text, is_namespace, number) || !text.empty()) {
    return kInvalidParameter;
  }
  const bool found = VisitFcEntries(*list, [&](const auto&, const auto&, const auto& entry) {
    if (entry.port_name != wanted_port) return false;
    for (const TargetEntry& target : TargetsOf(entry)) {
      if (target.port_name != wanted_target || IsNvmeTarget(target) != is_namespace) continue;
      for (const LunEntry& lun : LunsOf(target)) {
        if (lun.number != number) continue;
        selection = {&entry, &target, &lun};
        return true;
      }
    }
    return false;
  });
  return found ? kSuccess : kInvalidParameter;
}

StatusCode SelectPort(CommandRun& run, PortSelection& selection) {
  return LogLookup(run, "phy port", GetPhyPortFromPortString(run, selection));
}

StatusCode SelectTarget(CommandRun& run, TargetSelection& selection) {
  return LogLookup(run, "target", GetTargetFromTargetString(run, selection));
}

StatusCode SelectLun(CommandRun& run, LunSelection& selection) {
  return LogLookup(run, "lun", GetLunFromLunString(run, selection));
}

StatusCode SelectPhysicalPort(CommandRun& run, PortSelection& selection) {
  const StatusCode status = SelectPort(run, selection);
  return status == kSuccess ? CheckPhysical(run, *selection.fc) : status;
}

StatusCode CheckPhysical(const CommandRun& run, const FCProtocolEntry& fc) {
  if (!IsVirtualPort(fc)) return kSuccess;
  return run.Refuse(kVirtualPort, "Command not supported for vport");
}
