// SPDX-License-Identifier: MIT
#pragma once

// Marks a function of plain loops that the compiler is to build for wider vector units as well; the processor chooses
// when the program starts. Products and sums stay apart (-ffp-contract=off), so every choice gives the same bits.
// Sanitizers meet the choice before they are ready, so there is none under them.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && defined(__linux__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define TALLYSCOPE_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
// For functions that say how many lanes they work in: one of each name and signature, the first for 32 bytes.
#define TALLYSCOPE_IF_WIDE __attribute__((target("avx2")))
#define TALLYSCOPE_IF_NARROW __attribute__((target("default")))
#else
#define TALLYSCOPE_WIDE_VECTORS
#endif
