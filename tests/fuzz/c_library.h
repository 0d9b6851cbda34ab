// For targets that put functions of their own in the place of the C library's.
#pragma once

#include <dlfcn.h>

// The C library's own function of this name and type.
template <class Function>
Function* CLibrarys(const char* name, Function*) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
