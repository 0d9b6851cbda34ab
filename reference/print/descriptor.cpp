#include "reference/print/descriptor.h"

#include <set>

#include "reference/print/text.h"

namespace reference {
namespace {

constexpr const char* kProgram = "/opt/ZunaFcEsxcliPlugin/bin/zfcesxcli";
constexpr const char* kRoot = "zfcesxcli";

// Ends a value in the line that the shell runs.
constexpr const char* kEndOfValue = "end-of-the-value-for-zfcesxcli";

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += letter;
    }
  }
  return out;
}

std::string Indent(std::size_t depth) {
  std::string blanks(2 * depth, ' ');
  return blanks;
}

std::string Element(std::size_t depth, const std::string& name, const std::string& text) {
  return Indent(depth) + "<" + name + ">" + Escaped(text) + "</" + name + ">\n";
}

std::string PathOf(const Node& node) {
  std::string path = kRoot;
  for (std::size_t i = 1; i < node.words.size(); i += 2) path += "." + node.words[i];
  return path;
}

// A letter of the name that no other parameter has, small or else capital; else any.
std::string FreeLetter(const std::string& name, const std::set<std::string>& taken) {
  for (const bool capital : {false, true}) {
    for (const char letter : name) {
      if (letter < 'a' || letter > 'z') continue;
      std::string candidate(1, capital ? static_cast<char>(letter - 'a' + 'A') : letter);
      if (!taken.contains(candidate)) return candidate;
    }
  }
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    std::string candidate(1, letter);
    if (!taken.contains(candidate)) return candidate;
  }
  return {};
}

std::string TypeOf(const ValueRule& values) {
  return values.type == "number" && values.choices.empty() ? "int" : "string";
}

// A flag has the words that the program takes, so that nothing depends on how the shell spells a bool.
std::vector<std::string> ConstantsOf(const ValueRule& values) {
  if (values.type == "bool") return {"true", "false"};
  return values.choices;
}

std::string AboutOf(const std::string& about, const ValueRule& values, const std::string& default_text,
                    const std::vector<std::string>& families) {
  std::string text = Sentence(about);
  if (values.choices.empty() && values.least.has_value()) text += " Values: " + ValuesText(values) + ".";
  if (!default_text.empty()) text += " Without it: " + default_text + ".";
  if (!families.empty()) text += " Adapters: " + FamiliesText(families) + ".";
  return Plain(text);
}

// The value as one word for the shell, whatever bytes it has. A value that the shell has compared with a
// list, or a number, needs single quotes alone. Any other may hold single quotes itself, so it is the text of
// a here-document: nothing in it has a meaning but the line that ends it.
std::string ValueText(const Parameter& parameter) {
  const std::string value = "$val{" + parameter.name + "}";
  if (!parameter.constants.empty() || parameter.type == "int") return "'" + value + "'";
  const std::string end = kEndOfValue;
  return "\"$(cat <<'" + end + "'\n" + value + "\n" + end + "\n)\"";
}

void AddStructure(std::string& out, std::size_t depth, const std::string& name,
                  const std::vector<Field>& fields);

void AddField(std::string& out, std::size_t depth, const Field& field) {
  out += Indent(depth) + "<field name=\"" + Escaped(field.name) + "\">";
  if (field.list_structure.empty()) {
    out += "<" + field.type + "/></field>\n";
    return;
  }
  out += "\n" + Indent(depth + 1) + "<list type=\"structure\">\n";
  AddStructure(out, depth + 2, field.list_structure, field.fields);
  out += Indent(depth + 1) + "</list>\n" + Indent(depth) + "</field>\n";
}

void AddStructure(std::string& out, std::size_t depth, const std::string& name,
                  const std::vector<Field>& fields) {
  out += Indent(depth) + "<structure typeName=\"" + Escaped(name) + "\">\n";
  for (const Field& field : fields) AddField(out, depth + 1, field);
  out += Indent(depth) + "</structure>\n";
}

std::string OutputSpec(const Command& command) {
  const Document& document = *command.document;
  std::string out = Indent(3) + "<output-spec>\n";
  if (document.is_list) {
    out += Indent(4) + "<list type=\"structure\">\n";
    AddStructure(out, 5, document.structure, document.fields);
    out += Indent(4) + "</list>\n";
  } else {
    AddStructure(out, 4, document.structure, FieldsOf(command));
  }
  return out + Indent(3) + "</output-spec>\n";
}

