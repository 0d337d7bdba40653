// Counts every heap allocation of the benchmark program, so a step can prove it allocates
// nothing: read g_allocations before and after. Include it in exactly one file of a program
// (it replaces the global operator new).
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

// The replaced operators pair malloc with free on purpose; GCC cannot see that they match.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

inline std::atomic<std::uint64_t> g_allocations{0};

void* operator new(std::size_t size) {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size ? size : 1)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
