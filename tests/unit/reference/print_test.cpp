#include <gtest/gtest.h>

#include "reference/print/completion.h"
#include "reference/print/descriptor.h"
#include "reference/print/man.h"
#include "reference/print/markdown.h"
#include "reference/print/readme.h"
#include "reference/print/text.h"
#include "unit/reference/written_reference.h"

namespace reference {
namespace {

Command WithOptions(const std::vector<std::string>& argument_names,
                    const std::vector<std::string>& short_names) {
  Command command;
  command.word = "set";
  for (const std::string& name : argument_names) {
    Argument argument;
    argument.name = name;
    argument.shown = name;
    command.arguments.push_back(argument);
  }
  for (const std::string& name : short_names) {
    Option option;
    option.long_name = "--long" + name;
    option.short_name = name;
    command.options.push_back(option);
  }
  return command;
}

std::string ShortNames(const Command& command) {
  std::string names;
  for (const Parameter& parameter : ParametersOf(command)) names += parameter.short_name;
  return names;
}

TEST(Text, WrapsAtBlanks) {
  EXPECT_EQ(Wrapped("one two three", 7, 0, 0), "one two\nthree");
  EXPECT_EQ(Wrapped("one two three", 9, 2, 2), "one two\n  three");
  EXPECT_EQ(Wrapped("one two", 9, 0, 5), "one\ntwo");
  EXPECT_EQ(Wrapped("  a   b ", 80, 0, 0), "a b");
  EXPECT_EQ(Wrapped("unbreakable", 4, 2, 2), "unbreakable");
}

TEST(Text, KeepsLiteralLinesTogether) {
  const auto blocks = BlocksOf("First.\n\n    a\n\n      b\n\nLast.");
  ASSERT_EQ(blocks.size(), 3U);
  EXPECT_FALSE(blocks[0].literal);
  EXPECT_TRUE(blocks[1].literal);
  EXPECT_EQ(blocks[1].text, "a\n\n  b");
  EXPECT_EQ(blocks[2].text, "Last.");
}

TEST(Text, EndsASentenceOnce) {
  EXPECT_EQ(Sentence("a"), "a.");
  EXPECT_EQ(Sentence("a."), "a.");
  EXPECT_EQ(Sentence("a!"), "a!");
  EXPECT_EQ(Sentence(""), "");
}

TEST(Text, NamesValues) {
  EXPECT_EQ(ValuesText({.type = "bool"}), "true or false");
  EXPECT_EQ(ValuesText({.choices = {"A"}}), "A");
  EXPECT_EQ(ValuesText({.choices = {"A", "B", "C"}}), "A, B or C");
  EXPECT_EQ(ValuesText({.type = "number", .least = 0, .most = 255}), "0 to 255");
  EXPECT_EQ(ValuesText({}), "");
}

TEST(Text, ShowsArguments) {
  Command command = WithOptions({"PORT"}, {"-a"});
  command.options[0].values.type = "bool";
  EXPECT_EQ(ArgumentsShown(command), "PORT [--long-a|-a true|false]");
  command.arguments[0].optional = true;
  EXPECT_EQ(ArgumentsShown(command), "[PORT] [--long-a|-a true|false]");
  EXPECT_EQ(ArgumentsShown(WithOptions({"PORT"}, {"-a", "-b", "-c", "-d", "-e"})), "PORT OPTIONS");
}

TEST(Descriptor, GivesArgumentsLettersThatNoOptionHas) {
  EXPECT_EQ(ShortNames(WithOptions({"port"}, {})), "p");
  EXPECT_EQ(ShortNames(WithOptions({"port"}, {"-p"})), "op");
  EXPECT_EQ(ShortNames(WithOptions({"port"}, {"-p", "-o", "-r", "-t"})), "Pport");
  EXPECT_EQ(ShortNames(WithOptions({"port", "pass"}, {})), "pa");
  EXPECT_EQ(ShortNames(WithOptions({"a", "a", "a"}, {})), "aAB");
}

TEST(Descriptor, PutsAFreeValueIntoAHereDocument) {
  Node node;
  node.words = {"-t", "port"};
  EXPECT_EQ(ExecuteText(node, WithOptions({"port"}, {})),
            "/opt/ZunaFcEsxcliPlugin/bin/zfcesxcli -t port set \"$(cat <<'end-of-the-value-for-zfcesxcli'\n"
            "$val{port}\nend-of-the-value-for-zfcesxcli\n)\"");
}

TEST(Descriptor, PutsAKnownValueIntoQuotes) {
  Node node;
  node.words = {"-t", "port"};
  Command command = WithOptions({}, {"-f", "-n"});
  command.options[0].values.choices = {"on", "off"};
  command.options[1].values.type = "number";
  EXPECT_EQ(ExecuteText(node, command),
            "/opt/ZunaFcEsxcliPlugin/bin/zfcesxcli -t port set$if{long-f, --long-f '$val{long-f}'}"
            "$if{long-n, --long-n '$val{long-n}'}");
}

class Pages : public testing::Test {
 protected:
  const Reference& Read(const std::string& about) {
    written_.Write(
        "nodes/port-beam.yaml",
        "node: -t port -s beam\nclass: Beam\nhelp: a beam\nhelp-head: Beam\ntitle: the beam of a port\n"
        "about: '" +
            about +
            "'\ntasks: [see the beam]\nstatuses: [host-not-found]\ncommands:\n  Get:\n"
            "    help: gets it\n    does: Shows it.\n    arguments: [port, {name: kind, choices: [A, B], "
            "about: Kind.}]\n"
            "    options: {--to: {short: -t, type: file, about: Where.}, --on: {short: -o, type: bool, "
            "about: If.}}\n"
            "    document: {list: <List>, fields: [A&B: One.]}\n");
    read_ = written_.Read();
    EXPECT_EQ(written_.mistakes.Lines(), std::vector<std::string>());
    return read_;
  }

