#include "reference/families.h"

namespace reference {

Families::Families(const Record& port)
    : aster(false),
      birch(false),
      cedar(false),
      dahlia(false),
      elm(false),
      elm_only(false),
      fern(false),
      ginkgo(false),
      hazel(false),
      iris(false) {
  if (port.U16(28) != 0x1C9E) return;
  switch (port.U16(30)) {
    case 0x3A02:
    case 0x3A12:
    case 0x5C02:
    case 0x5C12:
      aster = true;
      break;
    case 0x3B40:
    case 0x3B41:
      birch = true;
      break;
    case 0x7102:
      cedar = true;
      break;
    case 0x7122:
      cedar = ginkgo = true;
      break;
    case 0x7132:
    case 0x7932:
      cedar = elm = fern = true;
      break;
    case 0x3432:
    case 0x3C32:
      elm = elm_only = true;
      break;
    case 0x3522:
    case 0x3D22:
    case 0x3D62:
      hazel = true;
      break;
    case 0x3150:
    case 0x3350:
    case 0x3850:
    case 0x3950:
      iris = true;
      break;
    case 0x3640:
    case 0x3648:
    case 0x3740:
    case 0x3748:
    case 0x3A40:
    case 0x3A48:
    case 0x3B48:
    case 0x3E40:
    case 0x3E48:
    case 0x3F40:
    case 0x3F48:
      dahlia = true;
      break;
    default:
      break;
  }
  // The one device of two families.
  if (port.U16(30) == 0x3B40) dahlia = true;
}

}  // namespace reference
