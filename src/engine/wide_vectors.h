// A second machine form of the hot loops, for processors with vectors of 32 bytes. Its instructions round as
// those of the first form, and none joins a product and a sum, so both forms give the same bits.
#pragma once

#if defined(__x86_64__)
#define NIVORA_WIDE_VECTORS [[gnu::target("avx2"), gnu::flatten]]
#else
#define NIVORA_WIDE_VECTORS
#endif

namespace nivora {

/// Whether this processor can run functions marked by `NIVORA_WIDE_VECTORS`.
[[nodiscard]] inline bool has_wide_vectors() {
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") != 0;
#else
    return true;
#endif
}

}  // namespace nivora
