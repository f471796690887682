#pragma once

#include <cstddef>

namespace tarvo {

// Memory for a column that grows. A large block is made of the system's own pages: they are moved, not copied, when it
// grows, pages that were never written cost nothing, and freeing gives them back at once. (The standard library's
// realloc does so too, until large blocks have been freed: from then on it copies blocks of up to 32 MiB.)

// The block with room for `wanted` bytes, its contents kept. block: null with 0 bytes, or what an earlier call gave for
// that many. Throws std::bad_alloc and leaves the block as it was.
void* resize_record_memory(void* block, std::size_t bytes, std::size_t wanted);
void free_record_memory(void* block, std::size_t bytes) noexcept;

// What freed small blocks keep from the system is given back to it: a survey of many sensors has many. Takes some
// milliseconds where there is much.
void release_spare_memory();

} // namespace tarvo
