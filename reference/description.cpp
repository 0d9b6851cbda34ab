#include "reference/description.h"

#include <algorithm>

namespace reference {
namespace {

Field Plain(const std::string& name, const std::string& type, const std::string& about) {
  Field field;
  field.name = name;
  field.type = type;
  field.about = about;
  return field;
}

}  // namespace

std::string Join(const std::vector<std::string>& words, const std::string& between) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += between;
    text += word;
  }
  return text;
}

std::string Node::Name() const {
  std::vector<std::string> names;
  for (std::size_t i = 1; i < words.size(); i += 2) names.push_back(words[i]);
  return Join(names, " ");
}

std::vector<const NodeStatus*> StatusesOf(const Node& node, const Command& command) {
  std::vector<const NodeStatus*> found;
  for (const NodeStatus& status : node.statuses) {
    const auto& only = status.commands;
    if (only.empty() || std::find(only.begin(), only.end(), command.word) != only.end()) {
      found.push_back(&status);
    }
  }
  return found;
}

std::string CommandLine(const Node& node, const std::string& word) {
  std::string line = "zfcesxcli";
  for (const std::string& part : node.words) line += " " + part;
  return line + " " + word;
}

std::vector<Field> FieldsOf(const Command& command) {
  if (!command.document.has_value()) return {};
  const Document& document = *command.document;
  if (document.is_list) return document.fields;
  std::vector<Field> fields;
  if (!document.message_field.empty()) {
    fields.push_back(Plain(document.message_field, "string", "The outcome: \"Success\", or what failed."));
  }
  if (command.reboot_place != RebootPlace::kNone) {
    const bool first = command.reboot_place == RebootPlace::kBeforeMessage;
    fields.insert(first ? fields.begin() : fields.end(),
                  Plain("Reboot Required", command.reboot_type,
                        "Whether the change becomes effective only at the next restart of the host."));
  }
  fields.insert(fields.end(), document.fields.begin(), document.fields.end());
  return fields;
}

}  // namespace reference
