// The host that is played when no host file is named.
#pragma once

namespace lab {

// The text of builtin_host.yaml.
extern const char kBuiltinHost[];

}  // namespace lab
