#include "tools/lab/view/words.h"

#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "tools/lab/view/text.h"

namespace view {
namespace {

constexpr CodeWord kResults[] = {
    {kLibraryVirtualPort, "a virtual port"},
    {kLibraryNoLinkTest, "the adapter lacks the link test"},
    {kLibraryNoMemory, "out of memory"},
    {kLibrarySfpOfVirtualPort, "a virtual port has no module"},
    {kLibraryFeatureNotSupported, "not supported"},
    {kLibraryAdapterNotFound, "not found"},
    {kLibraryDriverLacksFeature, "the driver lacks the feature"},
    {kLibraryAdapterLacksFeature, "the adapter lacks the feature"},
    {kLibraryNoDiagnosticPort, "no diagnostic port"},
    {kLibraryLinkDown, "the link is down"},
    {kLibraryLinkTooSlow, "the link is too slow"},
    {kLibraryFirmwareLockdown, "firmware lockdown"},
    {kLibraryMaintenanceMode, "maintenance mode"},
};

struct FamilyWord {
  FamilySet families;
  const char* name;
};

// A device that is of several families has the name of the narrowest.
constexpr FamilyWord kFamilies[] = {
    {kFernOnly, "fern"}, {kElmOnly, "elm"}, {kGinkgo, "ginkgo"}, {kCedar, "cedar"},   {kAster, "aster"},
    {kBirch, "birch"},   {kHazel, "hazel"}, {kIris, "iris"},     {kDahlia, "dahlia"},
};

}  // namespace

std::string WordOf(std::span<const CodeWord> words, std::uint32_t code) {
  for (const CodeWord& row : words) {
    if (row.code == code) return row.word;
  }
  return "code " + std::to_string(code);
}

std::string SpeedText(std::uint32_t code) {
  if (code == 0) return "none";
  const LinkSpeed* const speed = SpeedOfCode(code);
  return speed == nullptr ? "speed code " + HexNumber(code, 2) : std::to_string(speed->gbps) + " Gbps";
}

const char* FamilyName(const PciIdentity& pci) {
  for (const FamilyWord& row : kFamilies) {
    if (IsAnyOf(pci, row.families)) return row.name;
  }
  return "";
}

const char* TargetStateText(const TargetEntry& target) {
  if (IsOnline(target)) return "online";
  return IsUnconfigured(target) ? "unconfigured" : "offline";
}

std::string ResultText(LibraryStatus result) {
  for (const CodeWord& row : kResults) {
    if (row.code == result) return std::to_string(result) + " (" + row.word + ")";
  }
  return std::to_string(result);
}

}  // namespace view
