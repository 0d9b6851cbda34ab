#include "unit/simulator/source_path.h"

// The only source that holds the checkout's path: all others compile the same everywhere.
std::string SourcePath(const std::string& name) {
  return ZFC_SOURCE_DIR "/" + name;
}
