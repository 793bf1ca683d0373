// Memory for record objects. A database becomes one small object per record, all created
// during the parse and all destroyed together after the walk, so they are carved one after
// another out of large blocks instead of going one by one through the general allocator.
#pragma once

#include <cstddef>

namespace fltrecordmemory {

// Memory for one record object of the given size (16-byte aligned); never null.
void* allocate(std::size_t size);
// Gives back memory from allocate, with the same size. A block is returned to the system
// when the last object carved out of it is freed; any thread may free. The object this
// thread carved last is given back to its block at once, so that a record built and then
// replaced leaves no gap.
void release(void* p, std::size_t size) noexcept;

}  // namespace fltrecordmemory
