// The documents of commands, with any texts in them: a structure with a list, a list of identifiers, a
// report.
//
// Oracles. A second implementation of both forms, byte by byte, with nothing escaped. parse(print(x)) = x
// twice: a document whose texts need no escape is well-formed, and an XML reader finds in it what was
// written; and zfc-json finds any text, tags in it or not, unless the text ends a text itself.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "framework/report.h"
#include "fuzz_input.h"
#include "printed_text.h"
#include "support/unit_command_run.h"
#include "tools/json/conversion.h"
#include "xml_checker.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// A value of a field, with the form of a number.
struct Field {
  enum Kind : std::uint8_t { kString, kInt, kBool, kReport };

  const char* name;
  Kind kind;
  std::string text;
  std::uint64_t number = 0;
  IntKind form = kSigned32;
};

struct Content {
  bool is_xml = false;
  RebootField reboot = {};
  std::string message;
  std::vector<std::vector<Field>> elements;  // of the list
};

// Each field of an element is there or not.
std::vector<Field> TakeElement(FuzzInput& input) {
  const std::uint8_t which = input.Byte();
  std::vector<Field> fields;
  if ((which & 1) != 0) fields.push_back({"Text", Field::kString, input.Text()});
  if ((which & 2) != 0) {
    fields.push_back({"Number", Field::kInt, "", input.Number(), static_cast<IntKind>(which >> 5 & 7)});
  }
  if ((which & 4) != 0) fields.push_back({"Flag", Field::kBool, "", input.Byte()});
  if ((which & 8) != 0) fields.push_back({"Other Text", Field::kString, input.Text()});
  return fields;
}

// What the C library makes of a text as a format that has no argument to show: a reader for the conversions
// of printf (C17 7.21.6.1).
std::string WithoutConversions(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '%') {
      result += text[at];
      continue;
    }
    std::size_t end = at + 1;
    const auto is_any = [&](std::string_view set) {
      return end < text.size() && set.find(text[end]) != std::string_view::npos;
    };
    const auto skip_number = [&] {
      if (is_any("*")) {
        ++end;
      } else {
        while (is_any("0123456789")) ++end;
      }
    };
    if (is_any("%")) {
      result += '%';
      ++at;
      continue;
    }
    while (is_any("-+ #0'")) ++end;
    skip_number();
    if (is_any(".")) {
      ++end;
      skip_number();
    }
    for (const std::string_view length : {"hh", "h", "ll", "l", "j", "z", "t", "L"}) {
      if (!text.substr(end).starts_with(length)) continue;
      end += length.size();
      break;
    }
    if (is_any("diouxXeEfFgGaAcspnmCS")) {
      at = end;
    } else {
      result += '%';
    }
  }
  return result;
}

std::string ShownNumber(const Field& field, bool is_xml) {
  const auto wide = static_cast<std::int64_t>(field.number);
  const auto narrow = static_cast<std::uint32_t>(field.number);
  switch (field.form) {
    case kSigned32:
      return std::to_string(static_cast<std::int32_t>(narrow));
    case kUnsigned32:
      return std::to_string(narrow);
    case kSigned64:
      return std::to_string(wide);
    case kUnsigned64:
      return std::to_string(field.number);
    case kHexadecimal32:
      break;
    default:
      return "";
  }
  if (is_xml) return std::to_string(static_cast<std::int32_t>(narrow));
  std::string digits;
  for (std::uint32_t rest = narrow; rest != 0 || digits.empty(); rest >>= 4) {
    digits.insert(digits.begin(), "0123456789abcdef"[rest & 15]);
  }
  return digits;
}

// What a value is in the document; empty for a number of an unknown form, which has none.
std::string Shown(const Field& field, bool is_xml) {
  if (field.kind == Field::kInt) return ShownNumber(field, is_xml);
  if (field.kind == Field::kBool) return field.number != 0 ? "true" : "false";
  return field.kind == Field::kReport ? WithoutConversions(field.text) : field.text;
}

const char* TagOf(Field::Kind kind) {
  return kind == Field::kInt ? "int" : kind == Field::kBool ? "bool" : "string";
}

// The program's side.

