#pragma once
// DC_ADDRESS_SANITIZER is defined when the test is built with AddressSanitizer,
// whichever compiler builds it (GCC defines __SANITIZE_ADDRESS__, Clang answers
// __has_feature).
#if defined(__SANITIZE_ADDRESS__)
#define DC_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define DC_ADDRESS_SANITIZER 1
#endif
#endif
