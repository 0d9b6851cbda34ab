#include "reference/print/man.h"

#include <algorithm>

#include "reference/print/text.h"

namespace reference {
namespace {

constexpr const char* kSystem = "zfcesxcli";

// A text as roff input: no byte of it is a request or an escape.
std::string Escaped(const std::string& text) {
  std::string out;
  for (const char letter : text) {
    if (letter == '\\') {
      out += "\\e";
    } else if (letter == '-') {
      out += "\\-";
    } else {
      out += letter;
    }
  }
  return out;
}

// A line of roff input, which must not begin with a dot or an apostrophe.
std::string Line(const std::string& text) {
  const bool is_request = !text.empty() && (text[0] == '.' || text[0] == '\'');
  return (is_request ? "\\&" : "") + text + "\n";
}

// Sentences on lines of their own, as mdoc wants them, with code words in bold.
std::string Sentences(const std::string& text) {
  std::string escaped;
  bool code = false;
  for (const char letter : Escaped(text)) {
    if (letter == '`') {
      escaped += code ? "\\fR" : "\\fB";
      code = !code;
    } else {
      escaped += letter;
    }
  }
  std::string out;
  std::size_t begin = 0;
  while (begin < escaped.size()) {
    const std::size_t stop = std::min(escaped.find(". ", begin), escaped.size());
    const std::size_t end = std::min(stop + 1, escaped.size());
    out += Line(escaped.substr(begin, end - begin));
    begin = std::min(end + 1, escaped.size());
  }
  return out;
}

// One argument of a macro.
std::string Quoted(const std::string& text) {
  return "\"" + Replaced(Escaped(text), "\"", "\\(dq") + "\"";
}

// The words of a heading.
std::string Head(const std::string& name, const std::string& text) {
  return "." + name + " " + Escaped(text) + "\n";
}

std::string Literal(const std::string& lines) {
  std::string out = ".Bd -literal\n";
  for (const std::string& line : LinesOf(lines)) out += line.empty() ? "\\&\n" : Line(Escaped(line));
  return out + ".Ed\n";
}

std::string Paragraphs(const std::string& text, bool first_has_break) {
  std::string out;
  bool needs_break = first_has_break;
  for (const Block& block : BlocksOf(text)) {
    if (!block.literal && needs_break) out += ".Pp\n";
    out += block.literal ? Literal(block.text) : Sentences(block.text);
    needs_break = true;
  }
  return out;
}

std::string Upper(std::string text) {
  for (char& letter : text) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return text;
}

std::string PageHead(const std::string& name, int section, const std::string& title,
                     const std::string& date) {
  std::string out = ".Dd " + date + "\n.Dt " + Upper(name) + " " + std::to_string(section) + "\n";
  out += std::string(".Os ") + kSystem + "\n.Sh NAME\n.Nm " + name + "\n.Nd " + Escaped(title) + "\n";
  return out;
}

std::string PageNameOf(const Node& node) {
  return "zfcesxcli-" + node.id;
}

// References in the order of their sections and names, a comma after each but the last.
std::string SeeAlso(std::vector<std::pair<int, std::string>> pages) {
  std::sort(pages.begin(), pages.end());
  pages.erase(std::unique(pages.begin(), pages.end()), pages.end());
  std::string out = ".Sh SEE ALSO\n";
  for (std::size_t i = 0; i < pages.size(); ++i) {
    out += ".Xr " + pages[i].second + " " + std::to_string(pages[i].first) +
           (i + 1 < pages.size() ? " ,\n" : "\n");
  }
  return out;
}

std::string Item(const std::string& term, const std::string& text) {
  return ".It " + Quoted(term) + "\n" + Sentences(text);
}

std::string ValuesSentence(const ValueRule& values) {
  const std::string shown = ValuesText(values);
  return shown.empty() ? "" : " Values: " + shown + ".";
}

std::string ArgumentsList(const Command& command) {
  if (command.arguments.empty() && command.options.empty()) return {};
  std::string out = ".Bl -tag -width Ds\n";
  for (const Argument& argument : command.arguments) {
    out += Item(argument.shown, Sentence(argument.about) + ValuesSentence(argument.values));
  }
  for (const Option& option : command.options) {
    std::string text = Sentence(option.about) + ValuesSentence(option.values);
    if (!option.default_text.empty()) text += " Without it: " + option.default_text + ".";
    if (!option.families.empty()) text += " Adapters: " + FamiliesText(option.families) + ".";
    out += Item(option.long_name + ", " + option.short_name, text);
  }
  return out + ".El\n";
}

void AddFields(std::string& out, const std::vector<Field>& fields) {
  out += ".Bl -tag -width Ds\n";
  for (const Field& field : fields) {
    std::string text = Sentence(field.about);
    if (!field.unit.empty()) text += " Unit: " + field.unit + ".";
    if (!field.list_structure.empty()) text = "List of " + field.list_structure + ". " + text;
    out += Item(field.name, text.empty() ? field.type : text);
    if (!field.fields.empty()) AddFields(out, field.fields);
  }
  out += ".El\n";
}

void AddReport(std::string& out, const std::vector<ReportLine>& lines) {
  if (lines.empty()) return;
  out += ".Pp\nThe lines of the report:\n.Bl -tag -width Ds\n";
  for (const ReportLine& line : lines) {
    std::string text = Sentence(line.about);
    if (!line.unit.empty()) text += " Unit: " + line.unit + ".";
    if (!line.source.empty() && !line.is_section) text += " Source: " + line.source + ".";
    if (!line.when.empty()) text += " Only if " + line.when + ".";
    if (text.empty()) text = "A section.";
    out += Item(line.label, text);
  }
  out += ".El\n";
}

// Documents that several commands share are described once.
const Command* DescribedBefore(const Node& node, const Command& command) {
  for (const Command& other : node.commands) {
    if (&other == &command) break;
    if (other.document.has_value() && command.document.has_value() &&
        other.document->place.line == command.document->place.line) {
      return &other;
    }
  }
  return nullptr;
}

std::string DocumentPart(const Node& node, const Command& command) {
  if (!command.document.has_value()) return {};
  if (const Command* const before = DescribedBefore(node, command); before != nullptr) {
    std::string text = "The document is that of `" + before->word + "`";
    if (command.reboot_place != RebootPlace::kNone) text += ", with `Reboot Required`";
    return ".Pp\n" + Sentences(text + ".");
  }
  std::string out = ".Pp\n";
  const std::string& structure = command.document->structure;
  out += Sentences(command.document->is_list ? "The document is a list of `" + structure + "`."
                                             : "The document is one `" + structure + "`.");
  AddFields(out, FieldsOf(command));
  AddReport(out, command.document->report);
  return out;
}

std::string CommandPart(const Node& node, const Command& command) {
  const bool is_root = node.words.empty();
  std::string out = Head("Ss", command.word) + Paragraphs(command.does, false);
  out += ArgumentsList(command);
  if (is_root) return out;
  std::string facts = "Text form: `" + command.text_word + "`. Reads: " + command.reads;
  facts += " Changes: " + command.changes + " Reboot: " + command.reboot;
  if (command.families != node.families) facts += " Adapters: " + FamiliesText(command.families) + ".";
  out += ".Pp\n" + Sentences(facts);
  if (!command.warning.empty()) out += ".Pp\n" + Sentences("Warning: " + command.warning);
  return out + DocumentPart(node, command);
}

std::string Synopsis(const Node& node) {
  std::string out = ".Sh SYNOPSIS\n";
  for (const Command& command : node.commands) {
    std::string line = node.words.empty() ? command.word : Join(node.words, " ") + " " + command.word;
    if (const std::string arguments = ArgumentsShown(command); !arguments.empty()) line += " " + arguments;
    out += ".Nm zfcesxcli\n" + Line(Escaped(line));
    if (&command != &node.commands.back()) out += ".Pp\n";
  }
  return out;
}

std::string Examples(const Node& node) {
  std::string out;
  for (const Command& command : node.commands) {
    if (!command.example_text.empty()) out += Literal(command.example_text);
  }
  return out.empty() ? "" : ".Sh EXAMPLES\nOn the built\\-in lab host:\n" + out;
}

std::string Diagnostics(const Node& node) {
  if (node.statuses.empty()) return {};
  std::string out = ".Sh DIAGNOSTICS\n.Bl -tag -width Ds\n";
  for (const NodeStatus& status : node.statuses) {
    const std::string only = status.commands.empty() ? "" : " (" + Join(status.commands, ", ") + ")";
    out += Item(status.message + only, status.cause + " " + status.action);
  }
  return out + ".El\n";
}

std::string NodePage(const Reference& reference, const Node& node, const std::string& date) {
  std::string out = PageHead(PageNameOf(node), 1, node.title, date) + Synopsis(node);
  out += ".Sh DESCRIPTION\n" + Paragraphs(node.about, false);
  out += ".Pp\n" + Sentences("Adapters: " + FamiliesText(node.families) + ".");
  out += ".Sh COMMANDS\n";
  for (const Command& command : node.commands) out += CommandPart(node, command);
  out += Examples(node) + Diagnostics(node);
  std::vector<std::pair<int, std::string>> pages = {{1, "zfcesxcli"}};
  for (const Node& other : reference.nodes) {
    if (std::find(node.see.begin(), node.see.end(), other.id) != node.see.end()) {
      pages.emplace_back(1, PageNameOf(other));
    }
  }
  return out + SeeAlso(pages);
}

std::string SynopsisOf(const Page& page) {
  std::string out;
  for (const std::string& line : page.synopsis) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    out += out.empty() ? ".Sh SYNOPSIS\n" : ".Pp\n";
    out += ".Nm " + line.substr(0, blank) + "\n";
    if (blank < line.size()) out += Line(Escaped(line.substr(blank + 1)));
  }
  return out;
}

std::string PartOf(const Page::Part& part) {
  std::string out = Head("Sh", Upper(part.heading)) + Paragraphs(part.text, false);
  if (part.items.empty()) return out;
  out += ".Bl -tag -width Ds\n";
  for (const auto& [term, text] : part.items) out += Item(term, text);
  return out + ".El\n";
}

std::string NodesPart(const Reference& reference) {
  std::string out = ".Sh COMMANDS\n.Bl -tag -width Ds\n";
  for (const Node& node : reference.nodes) {
    out += ".It Xr " + PageNameOf(node) + " 1\n" + Sentences(Capital(node.title) + ".");
  }
  return out + ".El\n";
}

// "zfc-lab(1)" as section and name.
std::pair<int, std::string> ReferenceTo(const std::string& text) {
  const std::size_t bracket = std::min(text.find('('), text.size());
  const bool has_section = bracket + 1 < text.size() && text[bracket + 1] >= '1' && text[bracket + 1] <= '9';
  return {has_section ? text[bracket + 1] - '0' : 1, text.substr(0, bracket)};
}

// The sections that come after those of a page's own, in the order that readers expect.
bool ComesLate(const Page::Part& part) {
  const std::string heading = Upper(part.heading);
  return heading == "EXIT STATUS" || heading == "EXAMPLES" || heading == "ENVIRONMENT" || heading == "FILES";
}

int RankOf(const Page::Part& part) {
  const std::vector<std::string> order = {"ENVIRONMENT", "FILES", "EXIT STATUS", "EXAMPLES"};
  const auto place = std::find(order.begin(), order.end(), Upper(part.heading));
  return place == order.end() ? -1 : static_cast<int>(place - order.begin());
}

std::string PageText(const Reference& reference, const Page& page, const std::string& date) {
  std::string out = PageHead(page.name, page.section, page.title, date) + SynopsisOf(page);
  std::vector<Page::Part> parts = page.parts;
  std::stable_sort(parts.begin(), parts.end(),
                   [](const Page::Part& a, const Page::Part& b) { return RankOf(a) < RankOf(b); });
  const bool is_program = page.name == "zfcesxcli";
  bool nodes_done = !is_program;
  for (const Page::Part& part : parts) {
    if (ComesLate(part) && !nodes_done) {
      out += NodesPart(reference);
      nodes_done = true;
    }
    out += PartOf(part);
  }
  if (!nodes_done) out += NodesPart(reference);
  std::vector<std::pair<int, std::string>> pages;
  for (const std::string& name : page.see) pages.push_back(ReferenceTo(name));
  return pages.empty() ? out : out + SeeAlso(pages);
}

}  // namespace

std::map<std::string, std::string> ManPages(const Reference& reference) {
  std::map<std::string, std::string> pages;
  for (const Node& node : reference.nodes) {
    pages["man1/" + PageNameOf(node) + ".1"] = NodePage(reference, node, reference.date);
  }
  for (const Page& page : reference.pages) {
    const std::string section = std::to_string(page.section);
    pages["man" + section + "/" + page.name + "." + section] = PageText(reference, page, reference.date);
  }
  return pages;
}

}  // namespace reference
