#include "yaml/tree.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

#include "base/text.h"

namespace lab {
namespace {

// Ends the parser's work from within; the reason is among the mistakes.
struct EndOfReading {};

Place PlaceOf(const YAML::Mark& mark) {
  return {mark.line + 1, mark.column + 1};
}

std::string LineAndColumn(Place place) {
  return "line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
}

constexpr const char* kOpenQuotes = "the quotes that begin here have no end";

// Whether the text at this place of the file, if it is in quotes, has an end. The parser takes the end of the
// file for one.
bool IsClosed(std::string_view source, std::size_t at) {
  const char quote = at < source.size() ? source[at] : ' ';
  if (quote != '"' && quote != '\'') return true;
  for (++at; at < source.size(); ++at) {
    if (source[at] == quote) return true;
    if (source[at] == '\\' && quote == '"') ++at;
  }
  return false;
}

// Builds the tree from what the parser meets, and holds it to the limits on the way.
class TreeBuilder : public YAML::EventHandler {
 public:
  TreeBuilder(std::string_view source, std::deque<YamlNode>& nodes, YamlItem& root, const Limits& limits,
              Mistakes& mistakes)
      : source_(source), nodes_(nodes), root_(root), limits_(limits), mistakes_(mistakes) {
    nodes_.clear();
    nothing_ = &nodes_.emplace_back();
    root_ = {nothing_, {1, 1}};
  }

  // Where the innermost "[" or "{" that is open begins; line 0 when there is none.
  Place OpenBracket() const {
    return !open_.empty() && open_.back().in_brackets ? open_.back().place : Place{};
  }

  void OnDocumentStart(const YAML::Mark& mark) override {
    if (++documents_ > 1) Refuse(PlaceOf(mark), "a second document begins here; a file holds one");
  }
  void OnDocumentEnd() override {}
  void OnAnchor(const YAML::Mark&, const std::string&) override {}

  void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override {
    Remember(anchor, nothing_);
    Put({nothing_, PlaceOf(mark)});
  }

  void OnScalar(const YAML::Mark& mark, const std::string&, YAML::anchor_t anchor,
                const std::string& text) override {
    if (!IsClosed(source_, static_cast<std::size_t>(mark.pos))) Refuse(PlaceOf(mark), kOpenQuotes);
    YamlNode* const node = Make(YamlNode::Kind::kText, anchor);
    node->text = text;
    Put({node, PlaceOf(mark)});
  }

  void OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) override {
    const Place place = PlaceOf(mark);
    const YamlNode* const node = anchors_[anchor];
    if (!node->complete) Refuse(place, "an alias can't be inside what it names");
    if (open_.size() + node->levels > limits_.nesting) RefuseNesting(place);
    Put({node, place});
  }

  void OnSequenceStart(const YAML::Mark& mark, const std::string&, YAML::anchor_t anchor,
                       YAML::EmitterStyle::value style) override {
    Begin(YamlNode::Kind::kList, mark, anchor, style);
  }
  void OnSequenceEnd() override { End(); }
  void OnMapStart(const YAML::Mark& mark, const std::string&, YAML::anchor_t anchor,
                  YAML::EmitterStyle::value style) override {
    Begin(YamlNode::Kind::kMap, mark, anchor, style);
  }
  void OnMapEnd() override { End(); }

 private:
  // A list or a map that has begun.
  struct Open {
    YamlNode* node;
    Place place;
    bool in_brackets;
    bool has_key = false;   // of a map: the next value belongs to `key`
    bool keep_pair = true;  // false after a key that is a mistake
    YamlPair pair;
    std::set<std::string> keys;
    std::uint64_t values = 1;
  };

  [[noreturn]] void Refuse(Place place, std::string what) {
    mistakes_.Add(place, std::move(what));
    throw EndOfReading{};
  }
  [[noreturn]] void RefuseNesting(Place place) {
    Refuse(place, "nested deeper than " + std::to_string(limits_.nesting) + " levels");
  }

  void HoldToLimit(std::uint64_t values) {
    if (values <= limits_.values) return;
    Refuse({}, "more than " + std::to_string(limits_.values) + " values after its aliases are resolved");
  }

