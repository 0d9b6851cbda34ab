// The report of a pluggable module, a second time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace reference {

// What the report says about the first `limit` bytes of an image.
std::string SfpReport(const std::uint8_t* bytes, std::size_t limit);

// The documents of `dmi get` and of `dmi getraw` for an image of 512 bytes.
std::string SfpDocument(bool xml, const std::uint8_t* image);
std::string SfpRawDocument(bool xml, const std::uint8_t* image);

}  // namespace reference
