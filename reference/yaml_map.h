// Reading a mapping of a YAML file key by key: what is of the wrong kind, missing or not known is a mistake.
#pragma once

#include <yaml-cpp/yaml.h>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "reference/mistakes.h"

namespace reference {

class YamlMap {
 public:
  // `node` that is no mapping is a mistake, and reads as an empty one.
  YamlMap(std::string file, const YAML::Node& node, Mistakes& mistakes);
  // Every key that was not asked for is a mistake.
  ~YamlMap();
  YamlMap(const YamlMap&) = delete;
  YamlMap& operator=(const YamlMap&) = delete;

  FilePlace Place() const { return PlaceOf(node_); }
  FilePlace PlaceOf(const YAML::Node& node) const;
  const std::string& File() const { return file_; }
  Mistakes& Errors() const { return mistakes_; }

  // An undefined node without the key.
  YAML::Node Get(const std::string& key);
  bool Has(const std::string& key) const;

  // Texts lose the line end that a folded one has.
  std::optional<std::string> MaybeText(const std::string& key);
  std::string Text(const std::string& key, const std::string& without = "");
  std::string NeededText(const std::string& key);
  bool Flag(const std::string& key, bool without);
  std::optional<std::uint32_t> MaybeNumber(const std::string& key);
  // A list of texts; a single text is a list of one.
  std::vector<std::string> Texts(const std::string& key);

  void Wrong(const std::string& key, const std::string& what);

 private:
  std::string file_;
  YAML::Node node_;
  Mistakes& mistakes_;
  std::set<std::string> asked_;
};

// The number that the whole text is; nothing for any other text.
std::optional<std::uint32_t> NumberOf(const std::string& text);

// The text of a scalar without line ends at its end; empty for any other node.
std::string ScalarText(const YAML::Node& node);

// The entries of a mapping in the order of the file.
std::vector<std::pair<std::string, YAML::Node>> EntriesOf(const YAML::Node& node);

}  // namespace reference
