/* What the plain C programs of the list benchmarks have in common: the library calls of a session, and the
   way through the library's records. */
#pragma once

#include <fcntl.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

uint32_t TORPI_Initialize(uint32_t, uint32_t);
uint32_t TORPI_SetToolID(uint32_t);
uint32_t TORPI_SetToolVersion(uint32_t, uint32_t, uint32_t, uint32_t);
uint32_t TORPI_Uninitialize(void);
const char* TORPI_GetAdapterList(void);

/* Where the records have their pointers, names and flags. */
enum { kFirst = 8, kAdapterPorts = 384, kNextAdapter = 392, kPortProtocols = 8, kNextPort = 16 };
enum { kFirstTarget = 2000, kNextProtocol = 2680, kFirstLun = 232, kNextTarget = 1488, kNextLun = 384 };
enum { kPortName = 8, kTargetFlags = 197, kNvmeFlag = 8 };

static inline const char* Pointer(const char* record, size_t offset) {
  return *(const char* const*)(record + offset);
}

static inline unsigned LunNumber(const char* lun) {
  return *(const uint16_t*)lun;
}

/* Begins a session as the program does: in a bracket, with the library output file as standard output. */
static inline int BeginSession(void) {
  FILE* const standard_output = stdout;
  const int descriptor = open("/var/tmp/torpi-output.log", O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW, 0666);
  if (descriptor < 0) return 0;
  stdout = fdopen(descriptor, "a+");
  printf("FC ESXCLI Debug level = %ld\n", 0L);
  printf("TORPI Debug level = %d\n", 0);
  TORPI_Initialize(0, 0);
  TORPI_SetToolID(11);
  TORPI_SetToolVersion(1, 9, 0, 0);
  fclose(stdout);
  stdout = standard_output;
  return 1;
}

/* Calls visit(protocol, target) for every target. */
static inline void VisitTargets(void (*visit)(const char* protocol, const char* target)) {
  const char* const list = TORPI_GetAdapterList();
  for (const char* adapter = Pointer(list, kFirst); adapter != NULL;
       adapter = Pointer(adapter, kNextAdapter)) {
    const char* const ports = Pointer(adapter, kAdapterPorts);
    for (const char* port = Pointer(ports, kFirst); port != NULL; port = Pointer(port, kNextPort)) {
      const char* const protocols = Pointer(port, kPortProtocols);
      for (const char* protocol = Pointer(protocols, kFirst); protocol != NULL;
           protocol = Pointer(protocol, kNextProtocol)) {
        for (const char* target = Pointer(protocol, kFirstTarget); target != NULL;
             target = Pointer(target, kNextTarget)) {
          visit(protocol, target);
        }
      }
    }
  }
}