  void Remember(YAML::anchor_t anchor, const YamlNode* node) {
    if (anchor == YAML::NullAnchor) return;
    if (anchors_.size() <= anchor) anchors_.resize(anchor + 1, nothing_);
    anchors_[anchor] = node;
  }

  YamlNode* Make(YamlNode::Kind kind, YAML::anchor_t anchor) {
    HoldToLimit(nodes_.size());
    YamlNode* const node = &nodes_.emplace_back();
    node->kind = kind;
    Remember(anchor, node);
    return node;
  }

  void Begin(YamlNode::Kind kind, const YAML::Mark& mark, YAML::anchor_t anchor,
             YAML::EmitterStyle::value style) {
    const Place place = PlaceOf(mark);
    if (open_.size() >= limits_.nesting) RefuseNesting(place);
    YamlNode* const node = Make(kind, anchor);
    node->complete = false;
    node->levels = 1;
    open_.push_back({node, place, style == YAML::EmitterStyle::Flow, false, true, {}, {}, 1});
  }

  void End() {
    const Open done = std::move(open_.back());
    open_.pop_back();
    done.node->values = static_cast<std::uint32_t>(done.values);
    done.node->complete = true;
    Put({done.node, done.place});
  }

  // Adds a finished value to the list or map that it is in.
  void Put(YamlItem item) {
    if (open_.empty()) {
      root_ = item;
      return;
    }
    Open& parent = open_.back();
    if (parent.node->kind == YamlNode::Kind::kMap && !parent.has_key) return PutKey(parent, item);
    parent.values += item.node->values;
    HoldToLimit(parent.values);
    parent.node->levels = std::max(parent.node->levels, static_cast<std::uint16_t>(item.node->levels + 1));
    if (parent.node->kind == YamlNode::Kind::kList) {
      parent.node->items.push_back(item);
      return;
    }
    // The parser finds a value that is left out only at what follows it.
    if (item.node == nothing_) item.place = parent.pair.key_place;
    parent.pair.value = item;
    if (parent.keep_pair) parent.node->pairs.push_back(std::move(parent.pair));
    parent.has_key = false;
  }

  void PutKey(Open& map, const YamlItem& key) {
    map.has_key = true;
    map.keep_pair = key.node->kind == YamlNode::Kind::kText;
    map.pair = {key.node->text, key.place, {}};
    if (!map.keep_pair) {
      mistakes_.Add(key.place, "expected a word as key");
    } else if (!map.keys.insert(key.node->text).second) {
      mistakes_.Add(key.place, ShownText(key.node->text) + ": is here twice");
      map.keep_pair = false;
    }
  }