std::string InputSpec(const Command& command) {
  std::string out = Indent(3) + "<input-spec>\n";
  for (const Parameter& parameter : ParametersOf(command)) {
    out += Indent(4) + "<parameter name=\"" + parameter.name + "\" shortname=\"" + parameter.short_name +
           "\" type=\"" + parameter.type + "\" required=\"" + (parameter.required ? "true" : "false") +
           "\">\n";
    out += Element(5, "description", parameter.about);
    for (const std::string& constant : parameter.constants) out += Element(5, "constant", constant);
    out += Indent(4) + "</parameter>\n";
  }
  return out + Indent(3) + "</input-spec>\n";
}

// A list of structures reads best as a table, a report as it is, and fields as a list of names and values.
std::string FormatParameters(const Command& command) {
  const Document& document = *command.document;
  std::string out = Indent(3) + "<format-parameters>\n";
  if (document.is_list) {
    std::vector<std::string> columns;
    for (const Field& field : document.fields) columns.push_back(field.name);
    out += Element(4, "formatter", "table") + Element(4, "table-columns", Join(columns, ","));
  } else {
    out += Element(4, "formatter", document.report.empty() ? "list" : "simple");
  }
  return out + Indent(3) + "</format-parameters>\n";
}

std::string CommandText(const Node& node, const Command& command) {
  std::string about = Plain(command.does);
  if (!command.warning.empty()) about += " WARNING: " + Plain(command.warning);
  std::string out = Indent(2) + "<command path=\"" + PathOf(node) + "." + command.word + "\">\n";
  out += Element(3, "description", about);
  out += InputSpec(command) + OutputSpec(command) + FormatParameters(command);
  return out + Element(3, "execute", ExecuteText(node, command)) + Indent(2) + "</command>\n";
}

}  // namespace

std::vector<Parameter> ParametersOf(const Command& command) {
  std::set<std::string> taken;
  for (const Option& option : command.options) taken.insert(option.short_name.substr(1));
  std::vector<Parameter> parameters;
  for (const Argument& argument : command.arguments) {
    Parameter parameter = {argument.name,
                           FreeLetter(argument.name, taken),
                           TypeOf(argument.values),
                           !argument.optional,
                           AboutOf(argument.about, argument.values, "", {}),
                           ConstantsOf(argument.values),
                           ""};
    taken.insert(parameter.short_name);
    parameters.push_back(parameter);
  }
  for (const Option& option : command.options) {
    parameters.push_back({option.long_name.substr(2), option.short_name.substr(1), TypeOf(option.values),
                          false, AboutOf(option.about, option.values, option.default_text, option.families),
                          ConstantsOf(option.values), option.long_name});
  }
  return parameters;
}

std::string ExecuteText(const Node& node, const Command& command) {
  std::string line = std::string(kProgram) + " " + Join(node.words, " ") + " " + command.word;
  for (const Parameter& parameter : ParametersOf(command)) {
    const std::string text = (parameter.option.empty() ? "" : parameter.option + " ") + ValueText(parameter);
    line += parameter.required ? " " + text : "$if{" + parameter.name + ", " + text + "}";
  }
  return line;
}

std::string DescriptorText(const Reference& reference) {
  std::string out = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
  out += "<plugin xmlns=\"http://www.vmware.com/Products/ESX/5.0/esxcli/\">\n";
  const Page* const page = PageNamed(reference, "zfcesxcli");
  out += Element(1, "version", reference.version) + Indent(1) + "<namespaces>\n";
  for (const Node& node : reference.nodes) {
    const std::string title = node.words.empty() && page != nullptr ? page->title : node.title;
    out += Indent(2) + "<namespace path=\"" + PathOf(node) + "\">\n";
    out += Element(3, "description", Capital(title) + ".") + Indent(2) + "</namespace>\n";
  }
  out += Indent(1) + "</namespaces>\n" + Indent(1) + "<commands>\n";
  for (const Node& node : reference.nodes) {
    for (const Command& command : node.commands) {
      if (command.document.has_value()) out += CommandText(node, command);
    }
  }
  return out + Indent(1) + "</commands>\n</plugin>\n";
}

}  // namespace reference
