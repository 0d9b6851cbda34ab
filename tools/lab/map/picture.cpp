#include "tools/lab/map/picture.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tools/lab/map/svg.h"
#include "tools/lab/map/text_width.h"
#include "tools/lab/view/text.h"

namespace map {
namespace {

// Plain colours first: a reader that knows nothing of dark screens shows the light picture.
constexpr std::string_view kStyle = R"(<style>
text { font-family: system-ui, -apple-system, "Segoe UI", Roboto, "DejaVu Sans", sans-serif; }
.b, .h { font-weight: 600; }
.c, .cm { font-family: ui-monospace, "SF Mono", Menlo, Consolas, "DejaVu Sans Mono", monospace; }
.t, .b, .h, .c { fill: #1f2328; }
.m, .cm { fill: #57606a; }
.page { fill: #f6f8fa; }
.card { fill: #ffffff; stroke: #d0d7de; }
.board { fill: #eaeef2; stroke: #d0d7de; }
.rule { stroke: #d8dee4; }
.good { fill: #1a7f37; }
.idle { fill: #6e7781; }
.warning { fill: #9a6700; }
.problem { fill: #cf222e; }
.up { stroke: #1a7f37; stroke-width: 2; fill: none; }
.down { stroke: #8c959f; stroke-width: 2; stroke-dasharray: 4 4; fill: none; }
.tie { stroke: #afb8c1; stroke-width: 2; fill: none; }
.sign { stroke: #ffffff; stroke-width: 1.8; stroke-linecap: round; stroke-linejoin: round; fill: none; }
@media (prefers-color-scheme: dark) {
.t, .b, .h, .c { fill: #e6edf3; }
.m, .cm { fill: #9da7b3; }
.page { fill: #0d1117; }
.card { fill: #161b22; stroke: #30363d; }
.board { fill: #21262d; stroke: #30363d; }
.rule { stroke: #2a3038; }
.good { fill: #3fb950; }
.idle { fill: #8b949e; }
.warning { fill: #d29922; }
.problem { fill: #f85149; }
.up { stroke: #3fb950; }
.down { stroke: #6e7681; }
.tie { stroke: #484f58; }
.sign { stroke: #0d1117; }
}
</style>
)";

constexpr Style kTitle = {"h", Face::kBold, 24};
constexpr Style kHeading = {"m", Face::kPlain, 12};
constexpr Style kModel = {"b", Face::kBold, 16};
constexpr Style kStrong = {"b", Face::kBold, 14};
constexpr Style kSmallStrong = {"b", Face::kBold, 12};
constexpr Style kPlain = {"t", Face::kPlain, 12};
constexpr Style kMuted = {"m", Face::kPlain, 12};
constexpr Style kSmall = {"m", Face::kPlain, 11};
constexpr Style kCode = {"c", Face::kMono, 12};
constexpr Style kMutedCode = {"cm", Face::kMono, 12};

// The columns.
constexpr int kMargin = 32;
constexpr int kPictureWidth = 1400;
constexpr int kAdapterX = kMargin, kAdapterWidth = 230;
constexpr int kPortX = 304, kPortWidth = 364;
constexpr int kFabricX = 712, kFabricWidth = 252;
constexpr int kTargetX = 1008, kTargetWidth = kPictureWidth - kMargin - kTargetX;
constexpr int kVirtualIndent = 24;

constexpr int kBodyTop = 172;
constexpr int kPortGap = 14;
constexpr int kAdapterGap = 30;
constexpr int kWireY = 32;  // where a line meets a card, from the card's top
constexpr int kRadius = 8;
constexpr int kLine = 18;
constexpr int kTargetRow = 40;
constexpr int kMostFindingLines = 3;

constexpr int kSignRadius = 7;

const char* StyleOf(Health health) {
  return HealthWord(health);
}

// A disc with a sign of its own, so that the colour is not all there is.
void Sign(Svg& svg, Health health, int x, int y) {
  constexpr const char* kSigns[] = {"M-3,0 L-1,2.5 L3.2,-2.5", "M-3,0 L3,0", "M0,-3.6 L0,0.8 M0,3.4 L0,3.5",
                                    "M-2.5,-2.5 L2.5,2.5 M2.5,-2.5 L-2.5,2.5"};
  svg.Begin(x, y);
  svg.Disc(StyleOf(health), kSignRadius);
  svg.Path("sign", kSigns[static_cast<std::size_t>(health)]);
  svg.End();
}

// A port's card, measured before it is drawn.
struct PortCard {
  const PortView& port;
  std::vector<std::pair<Health, std::vector<std::string>>> findings;
  int height = 0;

  int X() const { return kPortX + (port.is_virtual ? kVirtualIndent : 0); }
  int Width() const { return kPortWidth - (port.is_virtual ? kVirtualIndent : 0); }
};

constexpr int kPortInset = 22;
constexpr int kFindingInset = 44;
constexpr int kInset = 14;

std::string Capitalised(std::string word) {
  if (!word.empty() && word[0] >= 'a' && word[0] <= 'z') word[0] = static_cast<char>(word[0] - 'a' + 'A');
  return word;
}

// "Problem: link down", so that the colour has its word.
std::string FindingText(const Finding& finding) {
  return Capitalised(HealthWord(finding.health)) + ": " + finding.words;
}

PortCard Measure(const PortView& port) {
  PortCard card = {.port = port, .findings = {}};
  int lines = 0;
  for (const Finding& finding : port.findings) {
    const int width = card.Width() - kFindingInset - kInset;
    card.findings.emplace_back(
        finding.health, Wrapped(FindingText(finding), kPlain.face, kPlain.size, width, kMostFindingLines));
    lines += static_cast<int>(card.findings.back().second.size());
  }
  if (port.findings.empty()) {
    card.findings.emplace_back(Health::kGood, std::vector<std::string>{"Good"});
    lines = 1;
  }
  const int identity = 1 + (port.name.empty() ? 0 : 1) + (port.module.empty() ? 0 : 1);
  card.height = 26 + kLine * (identity - 1) + 6 + kLine * lines + 14;
  return card;
}

void DrawPort(Svg& svg, const PortCard& card, int top) {
  const PortView& port = card.port;
  const Box box = {card.X(), top, card.Width(), card.height};
  svg.Rectangle("card", box, kRadius);
  svg.Rectangle(StyleOf(port.health), {box.x, box.y + 10, 5, box.height - 20}, 2);
  const int left = box.x + kPortInset;
  const int width = box.width - kPortInset - kInset;
  const std::string speed = !port.has_link ? "" : port.link_up ? port.speed : "down";
  const int speed_width = speed.empty() ? 0 : TextWidth(speed, kStrong.face, kStrong.size) + 12;
  int baseline = top + 26;
  svg.Text(kStrong, left, baseline, width - speed_width, port.title);
  svg.TextUpTo(port.link_up ? kStrong : kMuted, box.Right() - kInset, baseline, width, speed);
  if (!port.name.empty()) svg.Text(kCode, left, baseline += kLine, width, port.name);
  if (!port.module.empty()) svg.Text(kMuted, left, baseline += kLine, width, port.module);
  baseline += 6;
  for (const auto& [health, lines] : card.findings) {
    Sign(svg, health, left + kSignRadius, baseline + kLine - 4);
    for (const std::string& line : lines) {
      svg.Text(kPlain, box.x + kFindingInset, baseline += kLine, box.width - kFindingInset - kInset, line);
    }
  }
}

int FabricHeight(const PortView& port) {
  if (!port.link_up) return 0;
  return port.switch_name.empty() || port.fabric_name.empty() ? 64 : 64 + kLine;
}

// A label and a name in a line.
void LabelledName(Svg& svg, const char* label, const std::string& name, int baseline) {
  svg.Text(kSmall, kFabricX + kInset, baseline, 44, label);
  svg.Text(kCode, kFabricX + kInset + 46, baseline, kFabricWidth - 2 * kInset - 46, name);
}

void DrawFabric(Svg& svg, const PortView& port, int top) {
  svg.Rectangle("card", {kFabricX, top, kFabricWidth, FabricHeight(port)}, kRadius);
  int baseline = top + 26;
  if (port.switch_name.empty()) {
    svg.Text(kMuted, kFabricX + kInset, baseline, kFabricWidth - 2 * kInset, "No fabric");
  } else {
    LabelledName(svg, "Switch", port.switch_name, baseline);
    if (!port.fabric_name.empty()) LabelledName(svg, "Fabric", port.fabric_name, baseline += kLine);
  }
  LabelledName(svg, "Port ID", port.address, baseline + 22);
}

int TargetsHeight(const PortView& port) {
  if (port.targets.empty()) return port.link_up ? 64 : 0;
  return 40 + kTargetRow * static_cast<int>(port.targets.size());
}

void DrawTarget(Svg& svg, const TargetRow& row, int top) {
  const int left = kTargetX + 38;
  const int right = kTargetX + kTargetWidth - kInset;
  const int lun_width = TextWidth(row.luns, kSmallStrong.face, kSmallStrong.size);
  svg.Line("rule", kTargetX + kInset, top, right, top);
  Sign(svg, row.health, kTargetX + kInset + kSignRadius, top + kTargetRow / 2);
  svg.Text(row.is_group ? kSmallStrong : kCode, left, top + 17, right - left - lun_width - 10, row.name);
  svg.TextUpTo(kSmallStrong, right, top + 17, lun_width, row.luns);
  svg.Text(kSmall, left, top + 33, right - left, row.detail);
}

void DrawTargets(Svg& svg, const PortView& port, int top) {
  svg.Rectangle("card", {kTargetX, top, kTargetWidth, TargetsHeight(port)}, kRadius);
  const int baseline = top + (port.targets.empty() ? 37 : 24);
  svg.Text(port.targets.empty() ? kMuted : kSmallStrong, kTargetX + kInset, baseline,
           kTargetWidth - 2 * kInset, Capitalised(port.totals));
  int row_top = top + 36;
  for (const TargetRow& row : port.targets) {
    DrawTarget(svg, row, row_top);
    row_top += kTargetRow;
  }
}

// What a person who sees nothing of the picture is given for a port.
std::string PortSummary(const PortView& port) {
  const std::string parts[] = {port.title, port.name,
                               port.has_link ? (port.link_up ? port.speed : "link down") : "",
                               HealthWord(port.health), port.totals};
  return view::Joined(parts, ", ");
}

// Draws a port with all that is to its right, and returns how high that is. `owner_bottom` is where the card
// of the physical port ends, from which lines lead to its virtual ports.
int DrawPortRow(Svg& svg, const PortView& port, int top, int& owner_bottom) {
  const PortCard card = Measure(port);
  const int wire = top + kWireY;
  svg.Begin(PortSummary(port));
  if (port.is_virtual) {
    svg.Path("tie", "M" + std::to_string(kPortX + 10) + "," + std::to_string(owner_bottom) + " V" +
                        std::to_string(wire) + " H" + std::to_string(card.X()));
  } else {
    svg.Line("tie", kAdapterX + kAdapterWidth, wire, kPortX, wire);
    owner_bottom = top + card.height;
  }
  const int port_right = card.X() + card.Width();
  if (port.link_up) {
    svg.Line("up", port_right, wire, kFabricX, wire);
    svg.Line("up", kFabricX + kFabricWidth, wire, kTargetX, wire);
    DrawFabric(svg, port, top);
    DrawTargets(svg, port, top);
  } else if (!port.targets.empty()) {
    svg.Line("down", port_right, wire, kTargetX, wire);
    DrawTargets(svg, port, top);
  } else if (port.has_link) {
    svg.Line("down", port_right, wire, kFabricX, wire);
  }
  DrawPort(svg, card, top);
  svg.End();
  return std::max({card.height, FabricHeight(port), TargetsHeight(port)});
}

int AdapterHeight(const AdapterView& adapter) {
  return 62 + kLine * static_cast<int>(adapter.facts.size()) + 10;
}

void DrawAdapter(Svg& svg, const AdapterView& adapter, int top, int height) {
  svg.Rectangle("board", {kAdapterX, top, kAdapterWidth, height}, kRadius);
  const int left = kAdapterX + 18;
  const int width = kAdapterWidth - 2 * 18;
  svg.Text(kModel, left, top + 32, width, adapter.model.empty() ? "No model" : adapter.model);
  svg.Text(kMutedCode, left, top + 52, width, adapter.serial.empty() ? "no serial number" : adapter.serial);
  int baseline = top + 60;
  for (const std::string& fact : adapter.facts) svg.Text(kMuted, left, baseline += kLine, width, fact);
}

// Returns how high the adapter with all its ports is.
int DrawAdapterRow(Svg& svg, const AdapterView& adapter, int top) {
  const std::string name[] = {"Adapter", adapter.model, adapter.serial};
  svg.Begin(view::Joined(name, " "));
  Svg ports;  // drawn past the adapter's card, which is as high as they are
  int bottom = top;
  int owner_bottom = top;
  for (const PortView& port : adapter.ports) {
    bottom += (bottom == top ? 0 : kPortGap);
    bottom += DrawPortRow(ports, port, bottom, owner_bottom);
  }
  if (!adapter.more_ports.empty()) {
    ports.Text(kMuted, kPortX + kPortInset, bottom + 28, kPortWidth, Capitalised(adapter.more_ports));
    bottom += 36;
  }
  const int height = std::max(bottom - top, AdapterHeight(adapter));
  DrawAdapter(svg, adapter, top, height);
  svg.Raw(ports.Body());
  svg.End();
  return height;
}

void DrawLegend(Svg& svg) {
  struct Entry {
    Health health;
    const char* words;
  };
  constexpr Entry kEntries[] = {{Health::kGood, "Good"},
                                {Health::kIdle, "Idle: nothing plugged in or set up"},
                                {Health::kWarning, "Warning"},
                                {Health::kProblem, "Problem"}};
  constexpr int kBaseline = 116;
  int x = kMargin;
  for (const Entry& entry : kEntries) {
    Sign(svg, entry.health, x + kSignRadius, kBaseline - 4);
    const int width = TextWidth(entry.words, kMuted.face, kMuted.size);
    svg.Text(kMuted, x + 22, kBaseline, width, entry.words);
    x += 22 + width + 26;
  }
  for (const auto& [style, words] : {std::pair("up", "Link up"), std::pair("down", "Link down")}) {
    svg.Line(style, x, kBaseline - 4, x + 32, kBaseline - 4);
    const int width = TextWidth(words, kMuted.face, kMuted.size);
    svg.Text(kMuted, x + 40, kBaseline, width, words);
    x += 40 + width + 26;
  }
}

void DrawHead(Svg& svg, const HostView& host, std::string_view name) {
  const int width = kPictureWidth - 2 * kMargin;
  svg.Text(kTitle, kMargin, 54, width, name);
  const std::string facts[] = {host.totals, host.health};
  svg.Text(kMuted, kMargin, 80, width, view::Joined(facts, ".  "));
  DrawLegend(svg);
  struct Column {
    int x;
    const char* heading;
  };
  constexpr Column kColumns[] = {
      {kAdapterX, "Adapters"}, {kPortX, "Ports"}, {kFabricX, "Fabric"}, {kTargetX, "Targets"}};
  for (const Column& column : kColumns) svg.Text(kHeading, column.x, kBodyTop - 14, 200, column.heading);
}

std::string Document(const Svg& svg, int height, std::string_view name, const HostView& host) {
  const std::string size = std::to_string(kPictureWidth);
  const std::string high = std::to_string(height);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
         size + "\" height=\"" + high + "\" viewBox=\"0 0 " + size + ' ' + high +
         "\" role=\"img\" aria-labelledby=\"map-title map-desc\">\n<title id=\"map-title\">Map of " +
         view::XmlText(name) + "</title>\n<desc id=\"map-desc\">" + view::XmlText(host.totals) + ". " +
         view::XmlText(host.health) + ".</desc>\n" + std::string(kStyle) + svg.Body() + "</svg>\n";
}

}  // namespace

std::string Picture(const HostView& host, std::string_view name) {
  Svg body;
  DrawHead(body, host, name);
  int bottom = kBodyTop;
  for (const AdapterView& adapter : host.adapters) {
    bottom += (bottom == kBodyTop ? 0 : kAdapterGap);
    bottom += DrawAdapterRow(body, adapter, bottom);
  }
  if (host.adapters.empty()) {
    body.Text(kMuted, kMargin, bottom + 16, kPictureWidth - 2 * kMargin, "No adapters");
    bottom += 24;
  }
  if (!host.more_adapters.empty()) {
    body.Text(kMuted, kMargin, bottom + 36, kPictureWidth - 2 * kMargin, Capitalised(host.more_adapters));
    bottom += 44;
  }
  const int height = bottom + kMargin;
  Svg page;
  page.Rectangle("page", {0, 0, kPictureWidth, height}, 0);
  page.Raw(body.Body());
  return Document(page, height, name, host);
}

}  // namespace map
