// What all printed forms share: paragraphs, wrapped lines, and how the words of a command are shown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reference/description.h"

namespace reference {

// A paragraph, or lines that are shown as they are.
struct Block {
  bool literal = false;
  std::string text;
};

// Each line of the text is a paragraph; lines that begin with a blank are shown as they are, without the
// blanks that all of them begin with.
std::vector<Block> BlocksOf(const std::string& text);

// The text in lines of at most `width` bytes, each but the first after `indent` blanks, which count. `first`
// is where the first line begins, in bytes.
std::string Wrapped(const std::string& text, std::size_t width, std::size_t indent, std::size_t first);

// The text with code words in quotes, as plain text has them.
std::string Plain(const std::string& text);

std::string Replaced(std::string text, std::string_view from, std::string_view to);

// The lines of a text, without their ends, be they "\n" or "\r\n".
std::vector<std::string> LinesOf(const std::string& text);

// What a value is, for people: "0 to 255", "true or false", "one of A, B"; empty when any word serves.
std::string ValuesText(const ValueRule& values);

// What is written for the value of an option in a usage line: "true|false", "0-255" or "PROFILE".
std::string ValueShown(const Option& option);

// "PORT [--refresh|-r true|false]": the words after the command's own.
std::string ArgumentsShown(const Command& command);

// "elm, hazel and iris", or "all".
std::string FamiliesText(const std::vector<std::string>& families);

// The text as a sentence: with a full stop, unless it ends in a mark of its own.
std::string Sentence(const std::string& text);

// The text with its first letter in upper case.
std::string Capital(std::string text);

// The tasks of all nodes with their nodes, in the order of the letters.
struct Task {
  std::string text;
  const Node* node;
};
std::vector<Task> TasksOf(const Reference& reference);

// Every message with the nodes that can give it, in the order of the letters.
struct MessageUse {
  std::string message;
  const NodeStatus* status;
  std::vector<const Node*> nodes;
};
std::vector<MessageUse> MessagesOf(const Reference& reference);

const Page* PageNamed(const Reference& reference, const std::string& name);

}  // namespace reference
