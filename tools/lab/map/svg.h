// Shapes of an SVG picture. All places and sizes are in pixels.
#pragma once

#include <string>
#include <string_view>

#include "tools/lab/map/text_width.h"

namespace map {

struct Box {
  int x, y, width, height;

  int Right() const { return x + width; }
  int Bottom() const { return y + height; }
};

// How a text looks: its style class, its face and its size.
struct Style {
  const char* name;
  Face face;
  int size;
};

class Svg {
 public:
  void Rectangle(const char* style, const Box& box, int radius);

  // A text that begins at x, cut to the width; where it is cut, the whole text shows up under the pointer.
  void Text(const Style& style, int x, int baseline, int width, std::string_view clean);
  // A text that ends at x.
  void TextUpTo(const Style& style, int x, int baseline, int width, std::string_view clean);

  void Line(const char* style, int x1, int y1, int x2, int y2);
  void Path(const char* style, std::string_view data);
  void Disc(const char* style, int radius);  // around the origin

  // What follows, up to End, is one thing with this name.
  void Begin(std::string_view clean_title);
  // What follows, up to End, has its origin there.
  void Begin(int x, int y);
  void End();

  // Elements without user text.
  void Raw(std::string_view xml) { body_ += xml; }

  const std::string& Body() const { return body_; }

 private:
  void PutText(const Style& style, const char* anchor, int x, int baseline, int width,
               std::string_view clean);

  std::string body_;
};

}  // namespace map
