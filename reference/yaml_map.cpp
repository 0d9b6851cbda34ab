#include "reference/yaml_map.h"

#include <charconv>

namespace reference {

std::string ScalarText(const YAML::Node& node) {
  if (!node.IsDefined() || !node.IsScalar()) return {};
  std::string text = node.Scalar();
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

std::optional<std::uint32_t> NumberOf(const std::string& text) {
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::vector<std::pair<std::string, YAML::Node>> EntriesOf(const YAML::Node& node) {
  std::vector<std::pair<std::string, YAML::Node>> entries;
  if (!node.IsDefined() || !node.IsMap()) return entries;
  for (const auto& entry : node) entries.emplace_back(ScalarText(entry.first), entry.second);
  return entries;
}

YamlMap::YamlMap(std::string file, const YAML::Node& node, Mistakes& mistakes)
    : file_(std::move(file)), node_(node.IsDefined() ? node : YAML::Node()), mistakes_(mistakes) {
  if (!node_.IsDefined() || !node_.IsMap()) {
    mistakes_.Add(PlaceOf(node_), "keys with values are needed here");
    node_ = YAML::Node(YAML::NodeType::Map);
  }
}

// Memory alone can run out here. NOLINTNEXTLINE(bugprone-exception-escape)
YamlMap::~YamlMap() {
  for (const auto& entry : node_) {
    const std::string key = ScalarText(entry.first);
    if (!asked_.contains(key)) mistakes_.Add(PlaceOf(entry.first), "unknown key \"" + key + "\"");
  }
}

FilePlace YamlMap::PlaceOf(const YAML::Node& node) const {
  return {file_, node.IsDefined() ? node.Mark().line + 1 : 0};
}

YAML::Node YamlMap::Get(const std::string& key) {
  asked_.insert(key);
  const YAML::Node& map = node_;  // the constant one makes no entry for the key
  return map[key];
}

bool YamlMap::Has(const std::string& key) const {
  const YAML::Node& map = node_;
  return map[key].IsDefined();
}

void YamlMap::Wrong(const std::string& key, const std::string& what) {
  const YAML::Node value = Get(key);
  mistakes_.Add(value.IsDefined() ? PlaceOf(value) : Place(), key + ": " + what);
}

std::optional<std::string> YamlMap::MaybeText(const std::string& key) {
  const YAML::Node value = Get(key);
  if (!value.IsDefined()) return std::nullopt;
  if (!value.IsScalar()) Wrong(key, "a text is needed");
  return ScalarText(value);
}

std::string YamlMap::Text(const std::string& key, const std::string& without) {
  return MaybeText(key).value_or(without);
}

std::string YamlMap::NeededText(const std::string& key) {
  std::string text = Text(key);
  if (text.empty()) Wrong(key, "missing");
  return text;
}

bool YamlMap::Flag(const std::string& key, bool without) {
  const std::optional<std::string> text = MaybeText(key);
  if (!text.has_value()) return without;
  if (*text != "true" && *text != "false") Wrong(key, "true or false is needed");
  return *text == "true";
}

std::optional<std::uint32_t> YamlMap::MaybeNumber(const std::string& key) {
  const std::optional<std::string> text = MaybeText(key);
  if (!text.has_value()) return std::nullopt;
  const std::optional<std::uint32_t> number = NumberOf(*text);
  if (!number.has_value()) Wrong(key, "a number is needed");
  return number;
}

std::vector<std::string> YamlMap::Texts(const std::string& key) {
  std::vector<std::string> texts;
  const YAML::Node value = Get(key);
  if (!value.IsDefined()) return texts;
  if (value.IsScalar()) {
    texts.push_back(ScalarText(value));
  } else if (value.IsSequence()) {
    for (const YAML::Node& item : value) {
      if (!item.IsScalar()) mistakes_.Add(PlaceOf(item), key + ": a text is needed");
      texts.push_back(ScalarText(item));
    }
  } else {
    Wrong(key, "a text or a list of texts is needed");
  }
  return texts;
}

}  // namespace reference
