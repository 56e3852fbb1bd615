#pragma once

/// For loops that the compiler's vectoriser takes: without branches, over arrays of a fixed size.
/// A function marked CORVANTA_VECTOR_CLONES is compiled for several instruction sets, and the
/// widest that the machine has is chosen when the library loads. Only operations that IEEE 754
/// rounds correctly may be in it; since nothing is fused, the clones then agree to the bit.
/// Not under the thread sanitizer: the choice is made before the sanitizer's run time is there.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define CORVANTA_VECTOR_CLONES \
  __attribute__((target_clones("avx512f", "avx2", "default"), visibility("hidden")))
#else
#define CORVANTA_VECTOR_CLONES
#endif

/// For what such a function calls: a call that isn't inlined keeps a loop from being vectorised.
#if defined(__GNUC__)
#define CORVANTA_INTO_CLONES __attribute__((always_inline)) inline
#else
#define CORVANTA_INTO_CLONES inline
#endif