  std::string_view source_;
  std::deque<YamlNode>& nodes_;
  YamlItem& root_;
  const Limits& limits_;
  Mistakes& mistakes_;
  const YamlNode* nothing_;
  std::vector<Open> open_;
  std::vector<const YamlNode*> anchors_;  // by the parser's number
  int documents_ = 0;
};

// What is wrong, for each of the parser's reasons that a file can meet.
struct Reason {
  const char* parser;  // its message, or how that begins
  const char* words;
};

constexpr const char* kIndentation = "the indentation does not fit the lines above";

const Reason kReasons[] = {
    {YAML::ErrorMsg::END_OF_MAP, kIndentation},
    {YAML::ErrorMsg::END_OF_SEQ, kIndentation},
    {YAML::ErrorMsg::BLOCK_ENTRY,
     "a list item can't begin here; the indentation does not fit the lines above"},
    {YAML::ErrorMsg::MAP_KEY, "a key can't begin here; the indentation does not fit the lines above"},
    {YAML::ErrorMsg::MAP_VALUE,
     "a ':' can't be here; the indentation does not fit the lines above, or a text needs quotes"},
    {YAML::ErrorMsg::FLOW_END, "this bracket closes none that is open"},
    {YAML::ErrorMsg::TAB_IN_INDENTATION, "a tab can't indent; use blanks"},
    {YAML::ErrorMsg::EOF_IN_SCALAR, kOpenQuotes},
    {YAML::ErrorMsg::DOC_IN_SCALAR, "a text in quotes has no end ahead of the end of the document"},
    {YAML::ErrorMsg::CHAR_IN_SCALAR, "a text has a character that it can't have; put it in quotes"},
    {YAML::ErrorMsg::UNKNOWN_TOKEN, "a text can't begin with this character; put it in quotes"},
    {YAML::ErrorMsg::INVALID_ESCAPE, "an unknown escape after '\\' in double quotes"},
    {YAML::ErrorMsg::INVALID_HEX, "expected hexadecimal digits after '\\' in double quotes"},
    {YAML::ErrorMsg::INVALID_UNICODE, "an escape in double quotes is no character"},
    {YAML::ErrorMsg::ALIAS_NOT_FOUND, "expected a name after '*'; a text that begins with '*' needs quotes"},
    {YAML::ErrorMsg::CHAR_IN_ALIAS, "expected a name after '*'; a text that begins with '*' needs quotes"},
    {YAML::ErrorMsg::ANCHOR_NOT_FOUND, "expected a name after '&'; a text that begins with '&' needs quotes"},
    {YAML::ErrorMsg::CHAR_IN_ANCHOR, "expected a name after '&'; a text that begins with '&' needs quotes"},
    {YAML::ErrorMsg::ALIAS_CONTENT, "an alias takes no anchor and no tag"},
    {YAML::ErrorMsg::MULTIPLE_ANCHORS, "a value takes one anchor"},
    {YAML::ErrorMsg::MULTIPLE_ALIASES, "a value takes one alias"},
    {YAML::ErrorMsg::MULTIPLE_TAGS, "a value takes one tag"},
    {YAML::ErrorMsg::CHAR_IN_TAG_HANDLE, "a tag can't be read; a text that begins with '!' needs quotes"},
    {YAML::ErrorMsg::TAG_WITH_NO_SUFFIX, "a tag can't be read; a text that begins with '!' needs quotes"},
    {YAML::ErrorMsg::END_OF_VERBATIM_TAG, "a tag can't be read; a text that begins with '!' needs quotes"},
    {YAML::ErrorMsg::CHAR_IN_BLOCK, "expected the end of the line after '|' or '>'"},
    {YAML::ErrorMsg::ZERO_INDENT_IN_BLOCK, "expected an indentation of at least 1 after '|' or '>'"},
    {YAML::ErrorMsg::YAML_DIRECTIVE_ARGS, "expected '%YAML 1.2'"},
    {YAML::ErrorMsg::YAML_VERSION, "expected '%YAML 1.2'"},
    {YAML::ErrorMsg::YAML_MAJOR_VERSION, "expected '%YAML 1.2'"},
    {YAML::ErrorMsg::REPEATED_YAML_DIRECTIVE, "'%YAML' is here twice"},
    {YAML::ErrorMsg::TAG_DIRECTIVE_ARGS, "expected a handle and a prefix after '%TAG'"},
    {YAML::ErrorMsg::REPEATED_TAG_DIRECTIVE, "'%TAG' is here twice for one handle"},
};

// The line of the text at this number from 1.
std::string_view LineAt(std::string_view text, int number) {
  while (--number > 0) {
    const std::size_t stop = text.find('\n');
    if (stop == std::string_view::npos) return {};
    text.remove_prefix(stop + 1);
  }
  return text.substr(0, text.find('\n'));
}

// The column from 1 of a tab among the blanks that a line begins with; 0 when there is none.
int TabColumn(std::string_view line) {
  const std::size_t content = std::min(line.find_first_not_of(" \t\r"), line.size());
  const std::size_t tab = line.substr(0, content).find('\t');
  return content == line.size() || tab == std::string_view::npos ? 0 : static_cast<int>(tab) + 1;
}

// Adds the tabs that indent this line and those after it. Returns whether the first of them does.
bool AddTabs(std::string_view text, int line, Mistakes& mistakes) {
  if (TabColumn(LineAt(text, line)) == 0) return false;
  int number = 0;
  while (!text.empty()) {
    const std::size_t stop = std::min(text.find('\n'), text.size() - 1);
    const int column = ++number < line ? 0 : TabColumn(text.substr(0, stop + 1));
    if (column > 0) mistakes.Add({number, column}, "a tab can't indent; use blanks");
    text.remove_prefix(stop + 1);
  }
  return true;
}

// The name after the "*" of an alias at this place.
std::string AliasAt(std::string_view text, Place place) {
  const std::string_view line = LineAt(text, place.line);
  const auto start = static_cast<std::size_t>(place.column - 1);
  if (start >= line.size() || line[start] != '*') return {};
  return std::string(line.substr(start + 1, line.find_first_of(" \t\r,]}:", start) - start - 1));
}

void AddReason(const YAML::Exception& error, const std::string& text, Place bracket, Mistakes& mistakes) {
  const Place place = PlaceOf(error.mark);
  const std::string_view parser = error.msg;
  if (AddTabs(text, place.line, mistakes)) return;
  if (parser.starts_with(YAML::ErrorMsg::UNKNOWN_ANCHOR)) {
    const std::string name = ShownText(AliasAt(text, place));
    return mistakes.Add(place, "alias '*" + name + "': expected an anchor '&" + name + "' ahead of it");
  }
  const bool of_brackets =
      parser == YAML::ErrorMsg::END_OF_MAP_FLOW || parser == YAML::ErrorMsg::END_OF_SEQ_FLOW;
  if (of_brackets && bracket.line > 0) {
    return mistakes.Add(place,
                        "expected ',' or the end of the brackets that begin at " + LineAndColumn(bracket));
  }
  for (const Reason& reason : kReasons) {
    if (parser.starts_with(reason.parser)) return mistakes.Add(place, reason.words);
  }
  mistakes.Add(place, "this is no YAML");
}

// How many bytes the UTF-8 character at the front of the text has; 0 for bytes that are none (RFC 3629).
std::size_t CharacterBytes(std::string_view text) {
  const auto byte = [&](std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u;
  };
  const auto follows = [&](std::size_t at, unsigned low = 0x80, unsigned high = 0xBF) {
    return byte(at) >= low && byte(at) <= high;
  };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return follows(1) ? 2 : 0;
  if (first >= 0xE0 && first <= 0xEF) {
    const bool good = follows(1, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF);
    return good && follows(2) ? 3 : 0;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    const bool good = follows(1, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF);
    return good && follows(2) && follows(3) ? 4 : 0;
  }
  return 0;
}

// Adds the first place at which the file is no text. Returns whether it is one.
bool IsText(std::string_view text, Mistakes& mistakes) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    mistakes.Add({1, 1}, "expected UTF-8, got UTF-16 or UTF-32");
    return false;
  }
  Place place = {1, 1};
  while (!text.empty()) {
    const std::size_t count = CharacterBytes(text);
    if (count == 0 || text[0] == '\0') {
      mistakes.Add(place,
                   count == 0 ? "expected UTF-8, got bytes that are none" : "expected text, got a NUL byte");
      return false;
    }
    place = text[0] == '\n' ? Place{place.line + 1, 1}
                            : Place{place.line, place.column + static_cast<int>(count)};
    text.remove_prefix(count);
  }
  return true;
}

