// Block allocation of record objects.
#include "reader/FltRecordAllocator.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace fltrecordmemory {
namespace {

constexpr std::size_t kBlockSize = std::size_t(1) << 18;  // 256 KiB, blocks aligned to it
constexpr std::size_t kLargest = 4096;                     // larger objects use operator new
constexpr std::size_t kAlign = 16;

// The head of a block. Its count holds one reference per live object plus one while the
// block is a thread's current block; whoever drops it to zero frees the block.
struct alignas(kAlign) Block {
    std::atomic<std::uint32_t> references{1};
};

constexpr std::size_t kFirstObject = (sizeof(Block) + kAlign - 1) / kAlign * kAlign;

void dropReference(Block* block) noexcept
{
    if (block->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        block->~Block();
        std::free(block);
    }
}

// The block a thread carves from. Plain data in the initial-exec model, so that a record
// allocation reads it without a TLS lookup call (the 16 bytes come from the static TLS
// reserve that even a library loaded with dlopen may use).
struct CurrentBlock {
    Block* block;
    std::size_t used;
};

thread_local CurrentBlock current __attribute__((tls_model("initial-exec"))) = {nullptr, 0};

// Gives the current block up when the thread ends; touched only when a block is taken.
struct CurrentBlockRelease {
    ~CurrentBlockRelease()
    {
        if (current.block) dropReference(current.block);
        current.block = nullptr;
    }
};

void takeNewBlock()
{
    thread_local CurrentBlockRelease release;
    (void)release;
    void* memory = std::aligned_alloc(kBlockSize, kBlockSize);
    if (!memory) throw std::bad_alloc();
    if (current.block) dropReference(current.block);
    current.block = new (memory) Block;
    current.used = kFirstObject;
}

}  // namespace

void* allocate(std::size_t size)
{
    size = (size + kAlign - 1) / kAlign * kAlign;
    if (size > kLargest) return ::operator new(size);
    if (!current.block || current.used + size > kBlockSize) takeNewBlock();
    void* p = reinterpret_cast<char*>(current.block) + current.used;
    current.used += size;
    current.block->references.fetch_add(1, std::memory_order_relaxed);
    return p;
}

void release(void* p, std::size_t size) noexcept
{
    if (!p) return;
    size = (size + kAlign - 1) / kAlign * kAlign;
    if (size > kLargest) {
        ::operator delete(p);
        return;
    }
    auto* block = reinterpret_cast<Block*>(reinterpret_cast<std::uintptr_t>(p) & ~(kBlockSize - 1));
    // The object just carved from this thread's block gives its room back: a record that is
    // built, found short and replaced leaves no gap.
    if (block == current.block && reinterpret_cast<char*>(p) + size == reinterpret_cast<char*>(block) + current.used)
        current.used -= size;
    dropReference(block);
}

}  // namespace fltrecordmemory
