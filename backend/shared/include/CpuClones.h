#pragma once
// DC_AVX2_CLONES compiles a function twice, for AVX2 and for any x86-64, and
// picks one when the library is loaded (an ifunc resolver). ThreadSanitizer
// cannot run such a resolver before it has started, so its builds keep the
// plain version only; the two versions give the same bits anyway.
#if defined(__SANITIZE_THREAD__)
#define DC_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define DC_THREAD_SANITIZER 1
#endif
#endif

#ifdef DC_THREAD_SANITIZER
#define DC_AVX2_CLONES
#else
#define DC_AVX2_CLONES __attribute__((target_clones("avx2", "default")))
#endif
