// The report of a LUN or a namespace, a second time.
#pragma once

#include <string>

namespace reference {

// The document of `lun info get` for a record of 392 bytes, of an FCP or an NVMe target.
std::string LunDocument(bool xml, const void* bytes, bool nvme);

}  // namespace reference
