#include "yaml/mistakes.h"

#include <utility>

#include "framework/device_library/harmless_text.h"

namespace lab {

void Mistakes::Add(Place place, std::string what) {
  ++found_;
  if (!Enough()) kept_.emplace(place.line, place.column, std::move(what));
}

std::string Mistakes::Report(const std::string& file) const {
  std::string report;
  std::size_t shown = 0;
  for (const auto& [line, column, what] : kept_) {
    if (shown == kShown) break;
    if (shown++ > 0) report += '\n';
    report += Harmless(file);
    if (line > 0) report += ':' + std::to_string(line) + ':' + std::to_string(column);
    report += ": " + what;
  }
  if (kept_.size() > shown) {
    report += '\n' + Harmless(file) + ": and " + (Enough() ? "at least " : "") +
              std::to_string(kept_.size() - shown) + " more";
  }
  return report;
}

}  // namespace lab
