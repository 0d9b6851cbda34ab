/* `lun list` as one writes it first in C: the same library calls, the same walk and the same bytes, with one
   formatted print for each LUN. */
#include "plain_session.h"

static void ListLuns(const char* protocol, const char* target) {
  const unsigned char* const port = (const unsigned char*)protocol + kPortName;
  const unsigned char* const name = (const unsigned char*)target + kPortName;
  const char* const word = (target[kTargetFlags] & kNvmeFlag) != 0 ? "NSID" : "LUN";
  char prefix[80];
  snprintf(prefix, sizeof prefix,
           "FC_%02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x_Target_%02x:%02x:%02x:%02x:%02x:%02x:%02x:%02x",
           port[0], port[1], port[2], port[3], port[4], port[5], port[6], port[7], name[0], name[1], name[2],
           name[3], name[4], name[5], name[6], name[7]);
  for (const char* lun = Pointer(target, kFirstLun); lun != NULL; lun = Pointer(lun, kNextLun)) {
    printf(
        "<structure typeName=\"LunList\">\n<field name=\"LUNs/Namespaces\">\n"
        "<string>%s_%s_%u</string></field>\n</structure>\n",
        prefix, word, LunNumber(lun));
  }
}

int main(void) {
  if (!BeginSession()) return 1;
  printf("<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n<list type=\"structure\">\n");
  VisitTargets(&ListLuns);
  printf("</list>\n</output>\n");
  TORPI_Uninitialize();
  return 0;
}
