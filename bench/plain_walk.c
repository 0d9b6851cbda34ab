/* Only walks the library's lists and writes nothing: what the device library costs by itself. Without a word
   it reads every LUN, with "targets" every target, with "last" every target and the LUNs of the last one. */
#include <string.h>

#include "plain_session.h"

/* The compiler would leave out a walk whose result nothing uses. */
static volatile unsigned read_last;
static const char* last_target;

static void WalkLuns(const char* target) {
  for (const char* lun = Pointer(target, kFirstLun); lun != NULL; lun = Pointer(lun, kNextLun)) {
    read_last = LunNumber(lun);
  }
}

static void VisitLuns(const char* protocol, const char* target) {
  (void)protocol;
  WalkLuns(target);
}

static void VisitTarget(const char* protocol, const char* target) {
  (void)protocol;
  read_last = (unsigned char)target[kPortName];
  last_target = target;
}

int main(int argc, char** argv) {
  if (!BeginSession()) return 1;
  VisitTargets(argc > 1 ? &VisitTarget : &VisitLuns);
  if (argc > 1 && strcmp(argv[1], "last") == 0 && last_target != NULL) WalkLuns(last_target);
  TORPI_Uninitialize();
  return 0;
}
