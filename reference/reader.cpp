#include "reference/reader.h"

#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "reference/whole_file.h"
#include "reference/yaml_map.h"

namespace reference {
namespace {

constexpr const char* kFirstVersion = "1.9.0";

constexpr const char* kFamilies[] = {"aster", "birch", "cedar", "ginkgo", "fern",
                                     "elm",   "hazel", "iris",  "dahlia"};

class Reader {
 public:
  Reader(std::string folder, Mistakes& mistakes) : folder_(std::move(folder)), mistakes_(mistakes) {}

  Reference Read();

 private:
  YAML::Node Load(const std::string& file);

  void ReadKinds();
  void ReadStatuses();
  void ReadNode(const std::string& id);
  void ReadPage(const std::string& file);

  Command ReadCommand(const Node& node, const std::string& word, const std::string& file,
                      const YAML::Node& yaml);
  Document ReadDocument(const std::string& file, const YAML::Node& yaml);
  std::vector<Field> ReadFields(const std::string& file, const YAML::Node& yaml, const std::string& source);
  std::vector<ReportLine> ReadReport(const std::string& file, const YAML::Node& yaml,
                                     const std::string& source);
  Argument ReadArgument(const std::string& file, const YAML::Node& yaml);
  Option ReadOption(const std::string& file, const std::string& name, const YAML::Node& yaml);
  NodeStatus ReadStatus(const Node& node, const std::string& file, const YAML::Node& yaml);
  void ReadExample(const Node& node, Command& command);

