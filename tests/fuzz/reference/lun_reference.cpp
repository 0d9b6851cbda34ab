#include "reference/lun_reference.h"

#include <algorithm>

#include "reference/text.h"

namespace reference {

std::string LunDocument(bool xml, const void* bytes, bool nvme) {
  const Record lun(bytes);
  Report report(4096);
  report.First("Vendor ID", lun.Text(14, 8));
  report.Line("Product ID", lun.Text(22, 16));
  report.Line("Product Revision", nvme ? lun.Text(80, 8) : lun.Text(88, 4));
  report.Number(nvme ? "Namespace ID" : "Lun Number", lun.U16(0));
  if (nvme) {
    report.Number("Namespace Size In MB", lun.U64(365));
  } else {
    report.Number("Lun Size In MB", lun.U32(38));
  }
  const std::size_t length = std::min<std::size_t>(lun.U8(nvme ? 364 : 75), 32);
  const bool none = length == 0 || lun.AllAre(43, 32, 0);
  report.Line("Lun Worldwide Unique ID", none ? "NA" : lun.Octets(43, length, ":"));
  return ReportDocument(xml, {"LunInformation", "LunInfo", "LunInfoList"}, report.Text());
}

}  // namespace reference