  WrittenReference written_;
  Reference read_;
};

TEST_F(Pages, OfMarkdownHaveNoTagsOfTheirOwn) {
  const auto pages = MarkdownPages(Read("A <tag> and `a <word>`, a|b, *no*"));
  EXPECT_NE(pages.at("port-beam.md").find("A \\<tag\\> and `a <word>`, a\\|b, \\*no\\*"), std::string::npos);
  EXPECT_NE(pages.at("README.md").find("| see the beam | [port beam](port-beam.md) |"), std::string::npos);
  EXPECT_NE(pages.at("messages.md").find("## Failed, Host not found"), std::string::npos);
}

TEST_F(Pages, OfManualHaveNoRequestsOfTheirOwn) {
  const std::string page =
      ManPages(Read(".so /etc/passwd \\*[x] a-b. .Sh c")).at("man1/zfcesxcli-port-beam.1");
  EXPECT_NE(page.find("\\&.so /etc/passwd \\e*[x] a\\-b.\n\\&.Sh c\n"), std::string::npos) << page;
}

TEST_F(Pages, OfTheDescriptorAreEscaped) {
  const std::string text = DescriptorText(Read("x"));
  EXPECT_NE(text.find("<structure typeName=\"&lt;List&gt;\">"), std::string::npos);
  EXPECT_NE(text.find("<field name=\"A&amp;B\"><string/></field>"), std::string::npos);
  EXPECT_NE(text.find("<table-columns>A&amp;B</table-columns>"), std::string::npos);
}

TEST_F(Pages, OfTheReadmeNameEverything) {
  const std::string text = ReadmeText(Read("x"));
  for (const char* const part : {"    -t port -s beam Get PORT A|B [--to|-t TO] [--on|-o true|false]\n",
                                 "--to, -t", "see the beam", "\"Failed, Host not found\""}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
}

TEST_F(Pages, OfCompletionHaveRules) {
  const auto table = CompletionTable(Read("x"));
  const std::map<std::string, std::string> expected = {
      {"arguments port beam get", "@ports =A|B"},
      {"arguments port beam getcli", "@ports =A|B"},
      {"commands ", "help"},
      {"commands port beam", "Get Getcli help"},
      {"nodes port", "-s beam"},
      {"options port beam get", "--to -t --on -o"},
      {"options port beam getcli", "--to -t --on -o"},
      {"value port beam get --on", "=true|false"},
      {"value port beam get --to", "@files"},
      {"value port beam get -o", "=true|false"},
      {"value port beam get -t", "@files"},
      {"value port beam getcli --on", "=true|false"},
      {"value port beam getcli --to", "@files"},
      {"value port beam getcli -o", "=true|false"},
      {"value port beam getcli -t", "@files"},
  };
  EXPECT_EQ(table, expected);
}

TEST_F(Pages, OfCompletionAreQuoted) {
  read_.nodes.emplace_back();
  read_.nodes[0].words = {"-t", "it's"};
  EXPECT_EQ(ZshCompletion(read_, "a\n@TABLE@\nb\n"),
            "a\n  'commands ' 'help'\n  'commands it'\\''s' 'help'\n  'nodes ' '-t it'\\''s'\nb\n");
}

}  // namespace
}  // namespace reference
