/* The baseline of `adapter list`: the same library calls and the same bytes, with nothing of the program
   around them. What the program costs above this is what its tree, words and serializer cost. */
#include <fcntl.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <unistd.h>

uint32_t TORPI_Initialize(uint32_t, uint32_t);
uint32_t TORPI_SetToolID(uint32_t);
uint32_t TORPI_SetToolVersion(uint32_t, uint32_t, uint32_t, uint32_t);
uint32_t TORPI_Uninitialize(void);
const char* TORPI_GetAdapterList(void);

enum { kFirstAdapter = 8, kSerialNumber = 0, kModel = 156, kNextAdapter = 392 };

static const char* Pointer(const char* record, size_t offset) {
  return *(const char* const*)(record + offset);
}

int main(void) {
  FILE* const standard_output = stdout;
  const int descriptor = open("/var/tmp/torpi-output.log", O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW, 0666);
  if (descriptor < 0) return 1;
  stdout = fdopen(descriptor, "a+");
  printf("FC ESXCLI Debug level = %ld\n", 0L);
  printf("TORPI Debug level = %d\n", 0);
  TORPI_Initialize(0, 0);
  TORPI_SetToolID(11);
  TORPI_SetToolVersion(1, 9, 0, 0);
  fclose(stdout);
  stdout = standard_output;

  const char* const list = TORPI_GetAdapterList();
  printf("<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n<list type=\"structure\">\n");
  for (const char* adapter = Pointer(list, kFirstAdapter); adapter != NULL;
       adapter = Pointer(adapter, kNextAdapter)) {
    printf("<structure typeName=\"AdapterList\">\n<field name=\"Adapters\">\n");
    printf("<string>Adapter_%.32s_%.32s</string></field>\n</structure>\n", adapter + kModel,
           adapter + kSerialNumber);
  }
  printf("</list>\n</output>\n");
  TORPI_Uninitialize();
  return 0;
}
