// The distribution's YAML archive is compiled for executables: it reaches this flag of the C library by a
// relative address, which a shared library can't. A hidden copy of its own gives it one. Zero means that
// there may be other threads, which is always safe: reference counts are then kept by atomic operations.
extern "C" __attribute__((visibility("hidden"))) char __libc_single_threaded;
char __libc_single_threaded = 0;