void Write(Serializer& out, const Field& field) {
  switch (field.kind) {
    case Field::kString:
      out.WriteStringField(field.name, field.text.c_str());
      return;
    case Field::kInt:
      out.WriteIntField(field.name, static_cast<std::int64_t>(field.number), field.form);
      return;
    case Field::kBool:
      out.WriteBoolField(field.name, field.number != 0);
      return;
    case Field::kReport:
      return;
  }
}

void WriteElements(CommandRun& run, const Content& content) {
  const Document document(run, "TestInfo", content.message.c_str(), content.reboot);
  const ListField list(run.out, "Tests");
  for (const std::vector<Field>& fields : content.elements) {
    const ListStructure element(run.out, "TestList");
    for (const Field& field : fields) Write(run.out, field);
  }
}

// The model's side.

std::string XmlField(const Field& field) {
  const std::string begin = "<field name=\"" + std::string(field.name) + "\">\n";
  const std::string tag = TagOf(field.kind);
  const bool has_value = field.kind != Field::kInt || field.form <= kHexadecimal32;
  return begin + (has_value ? "<" + tag + ">" + Shown(field, true) + "</" + tag + ">" : "") + "</field>\n";
}

// Unlike any other value, the text of a report has no line end of its own.
std::string CliField(const Field& field) {
  const bool ends =
      field.kind != Field::kReport && (field.kind != Field::kInt || field.form <= kHexadecimal32);
  return std::string(field.name) + ": " + Shown(field, false) + (ends ? "\n" : "");
}

std::vector<Field> HeadFields(const Content& content) {
  std::vector<Field> head = {{"Message", Field::kString, content.message}};
  const Field reboot = {"Reboot Required", Field::kBool, "", content.reboot.required ? 1U : 0U};
  if (content.reboot.place == RebootField::kBeforeMessage) head.insert(head.begin(), reboot);
  if (content.reboot.place == RebootField::kAfterMessage) head.push_back(reboot);
  return head;
}

std::string XmlText(const Content& content) {
  std::string text =
      "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n<structure typeName=\"TestInfo\">\n";
  for (const Field& field : HeadFields(content)) text += XmlField(field);
  text += "<field name=\"Tests\">\n<list type=\"structure\">\n";
  for (const std::vector<Field>& fields : content.elements) {
    text += "<structure typeName=\"TestList\">\n";
    for (const Field& field : fields) text += XmlField(field);
    text += "</structure>\n";
  }
  return text + "</list>\n</field>\n</structure>\n</output>\n";
}

std::string CliText(const Content& content) {
  const std::string ruler = std::string(52, '*') + "\n";
  std::string text = ruler + "TestInfo:\n";
  for (const Field& field : HeadFields(content)) text += CliField(field);
  text += "Tests: ";
  for (const std::vector<Field>& fields : content.elements) {
    text += "TestList:\n";
    for (const Field& field : fields) text += CliField(field);
  }
  return text + ruler;
}

// What an XML reader finds.

