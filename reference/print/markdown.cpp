#include "reference/print/markdown.h"

#include <algorithm>
#include <set>

#include "reference/print/text.h"

namespace reference {
namespace {

constexpr const char* kGenerated =
    "<!-- Made from reference/ by `ninja reference_docs`: change it there. -->\n\n";

// A text in a cell of a table or in a paragraph; angle brackets outside code words are no tags.
std::string Escaped(const std::string& text) {
  std::string out;
  bool code = false;
  for (const char letter : text) {
    if (letter == '`') code = !code;
    if (!code && (letter == '<' || letter == '>' || letter == '*' || letter == '_')) out += '\\';
    if (letter == '|') out += '\\';
    out += letter;
  }
  return out;
}

std::string Code(const std::string& text) {
  return "`" + text + "`";
}

std::string Cell(const std::string& text) {
  return Escaped(Replaced(text, "\n", " "));
}

std::string Row(const std::vector<std::string>& cells) {
  std::string row = "|";
  for (const std::string& cell : cells) row += " " + cell + " |";
  return row + "\n";
}

std::string TableHead(const std::vector<std::string>& heads) {
  return Row(heads) + Row(std::vector<std::string>(heads.size(), "---"));
}

std::string LinkTo(const Node& node) {
  return "[" + (node.words.empty() ? std::string("the shell") : node.Name()) + "](" + node.id + ".md)";
}

// The anchor that a heading with this text has.
std::string AnchorOf(const std::string& heading) {
  std::string anchor;
  for (const char letter : heading) {
    if (letter >= 'A' && letter <= 'Z') {
      anchor += static_cast<char>(letter - 'A' + 'a');
    } else if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '-' ||
               letter == '_') {
      anchor += letter;
    } else if (letter == ' ') {
      anchor += '-';
    }
  }
  return anchor;
}

std::string Paragraphs(const std::string& text) {
  std::string out;
  for (const Block& block : BlocksOf(text)) {
    out += block.literal ? "```\n" + block.text + "\n```\n\n" : Escaped(block.text) + "\n\n";
  }
  return out;
}

std::string ArgumentsTable(const Command& command) {
  if (command.arguments.empty()) return {};
  std::string out = TableHead({"Argument", "Values", "Meaning"});
  for (const Argument& argument : command.arguments) {
    const std::string optional = argument.optional ? " May be left out." : "";
    out += Row({Code(argument.shown), Cell(ValuesText(argument.values)), Cell(argument.about + optional)});
  }
  return out + "\n";
}

std::string OptionsTable(const Command& command) {
  if (command.options.empty()) return {};
  std::string out = TableHead({"Option", "Values", "Without it", "Adapters", "Meaning"});
  for (const Option& option : command.options) {
    const auto& families = option.families.empty() ? command.families : option.families;
    out += Row({Code(option.long_name) + ", " + Code(option.short_name), Cell(ValuesText(option.values)),
                Cell(option.default_text), Cell(FamiliesText(families)), Cell(option.about)});
  }
  return out + "\n";
}

void AddFields(std::string& out, const std::vector<Field>& fields, const std::string& above) {
  for (const Field& field : fields) {
    const std::string name = above + field.name;
    const std::string about = Cell(field.about + (field.in_failures ? "" : " Absent after a failure."));
    if (field.list_structure.empty()) {
      out += Row({Code(name), field.type, about, Cell(field.unit), Cell(field.source)});
    } else {
      out += Row({Code(name), "list of " + Code(field.list_structure), about, "", Cell(field.source)});
      AddFields(out, field.fields, name + " / ");
    }
  }
}

void AddReport(std::string& out, const std::vector<ReportLine>& lines) {
  if (lines.empty()) return;
  out += "The lines of the report:\n\n" + TableHead({"Line", "Meaning", "Unit", "Source", "When"});
  for (const ReportLine& line : lines) {
    const std::string label = line.is_section ? "**" + Escaped(line.label) + "**" : Code(line.label);
    out += Row({label, Cell(line.about), Cell(line.unit), Cell(line.is_section ? "" : line.source),
                Cell(line.when)});
  }
  out += "\n";
}

std::string DocumentText(const Command& command) {
  const Document& document = *command.document;
  std::string out = document.is_list
                        ? "Its document is a list of " + Code(document.structure) + " without a message.\n\n"
                        : "Its document is one " + Code(document.structure) + ".\n\n";
  out += TableHead({"Field", "Type", "Meaning", "Unit", "Source"});
  AddFields(out, FieldsOf(command), "");
  out += "\n";
  if (command.reboot_place == RebootPlace::kAfterMessage) {
    out += "After a failure `Reboot Required` comes ahead of `Message`.\n\n";
  }
  AddReport(out, document.report);
  return out;
}

// Documents that several commands share are shown once.
bool IsSame(const Document& a, const Document& b) {
  return a.place.line == b.place.line && a.place.file == b.place.file;
}

std::string CommandText(const Node& node, const Command& command, const Command* shown_before) {
  const bool is_root = node.words.empty();
  std::string out = "## " + command.word + "\n\n";
  const std::string arguments = ArgumentsShown(command);
  const std::string end = arguments.empty() ? "\n" : " " + arguments + "\n";
  out += "```\n" + (is_root ? command.word : CommandLine(node, command.word)) + end;
  if (!is_root) out += CommandLine(node, command.text_word) + end;
  out += "```\n\n" + Paragraphs(command.does);
  if (!command.warning.empty()) out += "> **Warning:** " + Escaped(command.warning) + "\n\n";
  out += ArgumentsTable(command) + OptionsTable(command);
  if (!is_root) {
    out += "- Reads: " + Escaped(command.reads) + "\n- Changes: " + Escaped(command.changes) +
           "\n- Reboot: " + Escaped(command.reboot) + "\n- Adapters: " + FamiliesText(command.families) +
           "\n- Since: " + command.since + "\n\n";
  }
  if (shown_before != nullptr) {
    out += "Its document is that of [" + shown_before->word + "](#" + AnchorOf(shown_before->word) + ")";
    const bool has_reboot = command.reboot_place != RebootPlace::kNone;
    const bool before = command.reboot_place == RebootPlace::kBeforeMessage;
    const bool always_after = command.reboot_place == RebootPlace::kAlwaysAfterMessage;
    if (has_reboot) {
      out += ", with `Reboot Required` (" + command.reboot_type + ") " + (before ? "ahead of" : "after") +
             " `Message`";
      if (!before && !always_after) out += "; after a failure ahead of it";
    }
    out += ".\n\n";
  } else if (command.document.has_value()) {
    out += DocumentText(command);
  }
  if (!command.example_text.empty()) {
    out += "Example" + (command.example_about.empty() ? std::string() : ": " + command.example_about) +
           "\n\n```\n";
    for (const std::string& line : LinesOf(command.example_text)) out += line + "\n";
    out += "```\n\n";
  }
  return out;
}

const Command* ShownBefore(const Node& node, const Command& command) {
  for (const Command& other : node.commands) {
    if (&other == &command) break;
    const bool both = other.document.has_value() && command.document.has_value();
    if (both && IsSame(*other.document, *command.document)) return &other;
  }
  return nullptr;
}

std::string StatusesText(const Node& node) {
  if (node.statuses.empty()) return {};
  std::string out = "## Messages\n\n" + TableHead({"Message", "Commands", "Usual cause", "What to do"});
  for (const NodeStatus& status : node.statuses) {
    const std::string commands = status.commands.empty() ? "all" : Join(status.commands, ", ");
    out += Row({"[" + Cell(status.message) + "](messages.md#" + AnchorOf(status.message) + ")", commands,
                Cell(status.cause), Cell(status.action)});
  }
  return out + "\n";
}

std::string NodePage(const Reference& reference, const Node& node) {
  const std::string name = node.words.empty() ? "The shell" : Join(node.words, " ");
  std::string out = "# " + name + "\n\n" + kGenerated;
  out += Escaped(Capital(node.title)) + ".\n\n" + Paragraphs(node.about);
  out += "Adapters: " + FamiliesText(node.families) + ".\n\n";
  for (const Command& command : node.commands) out += CommandText(node, command, ShownBefore(node, command));
  out += StatusesText(node);
  std::vector<std::string> links;
  for (const std::string& id : node.see) {
    for (const Node& other : reference.nodes) {
      if (other.id == id) links.push_back(LinkTo(other));
    }
  }
  links.emplace_back("[all commands](README.md)");
  return out + "See also: " + Join(links, ", ") + "\n";
}

std::string IndexPage(const Reference& reference) {
  std::string out = "# Commands\n\n";
  out += kGenerated;
  out += "[By task](#by-task), [by node](#by-node), [by message](messages.md). ";
  out += "What all commands share is at the [end](#what-all-commands-share).\n\n";
  out += "## By task\n\n" + TableHead({"Task", "Node"});
  for (const Task& task : TasksOf(reference)) out += Row({Cell(task.text), LinkTo(*task.node)});
  out += "\n## By node\n\n" + TableHead({"Node", "What it is about", "Commands"});
  for (const Node& node : reference.nodes) {
    std::vector<std::string> words;
    for (const Command& command : node.commands) words.push_back(Code(command.word));
    out += Row({LinkTo(node), Cell(node.title), Join(words, ", ")});
  }
  out += "\n## What all commands share\n\n";
  const Page* const page = PageNamed(reference, "zfcesxcli");
  if (page == nullptr) return out;
  for (const Page::Part& part : page->parts) {
    out += "### " + part.heading + "\n\n" + Paragraphs(part.text);
    for (const auto& [term, text] : part.items) out += "- " + Code(term) + ": " + Escaped(text) + "\n";
    if (!part.items.empty()) out += "\n";
  }
  out.pop_back();
  return out;
}

std::string MessagesPage(const Reference& reference) {
  std::string out = "# Messages\n\n";
  out += kGenerated;
  out +=
      "Every message that is not \"Success\", its usual cause, and what to do. Where a node means something "
      "of its "
      "own by a message, its page says so.\n\n";
  for (const MessageUse& use : MessagesOf(reference)) {
    out += "## " + use.message + "\n\n";
    out += "Cause: " + Escaped(use.status->cause) + "\n\nWhat to do: " + Escaped(use.status->action) + "\n\n";
    std::vector<std::string> links;
    for (const Node* const node : use.nodes) links.push_back(LinkTo(*node));
    out += "Given by: " + Join(links, ", ") + "\n\n";
  }
  out.pop_back();
  return out;
}

}  // namespace

std::map<std::string, std::string> MarkdownPages(const Reference& reference) {
  std::map<std::string, std::string> pages;
  for (const Node& node : reference.nodes) pages[node.id + ".md"] = NodePage(reference, node);
  pages["README.md"] = IndexPage(reference);
  pages["messages.md"] = MessagesPage(reference);
  return pages;
}

}  // namespace reference
