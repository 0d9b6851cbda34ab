#include "reference/check/sources.h"

#include <algorithm>

#include "reference/whole_file.h"

namespace reference {
namespace {

// A token of a source: a literal, which `text` holds without its quotes, or a name or number or mark.
struct Token {
  bool is_literal = false;
  std::string text;
};

bool IsWordByte(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         byte == '_';
}

// Where the comment at `at` ends; `at` itself when there is none.
std::size_t AfterComment(const std::string& source, std::size_t at) {
  if (source.compare(at, 2, "//") == 0) return std::min(source.find('\n', at), source.size());
  if (source.compare(at, 2, "/*") == 0) return std::min(source.find("*/", at), source.size() - 2) + 2;
  return at;
}

// The literal that begins at `at`; its escapes stay as they are written. `at` moves past it.
std::string TakeLiteral(const std::string& source, std::size_t& at) {
  const char quote = source[at++];
  std::string text;
  while (at < source.size() && source[at] != quote) {
    if (source[at] == '\\') text += source[at++];
    if (at < source.size()) text += source[at++];
  }
  ++at;
  return text;
}

std::vector<Token> TokensOf(const std::string& source) {
  std::vector<Token> tokens;
  std::size_t at = 0;
  while (at < source.size()) {
    if (const std::size_t after = AfterComment(source, at); after != at) {
      at = after;
    } else if (source[at] == '"') {
      const bool goes_on = !tokens.empty() && tokens.back().is_literal;
      const std::string text = TakeLiteral(source, at);
      if (goes_on) {
        tokens.back().text += text;
      } else {
        tokens.push_back({true, text});
      }
    } else if (source[at] == '\'') {
      TakeLiteral(source, at);
    } else if (IsWordByte(source[at])) {
      const std::size_t begin = at;
      while (at < source.size() && IsWordByte(source[at])) ++at;
      tokens.push_back({false, source.substr(begin, at - begin)});
    } else {
      if (source[at] > ' ') tokens.push_back({false, std::string(1, source[at])});
      ++at;
    }
  }
  return tokens;
}

bool IsOptionName(const std::string& text) {
  return text.size() > 2 && text.compare(0, 2, "--") == 0 && text[2] != '-';
}

// The names in the table that begins at `at`: "StatusMessage kMessages[] = { ... };".
void AddStatusNames(const std::vector<Token>& tokens, std::size_t at, std::set<std::string>& names) {
  if (at + 5 >= tokens.size() || tokens[at + 2].text != "[" || tokens[at + 5].text != "{") return;
  for (std::size_t i = at + 5; i < tokens.size() && tokens[i].text != ";"; ++i) {
    const std::string& text = tokens[i].text;
    if (!tokens[i].is_literal && text.size() > 1 && text[0] == 'k' && text[1] >= 'A' && text[1] <= 'Z') {
      names.insert(text);
    }
  }
}

}  // namespace

SourceTexts TextsOf(const std::string& source) {
  SourceTexts found;
  const std::vector<Token> tokens = TokensOf(source);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const std::string& text = tokens[i].text;
    if (!tokens[i].is_literal) {
      if (text == "StatusMessage") AddStatusNames(tokens, i, found.status_names);
      continue;
    }
    if (text.starts_with("Failed, ")) found.messages.insert(text);
    if (IsOptionName(text) && i + 2 < tokens.size() && tokens[i + 1].text == "," &&
        tokens[i + 2].is_literal) {
      found.options.emplace(text, tokens[i + 2].text);
    }
  }
  return found;
}

std::map<std::string, SourceTexts> TextsBelow(const std::filesystem::path& root, const std::string& folder) {
  std::map<std::string, SourceTexts> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
    const std::string end = entry.path().extension();
    if (end != ".cpp" && end != ".h") continue;
    found[entry.path().lexically_relative(root)] = TextsOf(ReadWholeFile(entry.path()));
  }
  return found;
}

std::map<std::string, unsigned> EnumeratorsOf(const std::string& source) {
  std::map<std::string, unsigned> found;
  const std::vector<Token> tokens = TokensOf(source);
  for (std::size_t i = 0; i + 3 < tokens.size(); ++i) {
    const bool is_number = tokens[i + 2].text.find_first_not_of("0123456789") == std::string::npos;
    const bool ends = tokens[i + 3].text == "," || tokens[i + 3].text == "}";
    if (tokens[i].text[0] == 'k' && tokens[i + 1].text == "=" && is_number && ends) {
      found[tokens[i].text] = static_cast<unsigned>(std::stoul(tokens[i + 2].text));
    }
  }
  return found;
}

std::string IdOf(const std::string& enumerator) {
  std::string id;
  for (std::size_t i = 1; i < enumerator.size(); ++i) {
    const char letter = enumerator[i];
    const bool is_capital = letter >= 'A' && letter <= 'Z';
    if (is_capital && i > 1) id += '-';
    id += is_capital ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return id;
}

}  // namespace reference
