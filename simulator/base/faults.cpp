#include "base/faults.h"

#include <algorithm>
#include <utility>

#include "base/nearest_word.h"
#include "base/results.h"
#include "base/text.h"

namespace lab {
namespace {

bool Performs(CallKind kind, std::uint32_t result) {
  switch (kind) {
    case CallKind::kFlashUpdate:
      return result == kSuccess || result == kSuccessWarmReboot || result == kSuccessColdReboot;
    case CallKind::kStatus:
    case CallKind::kRecord:
      return result == kSuccess;
    case CallKind::kValue:
    case CallKind::kPointer:
      return false;
  }
  return false;
}

// "; did you mean 'TORPI_GetVpd'?" where a call is close to this name.
std::string Meant(std::string_view call) {
  std::vector<std::string_view> names;
  for (const CallInfo& known : kCalls) names.emplace_back(known.name);
  return DidYouMean(call, names);
}

}  // namespace

std::string FaultQueue::Add(std::string_view call, std::string_view result, bool once) {
  const CallInfo* info = FindCall(call);
  if (!info) return "expected the name of a library call, got '" + ShownText(call) + "'" + Meant(call);
  const std::string name = info->name;
  std::uint64_t number = 0;
  if (info->kind == CallKind::kPointer) {
    if (result != "null") return "expected null for " + name + ", got '" + ShownText(result) + "'";
  } else if (!ReadNumber(result, UINT32_MAX, number)) {
    return "expected a number for " + name + ", got '" + ShownText(result) + "'";
  }
  const auto lasting = [info](const Entry& entry) { return entry.call == info && !entry.fault.once; };
  if (!once && std::any_of(entries_.begin(), entries_.end(), lasting)) {
    return "expected one lasting result for " + name + ", got a second one";
  }
  const auto word = static_cast<std::uint32_t>(number);
  entries_.push_back({info, {word, once, Performs(info->kind, word)}});
  return {};
}

std::string FaultQueue::AddList(std::string_view text) {
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    std::string_view item = Trimmed(text.substr(0, comma));
    text.remove_prefix(comma == text.npos ? text.size() : comma + 1);
    const std::size_t equals = item.find('=');
    if (equals == item.npos) return "expected <call>=<result>, got '" + ShownText(item) + "'";
    std::string_view result = item.substr(equals + 1);
    constexpr std::string_view kOnce = ":once";
    const bool once = result.ends_with(kOnce);
    if (once) result.remove_suffix(kOnce.size());
    if (std::string wrong = Add(item.substr(0, equals), result, once); !wrong.empty()) return wrong;
  }
  return {};
}

std::optional<Fault> FaultQueue::Take(std::string_view call) {
  const auto named = [call](const Entry& entry) { return call == entry.call->name; };
  auto found = std::find_if(entries_.begin(), entries_.end(),
                            [&](const Entry& entry) { return named(entry) && entry.fault.once; });
  if (found == entries_.end()) found = std::find_if(entries_.begin(), entries_.end(), named);
  if (found == entries_.end()) return std::nullopt;
  const Fault fault = found->fault;
  if (fault.once) entries_.erase(found);
  return fault;
}

void FaultQueue::Override(FaultQueue stronger) {
  std::erase_if(entries_, [&](const Entry& weak) {
    return std::any_of(stronger.entries_.begin(), stronger.entries_.end(),
                       [&](const Entry& strong) { return strong.call == weak.call; });
  });
  entries_.insert(entries_.end(), stronger.entries_.begin(), stronger.entries_.end());
}

}  // namespace lab
