#include "reference/print/readme.h"

#include <cstddef>

#include "reference/print/text.h"

namespace reference {
namespace {

constexpr std::size_t kWidth = 80;

class Readme {
 public:
  std::string Take() { return std::move(text_); }

  void Title(const std::string& title, char rule) {
    text_ += "\n\n" + title + "\n" + std::string(title.size(), rule) + "\n";
  }

  void Paragraph(const std::string& text, std::size_t indent) {
    for (const Block& block : BlocksOf(text)) {
      text_ += "\n";
      if (block.literal) {
        Lines(block.text, indent + 4);
      } else {
        Line(Plain(block.text), indent);
      }
    }
  }

  // A line, wrapped; the further ones begin under the first.
  void Line(const std::string& text, std::size_t indent) {
    text_ += std::string(indent, ' ') + Wrapped(text, kWidth, indent, indent) + "\n";
  }

  // "Reads:    ..." with the text in a column of its own.
  void Entry(const std::string& term, const std::string& text, std::size_t indent, std::size_t column) {
    std::string line = std::string(indent, ' ') + term;
    if (line.size() + 2 > column) {
      text_ += line + "\n";
      line.clear();
    }
    line.resize(column, ' ');
    text_ += line + Wrapped(Plain(text), kWidth, column, column) + "\n";
  }

  void Lines(const std::string& lines, std::size_t indent) {
    for (const std::string& line : LinesOf(lines)) {
      text_ += line.empty() ? "\n" : std::string(indent, ' ') + line + "\n";
    }
  }

  void Gap() { text_ += "\n"; }

 private:
  std::string text_;
};

std::string WithValues(const std::string& about, const ValueRule& values, const std::string& default_text,
                       const std::vector<std::string>& families) {
  std::string text = Sentence(about);
  if (const std::string shown = ValuesText(values); !shown.empty()) text += " Values: " + shown + ".";
  if (!default_text.empty()) text += " Without it: " + default_text + ".";
  if (!families.empty()) text += " Adapters: " + FamiliesText(families) + ".";
  return text;
}

void PrintCommand(Readme& out, const Node& node, const Command& command) {
  constexpr std::size_t kIndent = 6;
  constexpr std::size_t kColumn = 20;
  const bool is_root = node.words.empty();
  std::string line = is_root ? command.word : Join(node.words, " ") + " " + command.word;
  if (const std::string arguments = ArgumentsShown(command); !arguments.empty()) line += " " + arguments;
  out.Gap();
  out.Line(line, 4);
  if (!is_root && command.text_word != command.word + "cli") {
    out.Entry("Text form:", command.text_word, kIndent, kColumn);
  }
  out.Line(Plain(command.does), kIndent);
  for (const Argument& argument : command.arguments) {
    out.Entry(argument.shown, WithValues(argument.about, argument.values, "", {}), kIndent, kColumn);
  }
  for (const Option& option : command.options) {
    out.Entry(option.long_name + ", " + option.short_name,
              WithValues(option.about, option.values, option.default_text, option.families), kIndent,
              kColumn);
  }
  if (is_root) return;
  if (command.families != node.families)
    out.Entry("Adapters:", FamiliesText(command.families), kIndent, kColumn);
  out.Entry("Reads:", command.reads, kIndent, kColumn);
  out.Entry("Changes:", command.changes, kIndent, kColumn);
  out.Entry("Reboot:", command.reboot, kIndent, kColumn);
  if (!command.warning.empty()) out.Entry("WARNING:", command.warning, kIndent, kColumn);
}

void PrintNode(Readme& out, const Node& node) {
  out.Title(node.words.empty() ? "The shell" : Join(node.words, " "), '-');
  out.Paragraph(Capital(node.title) + ". " + node.about, 0);
  if (!node.families.empty()) out.Paragraph("Adapters: " + FamiliesText(node.families) + ".", 0);
  for (const Command& command : node.commands) PrintCommand(out, node, command);
  if (node.statuses.empty()) return;
  out.Paragraph("Messages:", 4);
  for (const NodeStatus& status : node.statuses) {
    const std::string only = status.commands.empty() ? "" : " (" + Join(status.commands, ", ") + ")";
    out.Line(status.message + only, 6);
  }
}

void PrintPage(Readme& out, const Page& page) {
  for (const Page::Part& part : page.parts) {
    out.Title(part.heading, '=');
    out.Paragraph(part.text, 0);
    if (!part.items.empty()) out.Gap();
    for (const auto& [term, text] : part.items) out.Entry(term, text, 4, 20);
  }
}

}  // namespace

std::string ReadmeText(const Reference& reference) {
  Readme out;
  const Page* const page = PageNamed(reference, "zfcesxcli");
  const std::string title = "zfcesxcli: " + (page != nullptr ? page->title : std::string("the commands"));
  out.Lines(title + "\n" + std::string(title.size(), '=') + "\n", 0);
  if (page != nullptr) {
    for (const std::string& line : page->synopsis) out.Lines(line, 4);
    PrintPage(out, *page);
  }
  out.Title("Find it by task", '=');
  out.Gap();
  for (const Task& task : TasksOf(reference)) {
    const std::string words = task.node->words.empty() ? "the shell" : Join(task.node->words, " ");
    out.Entry(words, task.text, 4, 32);
  }
  out.Title("The commands", '=');
  for (const Node& node : reference.nodes) PrintNode(out, node);
  out.Title("Messages, their usual causes, and what to do", '=');
  for (const MessageUse& use : MessagesOf(reference)) {
    out.Gap();
    out.Line("\"" + use.message + "\"", 4);
    out.Line(Plain(use.status->cause), 6);
    out.Line(Plain(use.status->action), 6);
  }
  return out.Take();
}

}  // namespace reference
