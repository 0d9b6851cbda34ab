/* A device library that costs as little as one with many LUNs can: 8 ports with 256 targets of 64 LUNs each,
   or as many LUNs as BENCH_LUNS says, in records that hold what the lists need, in memory that is taken once.
 */
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

enum { kPorts = 8, kTargets = 256, kLuns = 64, kMostLuns = 1024 };

typedef struct Lun {
  uint16_t number;
  char reserved_2[382];
  const struct Lun* next;
} Lun;

typedef struct Target {
  uint8_t node_name[8];
  uint8_t port_name[8];
  char reserved_16[216];
  const Lun* luns;
  char reserved_240[1248];
  const struct Target* next;
} Target;

typedef struct Protocol {
  uint8_t node_name[8];
  uint8_t port_name[8];
  char reserved_16[1984];
  const Target* targets;
  char reserved_2008[668];
  uint32_t type;
  const struct Protocol* next;
} Protocol;

typedef struct {
  const void* reserved;
  const void* first;
} List;

typedef struct Port {
  uint32_t number;
  const List* protocols;
  const struct Port* next;
} Port;

typedef struct {
  char serial_number[32];
  char reserved_32[124];
  char model[32];
  char reserved_188[196];
  const List* ports;
  const void* next;
} Adapter;

_Static_assert(offsetof(Lun, next) == 384, "LUN");
_Static_assert(offsetof(Target, luns) == 232 && offsetof(Target, next) == 1488, "target");
_Static_assert(offsetof(Protocol, targets) == 2000 && offsetof(Protocol, type) == 2676, "protocol entry");
_Static_assert(offsetof(Protocol, next) == 2680, "protocol entry");
_Static_assert(offsetof(Port, protocols) == 8 && offsetof(Port, next) == 16, "port");
_Static_assert(offsetof(Adapter, model) == 156 && offsetof(Adapter, ports) == 384, "adapter");

static Protocol protocols[kPorts];
static List protocol_lists[kPorts];
static Port ports[kPorts];
static List port_list = {NULL, ports};
static Adapter adapter = {"AB12345", {0}, "ZX100", {0}, &port_list, NULL};
static List adapter_list = {NULL, &adapter};

static void Name(uint8_t* name, unsigned port, unsigned target) {
  const uint8_t bytes[8] = {0x50, 0x00, 0x0e, 0x11, (uint8_t)port, 0x00, 0x00, (uint8_t)target};
  for (unsigned i = 0; i < sizeof bytes; ++i) name[i] = bytes[i];
}

static unsigned LunsOfATarget(void) {
  const char* const wanted = getenv("BENCH_LUNS");
  const long luns = wanted == NULL ? kLuns : strtol(wanted, NULL, 10);
  return luns >= 1 && luns <= kMostLuns ? (unsigned)luns : kLuns;
}

static const void* BuildLists(void) {
  const unsigned luns = LunsOfATarget();
  Target* target = calloc((size_t)kPorts * kTargets, sizeof *target);
  Lun* lun = calloc((size_t)kPorts * kTargets * luns, sizeof *lun);
  if (target == NULL || lun == NULL) return NULL;
  for (unsigned p = 0; p < kPorts; ++p) {
    ports[p].number = p;
    ports[p].protocols = &protocol_lists[p];
    ports[p].next = p + 1 < kPorts ? &ports[p + 1] : NULL;
    protocol_lists[p].first = &protocols[p];
    protocols[p].targets = target;
    Name(protocols[p].port_name, p, 0);
    for (unsigned t = 0; t < kTargets; ++t, ++target) {
      Name(target->port_name, p, t);
      target->luns = lun;
      target->next = t + 1 < kTargets ? target + 1 : NULL;
      for (unsigned n = 0; n < luns; ++n, ++lun) {
        lun->number = (uint16_t)n;
        lun->next = n + 1 < luns ? lun + 1 : NULL;
      }
    }
  }
  return &adapter_list;
}

uint32_t TORPI_Initialize(uint32_t level, uint32_t zero) {
  return level & zero;
}
uint32_t TORPI_SetToolID(uint32_t tool) {
  return tool & 0;
}
uint32_t TORPI_SetToolVersion(uint32_t major, uint32_t minor, uint32_t a, uint32_t b) {
  return (major | minor | a | b) & 0;
}
uint32_t TORPI_Uninitialize(void) {
  return 0;
}
const void* TORPI_GetAdapterList(void) {
  static const void* list;
  if (list == NULL) list = BuildLists();
  return list;
}
