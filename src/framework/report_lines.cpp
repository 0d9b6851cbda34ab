#include "framework/report_lines.h"

#include <algorithm>
#include <cinttypes>

#include "framework/code_text.h"

namespace {

constexpr const char* kIndent = "      ";

void WriteNameLine(ReportText& text, const char* indent, const char* label, const WorldWideName& name) {
  text.Line("%s%s: %02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x\n", indent, label, name[0], name[1], name[2],
            name[3], name[4], name[5], name[6], name[7]);
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

void PortIdLine(ReportText& text, const char* label, const std::uint8_t (&port_id)[3]) {
  text.Line("%s%s: %02x:%02x:%02x\n", kIndent, label, port_id[0], port_id[1], port_id[2]);
}

void HostIdLine(ReportText& text, const char* label, const std::uint8_t (&id)[16]) {
  if (std::all_of(std::begin(id), std::end(id), [](std::uint8_t octet) { return octet == 0; })) {
    return TextLine(text, label, "NA");
  }
  text.Line(
      "%s%s: %02hhx%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx"
      "%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx\n",
      kIndent, label, id[0], id[1], id[2], id[3], id[4], id[5], id[6], id[7], id[8], id[9], id[10], id[11],
      id[12], id[13], id[14], id[15]);
}

void TargetLines(ReportText& text, const TargetEntry& target) {
  FirstNameLine(text, "Node Name", target.node_name);
  NameLine(text, "Port Name", target.port_name);
  PortIdLine(text, "Port Id", target.port_id);
  NumberLine(text, "Target Number", target.number);
}
