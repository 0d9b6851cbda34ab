#include "reference/reader.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "unit/reference/written_reference.h"

namespace reference {
namespace {

class Reader : public testing::Test {
 protected:
  const Command& Get() {
    read_ = written_.Read();
    EXPECT_EQ(written_.mistakes.Lines(), std::vector<std::string>());
    return read_.nodes.at(0).commands.at(0);
  }

  std::string OneMistake() {
    read_ = written_.Read();
    const auto& lines = written_.mistakes.Lines();
    return lines.size() == 1 ? lines[0] : std::to_string(lines.size()) + " mistakes: " + Join(lines, "; ");
  }

  WrittenReference written_;
  Reference read_;
};

TEST_F(Reader, GivesWhatIsLeftOutItsDefault) {
  written_.WriteNode();
  const Command& get = Get();
  EXPECT_EQ(get.text_word, "getcli");
  EXPECT_EQ(get.text_help, "gets it");
  EXPECT_EQ(get.reads, "Nothing.");
  EXPECT_EQ(get.since, "1.9.0");
  EXPECT_FALSE(get.usage.has_value());
  EXPECT_FALSE(get.document.has_value());
  EXPECT_EQ(get.reboot_place, RebootPlace::kNone);
  EXPECT_EQ(read_.nodes[0].Name(), "port beam");
  EXPECT_EQ(read_.nodes[0].help_leaf, "list of available commands");
}

TEST_F(Reader, TakesAnArgumentByItsKind) {
  written_.WriteNode("    arguments: [port, {name: mode, choices: [A, B], about: How.}]\n");
  const Command& get = Get();
  ASSERT_EQ(get.arguments.size(), 2U);
  EXPECT_EQ(get.arguments[0].shown, "PORT");
  EXPECT_EQ(get.arguments[1].shown, "MODE");
  EXPECT_EQ(get.arguments[1].values.choices, (std::vector<std::string>{"A", "B"}));
}

TEST_F(Reader, MakesANumberOfARange) {
  written_.WriteNode("    options: {--delay: {short: -d, range: [1, 255], about: How long.}}\n");
  const ValueRule& values = Get().options.at(0).values;
  EXPECT_EQ(values.type, "number");
  EXPECT_EQ(values.least, 1U);
  EXPECT_EQ(values.most, 255U);
}

TEST_F(Reader, PutsAReportIntoItsFrame) {
  written_.WriteNode("", "document: {frame: [S, F, L], source: chip, report: [Speed: How fast.]}\n");
  const Document& document = Get().document.value();
  EXPECT_EQ(document.structure, "S");
  ASSERT_EQ(document.fields.size(), 1U);
  EXPECT_EQ(document.fields[0].name, "F");
  EXPECT_EQ(document.fields[0].list_structure, "L");
  EXPECT_EQ(document.fields[0].fields.at(0).name, "Data");
  EXPECT_EQ(document.report.at(0).label, "Speed");
  EXPECT_EQ(document.report.at(0).source, "chip");
}

TEST_F(Reader, TakesTheLinesOfASection) {
  written_.WriteNode("",
                     "document:\n  frame: [S, F, L, Text]\n  report:\n    - section: Head\n      lines: [A: "
                     "First., B: {about: Second., unit: mW}]\n");
  const Document& document = Get().document.value();
  ASSERT_EQ(document.report.size(), 3U);
  EXPECT_TRUE(document.report[0].is_section);
  EXPECT_EQ(document.report[2].unit, "mW");
  EXPECT_EQ(document.fields[0].fields.at(0).name, "Text");
}

TEST_F(Reader, LeavesACommandWithoutTheDocumentOfItsNode) {
  written_.WriteNode("    document: none\n", "document: {structure: S}\n");
  EXPECT_FALSE(Get().document.has_value());
}

TEST_F(Reader, WordsAStatusAnew) {
  written_.WriteNode(
      "",
      "statuses: [host-not-found, {id: read-failed, message: \"Failed, no light\", do: Look., for: get}]\n");
  Get();
  const auto& statuses = read_.nodes[0].statuses;
  ASSERT_EQ(statuses.size(), 2U);
  EXPECT_EQ(statuses[0].message, "Failed, Host not found");
  EXPECT_EQ(statuses[1].number, 13U);
  EXPECT_EQ(statuses[1].cause, "It broke.");
  EXPECT_EQ(statuses[1].action, "Look.");
  EXPECT_EQ(StatusesOf(read_.nodes[0], read_.nodes[0].commands[0]).size(), 2U);
}

TEST_F(Reader, NamesTheLineOfAMistake) {
  struct Case {
    const char* more;
    const char* keys;
    const char* mistake;
  };
  constexpr Case kCases[] = {
      {"    what: 1\n", "", "nodes/port-beam.yaml:11: unknown key \"what\""},
      {"    reboot-field: late\n", "",
       "nodes/port-beam.yaml:11: reboot-field: after, always-after, before or absent is needed"},
      {"    arguments: [prot]\n", "",
       "nodes/port-beam.yaml:11: no kind of argument \"prot\" in arguments.yaml"},
      {"    families: [oak]\n", "", "nodes/port-beam.yaml:11: families: no family \"oak\""},
      {"    reads: [a]\n", "", "nodes/port-beam.yaml:11: reads: a text is needed"},
      {"    example: get\n", "",
       "nodes/port-beam.yaml:9: no file examples/port-beam-get.txt: reference/renew-examples port-beam makes "
       "it"},
      {"", "statuses: [lost]\n", "nodes/port-beam.yaml:7: no status \"lost\" in messages.yaml"},
      {"", "statuses: [{id: host-not-found, for: put}]\n", "nodes/port-beam.yaml:7: for: no command \"put\""},
      {"", "statuses: [read-failed]\n", "nodes/port-beam.yaml:7: read-failed: message: missing"},
  };
  for (const Case& row : kCases) {
    WrittenReference written;
    written.WriteNode(row.more, row.keys);
    written.Read();
    const auto& lines = written.mistakes.Lines();
    EXPECT_NE(std::find(lines.begin(), lines.end(), row.mistake), lines.end())
        << row.mistake << " not in " << Join(lines, "; ");
  }
}

TEST_F(Reader, NamesAFileThatIsNoYaml) {
  written_.Write("nodes/port-beam.yaml", "a: [\n");
  read_ = written_.Read();
  ASSERT_FALSE(written_.mistakes.None());
  EXPECT_EQ(written_.mistakes.Lines()[0].rfind("nodes/port-beam.yaml:2: ", 0), 0U)
      << written_.mistakes.Lines()[0];
}

TEST_F(Reader, WantsTheFileOfANodeToHaveItsName) {
  written_.WriteNode();
  written_.Write("nodes/beam.yaml",
                 "node: -t port -s beam\nclass: Beam\nhelp: a\nhelp-head: B\ntitle: t\nabout: a\n");
  EXPECT_EQ(OneMistake(), "nodes/beam.yaml:1: the file of this node is nodes/port-beam.yaml");
}

TEST_F(Reader, SortsTheRootAheadOfTheNodes) {
  written_.WriteNode();
  written_.Write("nodes/root.yaml", "title: t\nabout: a\n");
  written_.Write("nodes/adapter.yaml",
                 "node: -t adapter\nclass: A\nhelp: a\nhelp-head: B\ntitle: t\nabout: a\n");
  Reference read = written_.Read();
  ASSERT_EQ(read.nodes.size(), 3U);
  EXPECT_EQ(read.nodes[0].id, "root");
  EXPECT_EQ(read.nodes[1].id, "adapter");
}

}  // namespace
}  // namespace reference