bool NeedsNoEscape(std::string_view text) {
  if (text.find_first_of("<&\r") != std::string_view::npos || text.find("]]>") != std::string_view::npos) {
    return false;
  }
  while (!text.empty()) {
    const std::size_t length = xml::CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

void RequireField(const xml::Element& element, const Field& field) {
  Require(element.name == "field" && element.attributes.size() == 1 &&
          element.attributes[0].second == field.name);
  if (field.kind == Field::kInt && field.form > kHexadecimal32) {
    Require(element.children.empty());
    return;
  }
  Require(element.children.size() == 1 && element.children[0].name == TagOf(field.kind));
  Require(element.children[0].text == Shown(field, true));
}

void RequireXml(std::string_view document, const Content& content) {
  const std::optional<xml::Element> root = xml::Reader::Read(document);
  Require(root.has_value() && root->name == "output" && root->children.size() == 1);
  const xml::Element& structure = root->children[0];
  const std::vector<Field> head = HeadFields(content);
  Require(structure.name == "structure" && structure.children.size() == head.size() + 1);
  for (std::size_t i = 0; i < head.size(); ++i) RequireField(structure.children[i], head[i]);
  const xml::Element& list = structure.children.back().children.at(0);
  Require(list.name == "list" && list.children.size() == content.elements.size());
  for (std::size_t i = 0; i < content.elements.size(); ++i) {
    Require(list.children[i].children.size() == content.elements[i].size());
    for (std::size_t j = 0; j < content.elements[i].size(); ++j) {
      RequireField(list.children[i].children[j], content.elements[i][j]);
    }
  }
}

// What zfc-json finds.

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto lead = static_cast<std::uint8_t>(text.front());
    const bool is_noncharacter = text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
    const std::size_t length = is_noncharacter ? 3 : lead < 0x80 ? 1 : xml::CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

// A text that is no UTF-8 is Latin-1.
std::string JsonString(std::string_view text) {
  const bool is_utf8 = IsUtf8(text);
  std::string json = "\"";
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<std::uint8_t>(text[at]);
    const std::string_view rest = text.substr(at);
    const bool is_c1 =
        is_utf8 ? byte == 0xC2 && static_cast<std::uint8_t>(rest[1]) < 0xA0 : byte >= 0x80 && byte < 0xA0;
    char escape[8];
    if (byte == '"' || byte == '\\') {
      json += {'\\', static_cast<char>(byte)};
    } else if (byte == '\n' || byte == '\t' || byte == '\r') {
      json += byte == '\n' ? "\\n" : byte == '\t' ? "\\t" : "\\r";
    } else if (byte < 0x20 || byte == 0x7F || is_c1) {
      if (is_c1 && is_utf8) ++at;
      std::snprintf(escape, sizeof escape, "\\u%04x",
                    static_cast<unsigned>(static_cast<std::uint8_t>(text[at])));
      json += escape;
    } else if (byte < 0x80 || is_utf8) {
      json += static_cast<char>(byte);
    } else {
      json += {static_cast<char>(0xC0 | byte >> 6), static_cast<char>(0x80 | (byte & 0x3F))};
    }
  }
  return json + "\"";
}

std::string JsonValue(const Field& field) {
  const std::string shown = Shown(field, true);
  if (field.kind == Field::kString) return JsonString(shown);
  if (field.kind == Field::kReport) return "{\"text\":" + JsonString(shown) + "}";
  return shown.empty() ? "null" : shown;
}

struct JsonStructure {
  std::string fields;
  std::string latin1;  // with its name and brackets
};

JsonStructure Json(const std::vector<Field>& fields) {
  JsonStructure json;
  for (const Field& field : fields) {
    const std::string name = "\"" + std::string(field.name) + "\"";
    json.fields += (json.fields.empty() ? "" : ",") + name + ":" + JsonValue(field);
    const bool is_text = field.kind == Field::kString || field.kind == Field::kReport;
    if (is_text && !IsUtf8(Shown(field, true))) json.latin1 += (json.latin1.empty() ? "" : ",") + name;
  }
  if (!json.latin1.empty()) json.latin1 = ",\"latin1\":[" + json.latin1 + "]";
  return json;
}

std::string JsonText(const Content& content) {
  const JsonStructure head = Json(HeadFields(content));
  std::string list;
  for (const std::vector<Field>& fields : content.elements) {
    const JsonStructure element = Json(fields);
    list += (list.empty() ? "" : ",") +
            ("{\"structure\":\"TestList\",\"fields\":{" + element.fields + "}" + element.latin1 + "}");
  }
  const bool has_reboot = content.reboot.place != RebootField::kAbsent;
  return "{\"structure\":\"TestInfo\",\"message\":" + JsonString(content.message) +
         ",\"success\":" + (content.message == "Success" ? "true" : "false") + ",\"rebootRequired\":" +
         (!has_reboot               ? "null"
          : content.reboot.required ? "true"
                                    : "false") +
         ",\"fields\":{" + head.fields + ",\"Tests\":[" + list + "]},\"list\":null" + head.latin1 + "}\n";
}

void RequireJson(std::string_view document, const std::string& expected, std::size_t piece) {
  zfc_json::TextSource source(document, piece);
  zfc_json::TextSink sink;
  Convert(source, sink, {.parsed = false});
  Require(sink.Text() == expected);
}

// A text can end a text, or begin a document.
bool IsAmbiguous(std::string_view text) {
  return text.find("</string>") != std::string_view::npos || text.find("<?xml") != std::string_view::npos;
}

void CheckTexts(std::string_view document, const Content& content, std::size_t piece) {
  bool needs_no_escape = NeedsNoEscape(content.message);
  bool is_ambiguous = IsAmbiguous(content.message);
  for (const std::vector<Field>& fields : content.elements) {
    for (const Field& field : fields) {
      const std::string shown = Shown(field, true);
      needs_no_escape = needs_no_escape && NeedsNoEscape(shown);
      // No document of the program has an empty field after a text, so zfc-json does not look for one there.
      const bool is_empty = field.kind == Field::kInt && shown.empty();
      is_ambiguous = is_ambiguous || is_empty || IsAmbiguous(shown);
    }
  }
  if (needs_no_escape) RequireXml(document, content);
  if (!is_ambiguous) RequireJson(document, JsonText(content), piece);
}

void CheckDocument(FuzzInput& input, Content content) {
  content.message = input.Text();
  for (int i = input.Byte() % 4; i > 0; --i) content.elements.push_back(TakeElement(input));
  TestRun test({}, content.is_xml ? OUTPUT_XML : OUTPUT_CLI);
  const std::string printed = PrintedText::Of([&] { WriteElements(test.run, content); });
  Require(printed == (content.is_xml ? XmlText(content) : CliText(content)));
  if (content.is_xml) CheckTexts(printed, content, input.Byte() + std::size_t{1});
}

// Pieces that do not fit the report's buffer are left out whole.
void CheckReport(FuzzInput& input, Content content) {
  const std::size_t size = std::size_t{input.Byte()} * 4 + 1;
  ReportText report(size);
  std::string text;
  while (!input.Empty()) {
    const std::string piece = input.Text();
    report.Append(piece.c_str());
    if (text.size() + piece.size() < size) text += piece;
  }
  Require(report.Text() == text);
  content.message = "Success";
  content.elements = {{{"Data", Field::kReport, text}}};
  TestRun test({}, content.is_xml ? OUTPUT_XML : OUTPUT_CLI);
  constexpr ReportFrame kFrame = {"TestInfo", "Tests", "TestList"};
  const std::string printed = PrintedText::Of([&] { WriteReport(test.run, kFrame, report, content.reboot); });
  Require(printed == (content.is_xml ? XmlText(content) : CliText(content)));
  if (content.is_xml) CheckTexts(printed, content, size);
}

void CheckIdentifiers(FuzzInput& input, bool is_xml) {
  TestRun test({}, is_xml ? OUTPUT_XML : OUTPUT_CLI);
  const std::string ruler = std::string(52, '*') + "\n";
  std::string expected =
      is_xml ? "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n<list type=\"structure\">\n" : ruler;
  std::string json;
  bool is_ambiguous = false;
  const std::string printed = PrintedText::Of([&] {
    IdentifierList list(test.run, "PortList", "Ports");
    while (!input.Empty()) {
      const std::string text = input.Text();
      list.Write(text);
      expected += is_xml ? "<structure typeName=\"PortList\">\n<field name=\"Ports\">\n<string>" + text +
                               "</string></field>\n</structure>\n"
                         : "PortList:\nPorts: " + text + "\n";
      is_ambiguous = is_ambiguous || IsAmbiguous(text);
      const JsonStructure item = Json({{"Ports", Field::kString, text}});
      json += (json.empty() ? "" : ",") +
              ("{\"structure\":\"PortList\",\"fields\":{" + item.fields + "}" + item.latin1 + "}");
    }
  });
  expected += is_xml ? "</list>\n</output>\n" : ruler;
  Require(printed == expected);
  if (!is_xml || is_ambiguous) return;
  const std::string type = json.empty() ? "null" : "\"PortList\"";
  RequireJson(printed,
              "{\"structure\":" + type +
                  ",\"message\":null,\"success\":true,\"rebootRequired\":null,\"fields\":null,\"list\":[" +
                  json + "]}\n",
              printed.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const std::uint8_t choice = input.Byte();
  Content content;
  content.is_xml = (choice & 1) == 0;
  content.reboot.place = static_cast<RebootField::Place>((choice >> 1 & 3) % 3);
  content.reboot.required = (choice & 8) != 0;
  switch (choice >> 4 & 3) {
    case 0:
      CheckIdentifiers(input, content.is_xml);
      break;
    case 1:
      CheckReport(input, content);
      break;
    default:
      CheckDocument(input, content);
  }
  return 0;
}
