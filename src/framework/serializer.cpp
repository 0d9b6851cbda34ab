#include "framework/serializer.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "framework/code_text.h"
#include "framework/inline_text.h"

namespace {

constexpr const char* kRuler = "****************************************************\n";

}  // namespace

StatusCode Serializer::Print(const char* xml_format, const char* cli_format, ...) const {
  if (mode_ != OUTPUT_XML && mode_ != OUTPUT_CLI) return kBadMode;
  va_list arguments;
  va_start(arguments, cli_format);
  std::vprintf(mode_ == OUTPUT_XML ? xml_format : cli_format, arguments);
  va_end(arguments);
  return kSuccess;
}

StatusCode Serializer::Open(OutputMode mode) {
  mode_ = mode;
  open_count_ = 0;
  const StatusCode status = Print("<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n", kRuler);
  if (status == kSuccess) {
    end_document_.Plan(&EndDocument, this);
  } else {
    end_document_.Drop();
  }
  return status;
}

StatusCode Serializer::Close() {
  const StatusCode status = Print("</output>\n", kRuler);
  if (status == kSuccess) mode_ = OUTPUT_NONE;
  end_document_.Drop();
  return status;
}

StatusCode Serializer::Began(StatusCode status, Part part) {
  if (status == kSuccess && open_count_ < kMostOpen) open_[open_count_++] = part;
  return status;
}

StatusCode Serializer::Ended(StatusCode status, Part part) {
  const bool is_innermost = open_count_ > 0 && open_[open_count_ - 1] == part;
  if (status == kSuccess && is_innermost) --open_count_;
  return status;
}

void Serializer::EndDocument(void* serializer) {
  auto& self = *static_cast<Serializer*>(serializer);
  while (self.open_count_ > 0) {
    switch (self.open_[self.open_count_ - 1]) {
      case Part::kList:
        self.Serializer::EndList();
        break;
      case Part::kStructure:
        self.Serializer::EndStructure();
        break;
      case Part::kField:
        self.Serializer::EndField();
        break;
    }
  }
  self.Serializer::Close();
}

StatusCode Serializer::BeginList(ListKind kind) {
  static constexpr InlineText<9> kTypes[] = {"string", "int", "bool", "structure"};
  if (kind >= std::size(kTypes)) return mode_ == OUTPUT_CLI ? kSuccess : kBadMode;
  return Began(Print("<list type=\"%s\">\n", "", kTypes[kind].CString()), Part::kList);
}

StatusCode Serializer::EndList() {
  return Ended(Print("</list>\n", ""), Part::kList);
}

StatusCode Serializer::WriteStringList(const std::vector<std::string>& values) {
  for (const std::string& value : values) Print("<string>%s</string>", "%s,", value.c_str());
  return Print("", "\n");
}

StatusCode Serializer::WriteIntList(const std::vector<std::int32_t>& values) {
  for (const std::int32_t value : values) Print("<int>%d</int>", "%d,", value);
  return Print("", "\n");
}

StatusCode Serializer::WriteBoolList(const std::vector<bool>& values) {
  for (const bool value : values) Print("<bool>%s</bool>", "%s,", BoolText(value));
  return Print("", "\n");
}

StatusCode Serializer::BeginStructure(const char* name) {
  return Began(Print("<structure typeName=\"%s\">\n", "%s:\n", name), Part::kStructure);
}

StatusCode Serializer::EndStructure() {
  return Ended(Print("</structure>\n", ""), Part::kStructure);
}

StatusCode Serializer::BeginField(const char* name) {
  return Began(Print("<field name=\"%s\">\n", "%s: ", name), Part::kField);
}

StatusCode Serializer::EndField() {
  return Ended(Print("</field>\n", ""), Part::kField);
}

StatusCode Serializer::WriteStringField(const char* name, const char* value) {
  return Print("<field name=\"%s\">\n<string>%s</string></field>\n", "%s: %s\n", name, value);
}

StatusCode Serializer::WriteIntField(const char* name, std::int64_t value, IntKind kind) {
  const StatusCode status = BeginField(name);
  switch (kind) {
    case kSigned32:
      Print("<int>%d</int>", "%d\n", static_cast<std::int32_t>(value));
      break;
    case kUnsigned32:
      Print("<int>%u</int>", "%u\n", static_cast<std::uint32_t>(value));
      break;
    case kSigned64:
      Print("<int>%lld</int>", "%lld\n", static_cast<long long>(value));
      break;
    case kUnsigned64:
      Print("<int>%llu</int>", "%llu\n", static_cast<unsigned long long>(value));
      break;
    case kHexadecimal32:
      Print("<int>%d</int>", "%x\n", static_cast<std::int32_t>(value));
      break;
  }
  EndField();
  return status;
}

StatusCode Serializer::WriteBoolField(const char* name, bool value) {
  return Print("<field name=\"%s\">\n<bool>%s</bool></field>\n", "%s: %s\n", name, BoolText(value));
}

StatusCode Serializer::WriteFormatted(std::size_t limit, const char* format, ...) {
  struct Free {
    void operator()(char* text) const { std::free(text); }
  };
  const std::unique_ptr<char, Free> text(static_cast<char*>(std::calloc(limit + 1, 1)));
  if (text == nullptr || limit + 1 == 0) return kMemoryError;
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.get(), limit + 1, format, arguments);
  va_end(arguments);
  return Print("<string>%s</string>", "%s", text.get());
}

Serializer::ItemFrame Serializer::FrameOfItem(const char* structure, const char* field) const {
  ItemFrame frame;
  if (mode_ == OUTPUT_XML) {
    frame.before.append("<structure typeName=\"").append(structure);
    frame.before.append("\">\n<field name=\"").append(field).append("\">\n<string>");
    frame.after = "</string></field>\n</structure>\n";
  } else {
    frame.before.append(structure).append(":\n").append(field).append(": ");
    frame.after = "\n";
  }
  return frame;
}

StatusCode Serializer::WriteText(std::string_view text) const {
  if (mode_ != OUTPUT_XML && mode_ != OUTPUT_CLI) return kBadMode;
  fwrite_unlocked(text.data(), 1, text.size(), stdout);  // one thread runs everything
  return kSuccess;
}
