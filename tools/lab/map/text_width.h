// How wide a text is drawn, without a font at hand.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace map {

enum class Face { kPlain, kBold, kMono };

// An upper estimate in pixels: the widths are those of a wide typeface, and most readers have a narrower one.
int TextWidth(std::string_view clean, Face face, int size);

// The text, or as much of it as fits with an ellipsis at its end.
std::string Fitted(std::string_view clean, Face face, int size, int width);

// The text on lines that fit, broken at blanks; what no line is left for ends in an ellipsis.
std::vector<std::string> Wrapped(std::string_view clean, Face face, int size, int width, std::size_t lines);

}  // namespace map
