#include "tools/json/document_reader.h"

#include <algorithm>

#include "tools/json/plain_number.h"

namespace zfc_json {
namespace {

constexpr std::string_view kDocumentEnd = "</output>\n";
constexpr std::string_view kListTag = "<list type=\"structure\">\n";
constexpr std::string_view kListEnd = "</list>\n";
constexpr std::string_view kStructureTag = "<structure typeName=\"";
constexpr std::string_view kStructureEnd = "</structure>\n";
constexpr std::string_view kFieldTag = "<field name=\"";
constexpr std::string_view kFieldEnd = "</field>\n";
constexpr std::string_view kNameEnd = "\">\n";
constexpr std::string_view kStringTag = "<string>";
constexpr std::string_view kStringEnd = "</string></field>\n";
constexpr std::string_view kStringTagEnd = "</string>";
constexpr std::string_view kIntegerTag = "<int>";
constexpr std::string_view kIntegerEnd = "</int></field>\n";
constexpr std::string_view kBooleanTag = "<bool>";
constexpr std::string_view kBooleanEnd = "</bool></field>\n";

// Bounds that no document of the program comes near.
constexpr std::size_t kLongestText = std::size_t{16} << 20;
constexpr std::size_t kLongestName = 64;
constexpr std::size_t kLongestScalar = 24;
constexpr std::size_t kMostFields = 256;
constexpr std::size_t kMostOpen = 16;
constexpr std::size_t kOutsideTextLimit = 200;

// How far a document's end looks for a later one.
constexpr std::size_t kEndLookAhead = std::size_t{64} * 1024;

bool IsNameCharacter(char character) {
  return character >= ' ' && character <= '~' && character != '"' && character != '<' && character != '>' &&
         character != '&';
}

bool IsBoolean(std::string_view text) {
  return text == "true" || text == "false";
}

}  // namespace

DocumentReader::Event DocumentReader::Next() {
  window_.Take(length_);
  length_ = 0;
  name_ = text_ = {};
  if (is_over_) return problem_.empty() ? Event::kEndInput : Event::kBroken;
  if (open_.empty()) return FindDocument();
  switch (open_.back().part) {
    case Part::kDocument:
      return InDocument();
    case Part::kList:
      return InList();
    case Part::kStructure:
      return InStructure();
    case Part::kField:
      return InField();
  }
  return Event::kBroken;
}

void DocumentReader::NoteOutside(std::string_view bytes) {
  const auto is_visible = [](char character) {
    return character != ' ' && character != '\t' && character != '\r' && character != '\n';
  };
  outside_bytes_ += static_cast<std::uint64_t>(std::count_if(bytes.begin(), bytes.end(), is_visible));
  const std::size_t room = kOutsideTextLimit - std::min(kOutsideTextLimit, outside_text_.size());
  outside_text_ += bytes.substr(0, room);
}

DocumentReader::Event DocumentReader::FindDocument() {
  for (;;) {
    const std::string_view bytes = window_.Bytes();
    const std::size_t head = bytes.find(kDocumentHead);
    if (head != std::string_view::npos) {
      NoteOutside(bytes.substr(0, head));
      length_ = head + kDocumentHead.size();
      return Begin(Event::kDocument, Part::kDocument);
    }
    // The rest can be the beginning of a head.
    const std::size_t passed = bytes.size() - std::min(bytes.size(), kDocumentHead.size() - 1);
    NoteOutside(bytes.substr(0, passed));
    window_.Take(passed);
    if (window_.More()) continue;
    NoteOutside(window_.Bytes());
    is_over_ = true;
    return Event::kEndInput;
  }
}

DocumentReader::Event DocumentReader::InDocument() {
  if (window_.Matches(0, kDocumentEnd)) return End(Event::kEndDocument, kDocumentEnd.size());
  if (open_.back().has_content) return BreakUnexpected("</output>");
  open_.back().has_content = true;
  if (window_.Matches(0, kListTag)) return BeginList();
  if (window_.Matches(0, kStructureTag)) return BeginStructure();
  return BreakUnexpected("a list, a structure or </output>");
}

DocumentReader::Event DocumentReader::InList() {
  if (window_.Matches(0, kListEnd)) return End(Event::kEndList, kListEnd.size());
  if (window_.Matches(0, kStructureTag)) return BeginStructure();
  return BreakUnexpected("a structure or </list>");
}

DocumentReader::Event DocumentReader::InStructure() {
  if (window_.Matches(0, kStructureEnd)) {
    names_.resize(open_.back().first_name);
    return End(Event::kEndStructure, kStructureEnd.size());
  }
  if (!window_.Matches(0, kFieldTag)) return BreakUnexpected("a field or </structure>");
  std::string_view name;
  if (!NameAt(kFieldTag.size(), name)) return Break("the name of a field", kFieldTag.size());
  if (!IsNewName(name, names_.size())) return Break("a field of another name", kFieldTag.size());
  if (names_.size() - open_.back().first_name >= kMostFields) return Break("fewer fields");
  names_.emplace_back(name);
  name_ = name;
  length_ = kFieldTag.size() + name.size() + kNameEnd.size();
  return Begin(Event::kField, Part::kField);
}

DocumentReader::Event DocumentReader::InField() {
  if (window_.Matches(0, kFieldEnd)) return End(Event::kEndField, kFieldEnd.size());
  if (open_.back().has_content) return BreakUnexpected("</field>");
  open_.back().has_content = true;
  if (window_.Matches(0, kStringTag)) return ReadString();
  if (window_.Matches(0, kIntegerTag)) {
    length_ = kIntegerTag.size();
    return ReadScalar(kIntegerEnd, &IsWholeNumber, Event::kInteger);
  }
  if (window_.Matches(0, kBooleanTag)) {
    length_ = kBooleanTag.size();
    return ReadScalar(kBooleanEnd, &IsBoolean, Event::kBoolean);
  }
  if (window_.Matches(0, kListTag)) return BeginList();
  return BreakUnexpected("a value, a list or </field>");
}

// The value begins after its tag, of which length_ is the length.
DocumentReader::Event DocumentReader::ReadScalar(std::string_view end, bool (*is_valid)(std::string_view),
                                                 Event event) {
  const std::size_t from = length_;
  std::size_t at = from;
  while (!window_.Matches(at, end)) {
    if (++at - from > kLongestScalar) return Break("a number, true or false", from);
  }
  const std::string_view value = window_.Bytes().substr(from, at - from);
  if (!is_valid(value)) return Break("a number, true or false", from);
  text_ = value;
  length_ = at + end.size() - kFieldEnd.size();
  return event;
}

DocumentReader::Event DocumentReader::ReadString() {
  const std::size_t from = kStringTag.size();
  std::size_t at = from;
  for (;;) {
    const std::string_view bytes = window_.Bytes();
    const std::size_t tag = bytes.find('<', at);
    at = std::min(tag, bytes.size());
    if (at - from > kLongestText) return Break("a shorter text", from);
    if (tag == std::string_view::npos) {
      if (!window_.More()) return Break("the end of a text", at);
      continue;
    }
    if (window_.Matches(at, kStringEnd) && FitsAfterField(at + kStringEnd.size())) break;
    // A text with a whole head and a document that is cut off look the same.
    if (window_.Matches(at, kDocumentHead)) return Break("the end of a text ahead of the next document", at);
    ++at;
  }
  text_ = window_.Bytes().substr(from, at - from);
  length_ = at + kStringTagEnd.size();
  return Event::kString;
}

DocumentReader::Event DocumentReader::Begin(Event event, Part part) {
  open_.push_back({part, false, {}, names_.size()});
  return event;
}

DocumentReader::Event DocumentReader::End(Event event, std::size_t length) {
  open_.pop_back();
  length_ = length;
  return event;
}

DocumentReader::Event DocumentReader::BeginList() {
  if (open_.size() >= kMostOpen) return Break("fewer lists in each other");
  length_ = kListTag.size();
  return Begin(Event::kList, Part::kList);
}

DocumentReader::Event DocumentReader::BeginStructure() {
  std::string_view name;
  if (!NameAt(kStructureTag.size(), name)) return Break("the type of a structure", kStructureTag.size());
  Open& around = open_.back();
  if (around.part == Part::kList) {
    if (!around.element.empty() && around.element != name) {
      return Break("a structure of the list's type", kStructureTag.size());
    }
    if (around.element.empty()) around.element = name;
  }
  name_ = name;
  length_ = kStructureTag.size() + name.size() + kNameEnd.size();
  return Begin(Event::kStructure, Part::kStructure);
}

DocumentReader::Event DocumentReader::Break(const char* expected, std::size_t offset) {
  problem_ = "byte " + std::to_string(window_.Position() + offset) + ": expected " + expected;
  is_over_ = true;
  return Event::kBroken;
}

// Something else than what can come next is at the front, or nothing at all.
DocumentReader::Event DocumentReader::BreakUnexpected(const char* expected) {
  Break(expected);
  if (window_.Bytes().empty()) problem_ += ", got the end of the input";
  return Event::kBroken;
}

// The name at `offset`, which `">` and a line end follow. It stays valid until the window moves.
bool DocumentReader::NameAt(std::size_t offset, std::string_view& name) {
  std::size_t end = offset;
  for (;;) {
    const std::string_view bytes = window_.Bytes();
    while (end < bytes.size() && IsNameCharacter(bytes[end])) {
      if (++end - offset > kLongestName) return false;
    }
    if (end < bytes.size()) break;
    if (!window_.More()) return false;
  }
  if (end == offset || !window_.Matches(end, kNameEnd)) return false;
  name = window_.Bytes().substr(offset, end - offset);
  return true;
}

// Whether none of the first `count` of names_ is this one. A structure has no field of a name that a
// structure around it has.
bool DocumentReader::IsNewName(std::string_view name, std::size_t count) const {
  const auto end = names_.begin() + static_cast<std::ptrdiff_t>(count);
  return std::find(names_.begin(), end, name) == end;
}

// Whether the tag at `offset` begins a field, with a name that the first `count` of names_ lack and with
// content: no field without any follows a text.
bool DocumentReader::FieldFits(std::size_t offset, std::size_t count) {
  std::string_view name;
  if (!NameAt(offset + kFieldTag.size(), name) || !IsNewName(name, count)) return false;
  const std::size_t value = offset + kFieldTag.size() + name.size() + kNameEnd.size();
  const std::string_view contents[] = {kStringTag, kIntegerTag, kBooleanTag, kListTag};
  return std::any_of(std::begin(contents), std::end(contents),
                     [&](std::string_view content) { return window_.Matches(value, content); });
}

// Whether the tag at `offset` begins a structure that can be the list's next.
bool DocumentReader::StructureFits(const Open& list, std::size_t offset, std::size_t count) {
  std::string_view name;
  if (!NameAt(offset + kStructureTag.size(), name) || name != list.element) return false;
  const std::size_t content = offset + kStructureTag.size() + name.size() + kNameEnd.size();
  return window_.Matches(content, kStructureEnd) ||
         (window_.Matches(content, kFieldTag) && FieldFits(content, count));
}

// Whether the innermost of the first `depth` open parts is an element of a document that is a list. Such an
// element has one field.
bool DocumentReader::IsItem(std::size_t depth) const {
  return depth == 3 && open_[1].part == Part::kList;
}

// Whether what is at `offset` can follow the field that is open.
bool DocumentReader::FitsAfterField(std::size_t offset) {
  std::size_t depth = open_.size() - 1;  // how many of open_ are still open at `offset`
  for (;;) {
    const Open& around = open_[depth - 1];
    const std::size_t names = open_[depth].first_name;  // how many of names_ are still in use at `offset`
    std::string_view end;
    switch (around.part) {
      case Part::kDocument:
        return window_.Matches(offset, kDocumentEnd) && EndsDocument(offset + kDocumentEnd.size());
      case Part::kList:
        if (window_.Matches(offset, kStructureTag)) return StructureFits(around, offset, names);
        end = kListEnd;
        break;
      case Part::kStructure:
        if (window_.Matches(offset, kFieldTag)) return !IsItem(depth) && FieldFits(offset, names);
        end = kStructureEnd;
        break;
      case Part::kField:
        end = kFieldEnd;
        break;
    }
    if (!window_.Matches(offset, end)) return false;
    offset += end.size();
    --depth;
  }
}

// Whether the end of a document just ahead of `offset` is the one that the program wrote: no further end
// comes before the next document begins.
bool DocumentReader::EndsDocument(std::size_t offset) {
  const std::uint64_t position = window_.Position();
  if (mark_ >= position + offset) return !mark_is_end_;
  std::size_t at = offset;
  while (at - offset < kEndLookAhead) {
    const std::string_view bytes = window_.Bytes();
    const std::size_t tag = bytes.find('<', at);
    if (tag == std::string_view::npos) {
      at = bytes.size();
      if (!window_.More()) return true;
      continue;
    }
    at = tag;
    mark_is_end_ = window_.Matches(at, kDocumentEnd);
    if (mark_is_end_ || window_.Matches(at, kDocumentHead)) {
      mark_ = position + at;
      return !mark_is_end_;
    }
    ++at;
  }
  return true;
}

}  // namespace zfc_json
