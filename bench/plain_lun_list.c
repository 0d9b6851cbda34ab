/* The baseline of `lun list`: the same library calls, the same walk and the same bytes, with nothing of the
   program around them. With the word "walk" it only walks: what the device library costs by itself. */
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

/* Where the pointers of the records stand. */
enum { kFirst = 8, kAdapterPorts = 384, kNextAdapter = 392, kPortProtocols = 8, kNextPort = 16 };
enum { kFirstTarget = 2000, kNextProtocol = 2680, kFirstLun = 232, kNextTarget = 1488, kNextLun = 384 };
enum { kPortName = 8, kTargetFlags = 197 };

static const char* Pointer(const char* record, size_t offset) {
  return *(const char* const*)(record + offset);
}

static void ListLuns(const char* protocol, const char* target, int is_walk) {
  const unsigned char* const port = (const unsigned char*)protocol + kPortName;
  const unsigned char* const name = (const unsigned char*)target + kPortName;
  const char* const word = (target[kTargetFlags] & 8) != 0 ? "NSID" : "LUN";
  char prefix[80];
  snprintf(prefix, sizeof prefix,
           "FC_%02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x_Target_%02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x",
           port[0], port[1], port[2], port[3], port[4], port[5], port[6], port[7], name[0], name[1], name[2],
           name[3], name[4], name[5], name[6], name[7]);
  for (const char* lun = Pointer(target, kFirstLun); lun != NULL; lun = Pointer(lun, kNextLun)) {
    if (is_walk) continue;
    printf(
        "<structure typeName=\"LunList\">\n<field name=\"LUNs/Namespaces\">\n"
        "<string>%s_%s_%u</string></field>\n</structure>\n",
        prefix, word, *(const uint16_t*)lun);
  }
}

static void WalkProtocols(const char* port, int is_walk) {
  const char* const list = Pointer(port, kPortProtocols);
  for (const char* protocol = Pointer(list, kFirst); protocol != NULL;
       protocol = Pointer(protocol, kNextProtocol)) {
    for (const char* target = Pointer(protocol, kFirstTarget); target != NULL;
         target = Pointer(target, kNextTarget)) {
      ListLuns(protocol, target, is_walk);
    }
  }
}

int main(int argc, char** argv) {
  (void)argv;
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
  for (const char* adapter = Pointer(list, kFirst); adapter != NULL;
       adapter = Pointer(adapter, kNextAdapter)) {
    const char* const ports = Pointer(adapter, kAdapterPorts);
    for (const char* port = Pointer(ports, kFirst); port != NULL; port = Pointer(port, kNextPort)) {
      WalkProtocols(port, argc > 1);
    }
  }
  printf("</list>\n</output>\n");
  TORPI_Uninitialize();
  return 0;
}
