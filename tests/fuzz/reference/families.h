// The adapter families of a port, by the identity at byte 28 of its record, a second time.
#pragma once

#include "reference/text.h"

namespace reference {

struct Families {
  explicit Families(const Record& port);

  bool aster;
  bool birch;
  bool cedar;
  bool dahlia;
  bool elm;
  bool elm_only;
  bool fern;
  bool ginkgo;
  bool hazel;
  bool iris;

  // The families that have congestion management, NVMe and lockdown.
  bool Managed() const { return hazel || iris || dahlia; }
};

}  // namespace reference
