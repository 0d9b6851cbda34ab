#include "framework/report_lines.h"

#include <algorithm>
#include <cinttypes>

#include "framework/code_text.h"
#include "framework/device_library/octet_text.h"

namespace {

constexpr const char* kIndent = "      ";

void WriteNameLine(ReportText& text, const char* indent, const char* label, const WorldWideName& name) {
  text.Line("%s%s: %s\n", indent, label, name.Text().c_str());
}

}  // namespace

void FirstTextLine(ReportText& text, const char* label, std::string_view value) {
  text.Line("%s: %.*s\n", label, static_cast<int>(value.size()), value.data());
}

void TextLine(ReportText& text, const char* label, std::string_view value) {
  text.Line("%s%s: %.*s\n", kIndent, label, static_cast<int>(value.size()), value.data());
}

void TextOrNaLine(ReportText& text, const char* label, std::string_view value) {
  TextLine(text, label, value.empty() ? "NA" : value);
}

void NumberLine(ReportText& text, const char* label, std::uint32_t value) {
  text.Line("%s%s: %u\n", kIndent, label, value);
}

void WideNumberLine(ReportText& text, const char* label, std::uint64_t value) {
  text.Line("%s%s: %" PRIu64 "\n", kIndent, label, value);
}

void FlagLine(ReportText& text, const char* label, bool flag) {
  TextLine(text, label, BoolText(flag));
}

void FirstNameLine(ReportText& text, const char* label, const WorldWideName& name) {
  WriteNameLine(text, "", label, name);
}

void NameLine(ReportText& text, const char* label, const WorldWideName& name) {
  WriteNameLine(text, kIndent, label, name);
}

void VersionLine(ReportText& text, const char* label, const ComponentVersion& version) {
  if (version.AllZero()) return TextLine(text, label, "NA");
  text.Line("%s%s: %hhu.%02hhu.%02hhu\n", kIndent, label, version.major, version.minor, version.sub);
}

void VersionOrBlankLine(ReportText& text, const char* label, const ComponentVersion& version) {
  VersionLine(text, label, version.AllOnes() ? ComponentVersion{} : version);
}

void PortIdLine(ReportText& text, const char* label, const PortId& port_id) {
  TextLine(text, label, port_id.Text());
}

void HostIdLine(ReportText& text, const char* label, const std::uint8_t (&id)[16]) {
  if (std::all_of(std::begin(id), std::end(id), [](std::uint8_t octet) { return octet == 0; })) {
    return TextLine(text, label, "NA");
  }
  TextLine(text, label, OctetText(id, ""));
}

void TargetLines(ReportText& text, const TargetEntry& target) {
  FirstNameLine(text, "Node Name", target.node_name);
  NameLine(text, "Port Name", target.port_name);
  PortIdLine(text, "Port Id", target.port_id);
  NumberLine(text, "Target Number", target.number);
}