  std::string folder_;
  Mistakes& mistakes_;
  Reference reference_;
  YAML::Node all_options_;  // of the node at hand, for commands that share them
};

FilePlace At(const std::string& file, const YAML::Node& node) {
  return {file, node.IsDefined() ? node.Mark().line + 1 : 0};
}

YAML::Node Reader::Load(const std::string& file) {
  try {
    return YAML::LoadFile(folder_ + "/" + file);
  } catch (const YAML::Exception& error) {
    mistakes_.Add({file, error.mark.line + 1}, error.msg);
  }
  return YAML::Node(YAML::NodeType::Map);
}

std::vector<std::string> ReadFamilies(YamlMap& map) {
  std::vector<std::string> families = map.Texts("families");
  for (const std::string& family : families) {
    if (std::find(std::begin(kFamilies), std::end(kFamilies), family) == std::end(kFamilies)) {
      map.Wrong("families", "no family \"" + family + "\"");
    }
  }
  return families;
}

void Reader::ReadKinds() {
  const std::string file = "arguments.yaml";
  const YAML::Node yaml = Load(file);
  for (const auto& [name, value] : EntriesOf(yaml)) {
    YamlMap map(file, value, mistakes_);
    ArgumentKind kind;
    kind.shown = map.NeededText("shown");
    kind.about = map.NeededText("about");
    kind.complete = map.Text("complete");
    kind.sample = map.Text("sample");
    reference_.kinds[name] = kind;
  }
}

void Reader::ReadStatuses() {
  const std::string file = "messages.yaml";
  const YAML::Node yaml = Load(file);
  for (const auto& [id, value] : EntriesOf(yaml)) {
    YamlMap map(file, value, mistakes_);
    StatusKind kind;
    kind.place = map.Place();
    kind.number = map.MaybeNumber("status").value_or(0);
    kind.message = map.Text("message");
    kind.cause = map.NeededText("cause");
    kind.action = map.NeededText("do");
    reference_.statuses[id] = kind;
  }
}

ValueRule ReadValues(YamlMap& map, const std::string& type) {
  ValueRule rule;
  rule.type = type;
  rule.choices = map.Texts("choices");
  rule.wrong = map.Text("wrong", rule.wrong);
  const std::vector<std::string> range = map.Texts("range");
  if (range.empty()) return rule;
  if (range.size() != 2) {
    map.Wrong("range", "two numbers are needed, as [0, 255]");
    return rule;
  }
  rule.least = NumberOf(range[0]);
  rule.most = NumberOf(range[1]);
  if (!rule.least.has_value() || !rule.most.has_value()) {
    map.Wrong("range", "two numbers are needed, as [0, 255]");
    return {};
  }
  rule.type = "number";
  return rule;
}

std::string Upper(std::string text) {
  for (char& letter : text) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return text;
}

Argument Reader::ReadArgument(const std::string& file, const YAML::Node& yaml) {
  Argument argument;
  argument.place = At(file, yaml);
  if (yaml.IsScalar()) {
    argument.name = ScalarText(yaml);
    argument.values.type = argument.name;
    const auto kind = reference_.kinds.find(argument.name);
    if (kind == reference_.kinds.end()) {
      mistakes_.Add(argument.place, "no kind of argument \"" + argument.name + "\" in arguments.yaml");
      return argument;
    }
    argument.shown = kind->second.shown;
    argument.about = kind->second.about;
    return argument;
  }
  YamlMap map(file, yaml, mistakes_);
  argument.name = map.NeededText("name");
  const std::string type = map.Text("type", "word");
  argument.values = ReadValues(map, type);
  argument.shown = map.Text("shown", Upper(argument.name));
  argument.optional = map.Flag("optional", false);
  argument.about = map.NeededText("about");
  return argument;
}

Option Reader::ReadOption(const std::string& file, const std::string& name, const YAML::Node& yaml) {
  YamlMap map(file, yaml, mistakes_);
  Option option;
  option.place = map.Place();
  option.long_name = name;
  option.short_name = map.NeededText("short");
  option.about = map.NeededText("about");
  option.default_text = map.Text("default");
  option.families = ReadFamilies(map);
  option.values = ReadValues(map, map.Text("type", "word"));
  if (name.substr(0, 2) != "--") map.Wrong("short", "the name of an option begins with \"--\"");
  return option;
}

std::vector<Field> Reader::ReadFields(const std::string& file, const YAML::Node& yaml,
                                      const std::string& source) {
  std::vector<Field> fields;
  if (!yaml.IsDefined()) return fields;
  for (const YAML::Node& item : yaml) {
    const auto entries = EntriesOf(item);
    if (entries.size() != 1) {
      mistakes_.Add(At(file, item), "a field is \"- Name: what it means\", or \"- Name: {about: ..., ...}\"");
      continue;
    }
    const auto& [name, value] = entries.front();
    Field field;
    field.name = name;
    field.source = source;
    if (value.IsScalar()) {
      field.about = ScalarText(value);
    } else {
      YamlMap map(file, value, mistakes_);
      field.type = map.Text("type", "string");
      if (field.type != "string" && field.type != "int" && field.type != "bool") {
        map.Wrong("type", "string, int or bool is needed");
      }
      field.list_structure = map.Text("list");
      field.about = field.list_structure.empty() ? map.NeededText("about") : map.Text("about");
      field.unit = map.Text("unit");
      field.source = map.Text("source", source);
      field.in_failures = map.Flag("in-failures", true);
      field.fields = ReadFields(file, map.Get("fields"), field.source);
    }
    fields.push_back(field);
  }
  return fields;
}

std::vector<ReportLine> Reader::ReadReport(const std::string& file, const YAML::Node& yaml,
                                           const std::string& source) {
  std::vector<ReportLine> lines;
  for (const YAML::Node& item : yaml) {
    const auto entries = EntriesOf(item);
    if (entries.empty()) {
      mistakes_.Add(At(file, item),
                    "a line is \"- Label: what it means\", or \"- Label: {about: ..., ...}\"");
      continue;
    }
    ReportLine line;
    line.source = source;
    if (entries.front().first == "section") {
      YamlMap map(file, item, mistakes_);
      line.is_section = true;
      line.label = map.NeededText("section");
      line.about = map.Text("about");
      line.when = map.Text("when");
      lines.push_back(line);
      const YAML::Node within = map.Get("lines");
      if (!within.IsDefined()) continue;
      const std::vector<ReportLine> held = ReadReport(file, within, map.Text("source", source));
      lines.insert(lines.end(), held.begin(), held.end());
      continue;
    }
    const auto& [label, value] = entries.front();
    line.label = label;
    if (value.IsScalar()) {
      line.about = ScalarText(value);
    } else {
      YamlMap map(file, value, mistakes_);
      line.about = map.NeededText("about");
      line.unit = map.Text("unit");
      line.source = map.Text("source", source);
      line.when = map.Text("when");
    }
    lines.push_back(line);
  }
  return lines;
}

Document Reader::ReadDocument(const std::string& file, const YAML::Node& yaml) {
  YamlMap map(file, yaml, mistakes_);
  Document document;
  document.place = map.Place();
  const std::string source = map.Text("source");
  const std::vector<std::string> frame = map.Texts("frame");
  const YAML::Node report = map.Get("report");
  if (report.IsDefined()) {
    if (frame.size() != 3 && frame.size() != 4) {
      map.Wrong("frame",
                "a report has [structure, field, structure of the list] and, where it is not Data, the name "
                "of the text's field");
      return document;
    }
    document.structure = frame[0];
    Field text;
    text.name = frame.size() == 4 ? frame[3] : "Data";
    text.about = "The report, as the lines below.";
    text.source = source;
    Field list;
    list.name = frame[1];
    list.list_structure = frame[2];
    list.about = "One structure with the report; none after a failure.";
    list.fields.push_back(text);
    document.fields.push_back(list);
    document.report = ReadReport(file, report, source);
    return document;
  }
  document.is_list = map.Has("list");
  document.structure = document.is_list ? map.NeededText("list") : map.NeededText("structure");
  document.message_field = map.Text("message-field", "Message");
  document.fields = ReadFields(file, map.Get("fields"), source);
  return document;
}

NodeStatus Reader::ReadStatus(const Node& node, const std::string& file, const YAML::Node& yaml) {
  NodeStatus status;
  status.place = At(file, yaml);
  const auto kind_of = [&](const std::string& id) {
    const auto found = reference_.statuses.find(id);
    if (found != reference_.statuses.end()) return found->second;
    mistakes_.Add(status.place, "no status \"" + id + "\" in messages.yaml");
    return StatusKind();
  };
  StatusKind kind;
  if (yaml.IsScalar()) {
    status.id = ScalarText(yaml);
    kind = kind_of(status.id);
    status.message = kind.message;
    status.cause = kind.cause;
    status.action = kind.action;
  } else {
    YamlMap map(file, yaml, mistakes_);
    status.id = map.NeededText("id");
    kind = kind_of(status.id);
    status.message = map.Text("message", kind.message);
    status.cause = map.Text("cause", kind.cause);
    status.action = map.Text("do", kind.action);
    status.commands = map.Texts("for");
  }
  status.number = kind.number;
  if (status.message.empty()) mistakes_.Add(status.place, status.id + ": message: missing");
  for (const std::string& word : status.commands) {
    const auto has_word = [&word](const Command& command) { return command.word == word; };
    if (std::none_of(node.commands.begin(), node.commands.end(), has_word)) {
      mistakes_.Add(status.place, "for: no command \"" + word + "\"");
    }
  }
  return status;
}

void Reader::ReadExample(const Node& node, Command& command) {
  if (command.example.empty()) return;
  const std::string file = "examples/" + node.id + "-" + command.word + ".txt";
  command.example_text = ReadWholeFile(folder_ + "/" + file);
  if (command.example_text.empty()) {
    mistakes_.Add(command.place, "no file " + file + ": reference/renew-examples " + node.id + " makes it");
  }
}

Command Reader::ReadCommand(const Node& node, const std::string& word, const std::string& file,
                            const YAML::Node& yaml) {
  YamlMap map(file, yaml, mistakes_);
  Command command;
  command.place = map.Place();
  command.word = word;
  command.text_word = map.Text("text-word", node.words.empty() ? word : word + "cli");
  command.help = map.NeededText("help");
  command.text_help = map.Text("text-help", command.help);
  command.usage = map.MaybeText("usage");
  command.does = map.NeededText("does");
  command.reads = map.Text("reads", "Nothing.");
  command.changes = map.Text("changes", "Nothing.");
  command.reboot = map.Text("reboot", "No.");
  command.warning = map.Text("warning");
  command.since = map.Text("since", node.since);
  command.families = ReadFamilies(map);
  if (command.families.empty()) command.families = node.families;
  for (const YAML::Node& item : map.Get("arguments")) command.arguments.push_back(ReadArgument(file, item));
  for (const auto& [name, value] : EntriesOf(map.Get("options"))) {
    command.options.push_back(ReadOption(file, name, value));
  }
  for (const auto& [name, value] : EntriesOf(map.Flag("node-options", false) ? all_options_ : YAML::Node())) {
    command.options.push_back(ReadOption(file, name, value));
  }
  const std::string place = map.Text("reboot-field", "absent");
  if (place == "after") {
    command.reboot_place = RebootPlace::kAfterMessage;
  } else if (place == "always-after") {
    command.reboot_place = RebootPlace::kAlwaysAfterMessage;
  } else if (place == "before") {
    command.reboot_place = RebootPlace::kBeforeMessage;
  } else if (place != "absent") {
    map.Wrong("reboot-field", "after, always-after, before or absent is needed");
  }
  command.reboot_type = map.Text("reboot-type", command.reboot_type);
  const YAML::Node document = map.Get("document");
  if (document.IsDefined() && document.IsMap()) command.document = ReadDocument(file, document);
  command.example = map.Texts("example");
  command.example_about = map.Text("example-about");
  ReadExample(node, command);
  return command;
}

std::vector<std::string> WordsOf(const std::string& text) {
  std::vector<std::string> words;
  std::size_t begin = 0;
  while ((begin = text.find_first_not_of(' ', begin)) != std::string::npos) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  return words;
}

void Reader::ReadNode(const std::string& id) {
  const std::string file = "nodes/" + id + ".yaml";
  const YAML::Node yaml = Load(file);
  YamlMap map(file, yaml, mistakes_);
  Node node;
  node.place = map.Place();
  node.id = id;
  node.words = WordsOf(map.Text("node"));
  const bool is_root = node.words.empty();
  node.node_class = is_root ? map.Text("class") : map.NeededText("class");
  node.help = is_root ? map.Text("help") : map.NeededText("help");
  node.help_head = is_root ? map.Text("help-head") : map.NeededText("help-head");
  node.help_leaf = map.Text("help-leaf", "list of available commands");
  node.title = map.NeededText("title");
  node.about = map.NeededText("about");
  node.since = map.Text("since", kFirstVersion);
  node.tasks = map.Texts("tasks");
  node.sources = map.Texts("sources");
  node.see = map.Texts("see");
  node.families = ReadFamilies(map);
  const YAML::Node options = map.Get("options");
  all_options_ = options.IsDefined() ? YAML::Clone(options) : YAML::Node(YAML::NodeType::Map);
  const YAML::Node document = map.Get("document");
  for (const auto& [word, value] : EntriesOf(map.Get("commands"))) {
    node.commands.push_back(ReadCommand(node, word, file, value));
    Command& command = node.commands.back();
    const YAML::Node own = value["document"];
    if (!command.document.has_value() && !own.IsDefined() && document.IsDefined()) {
      command.document = ReadDocument(file, document);
    }
  }
  for (const YAML::Node& item : map.Get("statuses")) node.statuses.push_back(ReadStatus(node, file, item));
  const std::string expected = is_root ? "root" : Join(WordsOf(node.Name()), "-");
  if (expected != id) mistakes_.Add(node.place, "the file of this node is nodes/" + expected + ".yaml");
  reference_.nodes.push_back(std::move(node));
}

void Reader::ReadPage(const std::string& file) {
  const YAML::Node yaml = Load(file);
  YamlMap map(file, yaml, mistakes_);
  Page page;
  page.place = map.Place();
  page.name = map.NeededText("name");
  page.section = static_cast<int>(map.MaybeNumber("section").value_or(1));
  page.title = map.NeededText("title");
  page.synopsis = map.Texts("synopsis");
  page.see = map.Texts("see");
  if (const auto date = map.MaybeText("date"); date.has_value()) reference_.date = *date;
  if (const auto version = map.MaybeText("version"); version.has_value()) reference_.version = *version;
  for (const YAML::Node& item : map.Get("parts")) {
    YamlMap part_map(file, item, mistakes_);
    Page::Part part;
    part.heading = part_map.NeededText("heading");
    part.text = part_map.Text("text");
    for (const YAML::Node& held : part_map.Get("items")) {
      for (const auto& [term, text] : EntriesOf(held)) part.items.emplace_back(term, ScalarText(text));
    }
    page.parts.push_back(part);
  }
  reference_.pages.push_back(page);
}

std::vector<std::string> FilesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".yaml") names.push_back(entry.path().stem());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// The root, then the nodes below each node of the top, in the order of the program's help.
std::size_t RankOf(const Node& node) {
  constexpr const char* kTop[] = {"adapter", "port", "target", "lun"};
  if (node.words.size() < 2) return 0;
  return 1 + static_cast<std::size_t>(std::find(std::begin(kTop), std::end(kTop), node.words[1]) -
                                      std::begin(kTop));
}

Reference Reader::Read() {
  reference_.folder = folder_;
  ReadKinds();
  ReadStatuses();
  for (const std::string& id : FilesIn(folder_ + "/nodes")) ReadNode(id);
  for (const std::string& name : FilesIn(folder_ + "/tools")) ReadPage("tools/" + name + ".yaml");
  std::stable_sort(reference_.nodes.begin(), reference_.nodes.end(),
                   [](const Node& a, const Node& b) { return RankOf(a) < RankOf(b); });
  return std::move(reference_);
}

}  // namespace

Reference ReadReference(const std::string& folder, Mistakes& mistakes) {
  return Reader(folder, mistakes).Read();
}

}  // namespace reference
