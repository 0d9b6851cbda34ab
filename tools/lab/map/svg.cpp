#include "tools/lab/map/svg.h"

#include "tools/lab/view/text.h"

namespace map {
namespace {

std::string Attribute(const char* name, int value) {
  return std::string(" ") + name + "=\"" + std::to_string(value) + '"';
}

std::string Attribute(const char* name, std::string_view value) {
  return std::string(" ") + name + "=\"" + std::string(value) + '"';
}

}  // namespace

void Svg::Rectangle(const char* style, const Box& box, int radius) {
  body_ += "<rect" + Attribute("class", style) + Attribute("x", box.x) + Attribute("y", box.y) +
           Attribute("width", box.width) + Attribute("height", box.height) + Attribute("rx", radius) + "/>\n";
}

void Svg::Text(const Style& style, int x, int baseline, int width, std::string_view clean) {
  PutText(style, "", x, baseline, width, clean);
}

void Svg::TextUpTo(const Style& style, int x, int baseline, int width, std::string_view clean) {
  PutText(style, "end", x, baseline, width, clean);
}

void Svg::PutText(const Style& style, const char* anchor, int x, int baseline, int width,
                  std::string_view clean) {
  if (clean.empty()) return;
  const std::string shown = Fitted(clean, style.face, style.size, width);
  body_ += "<text" + Attribute("class", style.name) + Attribute("font-size", style.size) + Attribute("x", x) +
           Attribute("y", baseline) + (*anchor != '\0' ? Attribute("text-anchor", anchor) : "") + ">";
  if (shown != clean) body_ += "<title>" + view::XmlText(clean) + "</title>";
  body_ += view::XmlText(shown) + "</text>\n";
}

void Svg::Line(const char* style, int x1, int y1, int x2, int y2) {
  body_ += "<line" + Attribute("class", style) + Attribute("x1", x1) + Attribute("y1", y1) +
           Attribute("x2", x2) + Attribute("y2", y2) + "/>\n";
}

void Svg::Path(const char* style, std::string_view data) {
  body_ += "<path" + Attribute("class", style) + Attribute("d", data) + "/>\n";
}

void Svg::Disc(const char* style, int radius) {
  body_ += "<circle" + Attribute("class", style) + Attribute("r", radius) + "/>\n";
}

void Svg::Begin(std::string_view clean_title) {
  body_ += "<g><title>" + view::XmlText(clean_title) + "</title>\n";
}

void Svg::Begin(int x, int y) {
  body_ +=
      "<g" + Attribute("transform", "translate(" + std::to_string(x) + ',' + std::to_string(y) + ')') + ">";
}

void Svg::End() {
  body_ += "</g>\n";
}

}  // namespace map
