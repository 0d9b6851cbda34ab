#include "tools/lab/map/text_tree.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tools/lab/view/text.h"

namespace map {
namespace {

class Tree {
 public:
  void Line(std::size_t depth, std::string_view text) {
    if (text.empty()) return;
    text_.append(2 * depth, ' ');
    text_ += text;
    text_ += '\n';
  }
  void Blank() { text_ += '\n'; }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

std::string PaddedTo(std::string text, std::size_t width) {
  const std::size_t count = view::CharacterCount(text);
  if (count < width) text.append(width - count, ' ');
  return text;
}

// Names and counts of a port's targets in columns.
void TargetLines(Tree& tree, const PortView& port) {
  std::size_t name_width = 0;
  std::size_t lun_width = 0;
  for (const TargetRow& row : port.targets) {
    name_width = std::max(name_width, view::CharacterCount(row.name));
    lun_width = std::max(lun_width, view::CharacterCount(row.luns));
  }
  for (const TargetRow& row : port.targets) {
    const std::string head = row.is_group ? row.name : "Target " + row.name;
    tree.Line(3, PaddedTo(head, name_width + (row.is_group ? 0 : 7)) + "  " + PaddedTo(row.luns, lun_width) +
                     "  " + row.detail);
  }
}

void PortLines(Tree& tree, const PortView& port) {
  const std::string link = !port.has_link ? "" : port.link_up ? "link up at " + port.speed : "link down";
  const std::string head[] = {port.title, port.name, link, HealthWord(port.health)};
  tree.Line(1, view::Joined(head, ", "));
  for (const Finding& finding : port.findings) {
    tree.Line(2, std::string(HealthWord(finding.health)) + ": " + finding.words);
  }
  if (!port.module.empty()) tree.Line(2, "Module " + port.module);
  if (port.link_up) {
    const std::string fabric[] = {port.switch_name.empty() ? "no fabric" : "Switch " + port.switch_name,
                                  port.fabric_name.empty() ? "" : "fabric " + port.fabric_name,
                                  "address " + port.address};
    tree.Line(2, view::Joined(fabric, ", "));
  }
  tree.Line(2, port.totals);
  TargetLines(tree, port);
}

}  // namespace

std::string TextTree(const HostView& host) {
  Tree tree;
  tree.Line(0, "Host: " + host.totals);
  tree.Line(0, host.health);
  for (const AdapterView& adapter : host.adapters) {
    const std::string names[] = {"Adapter", adapter.model, adapter.serial};
    const std::string parts[] = {view::Joined(names, " "), view::Joined(adapter.facts, ", ")};
    tree.Blank();
    tree.Line(0, view::Joined(parts, ": "));
    for (const PortView& port : adapter.ports) PortLines(tree, port);
    tree.Line(1, adapter.more_ports);
  }
  tree.Line(0, host.more_adapters);
  return tree.Take();
}

}  // namespace map
