// Documents as the program writes them, for the tests of what reads them.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace zfc_json {

inline constexpr std::string_view kHeadText = "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n";

// A field with a text.
inline std::string StringField(std::string_view name, std::string_view value) {
  std::string text = "<field name=\"";
  return text.append(name).append("\">\n<string>").append(value).append("</string></field>\n");
}

// A structure of this type with the fields given.
inline std::string StructureText(std::string_view type, std::string_view fields) {
  std::string text = "<structure typeName=\"";
  return text.append(type).append("\">\n").append(fields).append("</structure>\n");
}

inline std::string ListText(std::string_view elements) {
  std::string text = "<list type=\"structure\">\n";
  return text.append(elements).append("</list>\n");
}

inline std::string ListField(std::string_view name, std::string_view elements) {
  std::string text = "<field name=\"";
  return text.append(name).append("\">\n").append(ListText(elements)).append("</field>\n");
}

inline std::string DocumentText(std::string_view content) {
  std::string text(kHeadText);
  return text.append(content).append("</output>\n");
}

// The document of a report.
inline std::string ReportText(std::string_view report) {
  return DocumentText(StructureText(
      "LunInformation", StringField("Message", "Success") +
                            ListField("LunInfo", StructureText("LunInfoList", StringField("Data", report)))));
}

// The document of a list of LUNs.
inline std::string LunListText(std::initializer_list<std::string_view> luns) {
  std::string elements;
  for (const std::string_view lun : luns) {
    elements += StructureText("LunList", StringField("LUNs/Namespaces", lun));
  }
  return DocumentText(ListText(elements));
}

}  // namespace zfc_json
