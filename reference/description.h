// What the files below reference/ say about the program's commands. README.md there describes the files.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "reference/mistakes.h"

namespace reference {

// A kind of argument that many commands share, such as the identifier of a port.
struct ArgumentKind {
  std::string shown;  // as usage lines show it: "PORT"
  std::string about;
  std::string complete;  // what shells offer for it: a word of kCompletions, or nothing
  std::string sample;    // a value that has the right shape
};

// The values that an argument or an option takes.
struct ValueRule {
  std::string type = "word";                // bool, number, word, or the id of an argument kind
  std::vector<std::string> choices = {};    // empty: any
  std::string wrong = "invalid-parameter";  // the status that any other value leads to; none, no-document
  std::optional<std::uint32_t> least = std::nullopt;
  std::optional<std::uint32_t> most = std::nullopt;
};

struct Argument {
  FilePlace place;
  std::string name;   // "port"
  std::string shown;  // "PORT"
  std::string about;
  ValueRule values;
  bool optional = false;
};

struct Option {
  FilePlace place;
  std::string long_name;   // "--refresh"
  std::string short_name;  // "-r"
  std::string about;
  std::string default_text;           // what holds without the option
  std::vector<std::string> families;  // empty: those of the command
  ValueRule values;
};

// One line of a report's text, or the head of a section of it.
struct ReportLine {
  std::string label;
  bool is_section = false;
  std::string about;
  std::string unit;
  std::string source;
  std::string when;  // without it the line is always there
};

// A field of a structure: a value, or a list of structures with fields of their own.
struct Field {
  std::string name;
  std::string type = "string";  // string, int or bool
  std::string list_structure;   // set: the field holds a list of these
  std::vector<Field> fields;
  std::string about;
  std::string unit;
  std::string source;
  bool in_failures = true;  // there after a failure too; lists are empty then
};

struct Document {
  FilePlace place;
  std::string structure;  // type of the document's one structure, or of those of a list
  bool is_list = false;   // a list of structures without a message
  std::string message_field = "Message";
  std::vector<Field> fields;       // without the message and the reboot field
  std::vector<ReportLine> report;  // the lines of the one text field that a report has
};

// Where "Reboot Required" is in the document of a success. In that of a failure it is first, unless it is
// always after the message.
enum class RebootPlace : std::uint8_t { kNone, kBeforeMessage, kAfterMessage, kAlwaysAfterMessage };

// One status that a command of a node can end with.
struct NodeStatus {
  FilePlace place;
  std::string id;  // of StatusKind
  std::uint32_t number = 0;
  std::string message;
  std::string cause;
  std::string action;
  std::vector<std::string> commands;  // empty: all of the node
};

// A status, with its message where all nodes word it the same.
struct StatusKind {
  FilePlace place;
  std::uint32_t number = 0;
  std::string message;  // empty: each node has its own
  std::string cause;
  std::string action;
};

struct Command {
  FilePlace place;
  std::string word;       // "get"
  std::string text_word;  // "getcli"
  std::string help;       // as the program's help lists the plain form
  std::string text_help;
  std::optional<std::string> usage;  // after "Usage: "; none where the program has no text
  std::vector<Argument> arguments;
  std::vector<Option> options;
  std::string does;
  std::string reads;
  std::string changes;
  std::string reboot;   // whether one follows
  std::string warning;  // what it disturbs
  std::string since;
  std::vector<std::string> families;
  RebootPlace reboot_place = RebootPlace::kNone;
  std::string reboot_type = "bool";  // of that field
  std::optional<Document> document;  // none: no document
  std::vector<std::string> example;  // the words of each run after those of the node
  std::string example_about;
  std::string example_text;  // what the runs print, with the lines that start them
};

struct Node {
  FilePlace place;
  std::string id;                  // "port-dmi": the name of its file and its pages
  std::vector<std::string> words;  // "-t", "port", "-s", "dmi"; none for the root
  std::string node_class;
  std::string help;       // as its parent's help lists it
  std::string help_head;  // the words in the head of its own help
  std::string help_leaf;  // the text of its `help` in that list
  std::string title;
  std::string about;
  std::string since;
  std::vector<std::string> tasks;
  std::vector<std::string> families;  // empty: all
  std::vector<std::string> sources;   // with tables of messages, beside the one with the class
  std::vector<std::string> see;       // other nodes
  std::vector<Command> commands;
  std::vector<NodeStatus> statuses;

  // The name that a person says: "port dmi".
  std::string Name() const;
};

// A page that is no node's: a tool, or a file that people write.
struct Page {
  FilePlace place;
  std::string name;  // "zfc-lab"
  int section = 1;
  std::string title;
  struct Part {
    std::string heading;
    std::string text;  // paragraphs; a paragraph that begins with four blanks is shown as it is
    std::vector<std::pair<std::string, std::string>> items;  // term, text
  };
  std::vector<std::string> synopsis;
  std::vector<Part> parts;
  std::vector<std::string> see;  // "zfcesxcli(1)"
};

struct Reference {
  std::string folder;  // where it was read
  std::map<std::string, ArgumentKind> kinds;
  std::map<std::string, StatusKind> statuses;
  std::vector<Node> nodes;  // in the order of their names
  std::vector<Page> pages;
  std::string version;  // of the program
  std::string date;     // of the manual pages: "January 31, 2026"
};

// The statuses that `command` of `node` can end with, in the node's order.
std::vector<const NodeStatus*> StatusesOf(const Node& node, const Command& command);

// "zfcesxcli -t port -s dmi get", without the arguments; `word` is the plain or the text form.
std::string CommandLine(const Node& node, const std::string& word);

// The fields of the command's document in the order in which a success has them, "Message" and "Reboot
// Required" among them.
std::vector<Field> FieldsOf(const Command& command);

std::string Join(const std::vector<std::string>& words, const std::string& between);

}  // namespace reference
