// Lets an allocation that cannot be had fail under AddressSanitizer as it does without it: tests ask for
// such.
#ifdef __has_feature
#if __has_feature(address_sanitizer)
#define ZFC_WITH_ADDRESS_SANITIZER
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define ZFC_WITH_ADDRESS_SANITIZER
#endif

#ifdef ZFC_WITH_ADDRESS_SANITIZER
// Looked up by the sanitizer's own library, so it has to be seen from outside.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif
