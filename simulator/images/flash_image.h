// Flash images: a text format that docs/lab-host.md describes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "device/host.h"

namespace lab {

struct FlashImage {
  struct Component {
    const FlashComponent* component;
    ComponentVersion version;
  };

  std::string version;
  std::string firmware, bios, efi, fcode;  // empty: left as it is
  std::string build_date;                  // eight digits
  ComponentVersion family_firmware{};
  std::vector<Component> components;
  std::uint32_t result = 0;  // what the update answers: 0, 201 or 205
};

// Reads the file and checks it as the adapter would. Returns 0, or the result that refuses it.
std::uint32_t ReadFlashImage(const char* file, ImageKind kind, const Adapter& adapter, FlashImage& out);

// Writes an image that was read for this adapter to its flash: versions, components and what the memo block
// says about the image.
void ApplyFlashImage(const FlashImage& image, Adapter& adapter);

}  // namespace lab
