#include "processing/record_memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#if defined(__linux__)
#include <malloc.h>
#include <sys/mman.h>
#endif

namespace tarvo {

namespace {

#if defined(__linux__)

constexpr std::size_t kSmallestMapping = std::size_t{1} << 16; // below it a copy costs no more than pages do

bool is_mapped(std::size_t bytes)
{
    return bytes >= kSmallestMapping;
}

void* mapped(void* block, std::size_t bytes, std::size_t wanted)
{
    void* const pages = block != nullptr && is_mapped(bytes)
                            ? mremap(block, bytes, wanted, MREMAP_MAYMOVE)
                            : mmap(nullptr, wanted, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : pages;
}

// Bit by bit: while pages are freed, no other thread of the program gets or moves any.
void unmap(void* block, std::size_t bytes)
{
    constexpr std::size_t kBit = std::size_t{1} << 20;
    for (std::size_t freed = 0; freed < bytes; freed += kBit) {
        madvise(static_cast<char*>(block) + freed, std::min(kBit, bytes - freed), MADV_DONTNEED);
    }
    munmap(block, bytes);
}

#else

bool is_mapped(std::size_t)
{
    return false;
}

void* mapped(void*, std::size_t, std::size_t)
{
    return nullptr;
}

void unmap(void*, std::size_t) {}

#endif

} // namespace

void* resize_record_memory(void* block, std::size_t bytes, std::size_t wanted)
{
    void* const resized = is_mapped(wanted) ? mapped(block, bytes, wanted) : std::realloc(block, wanted);
    if (resized == nullptr) throw std::bad_alloc();
    if (is_mapped(wanted) && block != nullptr && !is_mapped(bytes)) { // it has outgrown the heap
        std::memcpy(resized, block, bytes);
        std::free(block);
    }
    return resized;
}

void release_spare_memory()
{
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

void free_record_memory(void* block, std::size_t bytes) noexcept
{
    if (is_mapped(bytes)) {
        unmap(block, bytes);
    } else {
        std::free(block);
    }
}

} // namespace tarvo