// Adds the first place at which a line has too many brackets open. The parser reads such a line to its end,
// and keeps all of it, before it shows the first bracket: without this, 16 MiB of them would take gigabytes.
bool HasFewBrackets(std::string_view text, std::size_t most, Mistakes& mistakes) {
  Place place = {1, 0};
  std::size_t open = 0;
  for (const char character : text) {
    ++place.column;
    if (character == '[' || character == '{') {
      if (++open <= most) continue;
      mistakes.Add(place, "more than " + std::to_string(most) + " brackets are open in one line");
      return false;
    }
    if ((character == ']' || character == '}') && open > 0) --open;
    if (character != '\n') continue;
    place = {place.line + 1, 0};
    open = 0;
  }
  return true;
}

}  // namespace

bool YamlTree::Read(const std::string& text, const Limits& limits, Mistakes& mistakes) {
  TreeBuilder builder(text, nodes_, root_, limits, mistakes);
  if (text.size() > limits.file_bytes) {
    mistakes.Add({}, "larger than " + std::to_string(limits.file_bytes) + " bytes");
    return false;
  }
  if (!IsText(text, mistakes) || !HasFewBrackets(text, limits.open_brackets, mistakes)) return false;
  try {
    std::istringstream stream(text);
    YAML::Parser parser(stream);
    while (parser.HandleNextDocument(builder)) {
    }
    return true;
  } catch (const EndOfReading&) {
    return false;
  } catch (const YAML::Exception& error) {
    AddReason(error, text, builder.OpenBracket(), mistakes);
    return false;
  }
}

}  // namespace lab
