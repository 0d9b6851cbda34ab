// The pairs of a Vital Product Data image (PCI), a second time.
#pragma once

#include <cstdint>
#include <string>

namespace reference {

// The document of `vpd get` for the first `size` bytes of an image.
std::string VpdDocument(bool xml, const std::uint8_t* image, std::size_t size);

}  // namespace reference
