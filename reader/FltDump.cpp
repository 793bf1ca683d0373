// Number formatting of the record dumps, matching the standard stream's default output,
// and the buffer that the dumps of one thread share.
#include "reader/FltDump.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <new>

namespace {

// The buffer a thread's dumps reuse. Plain data in the initial-exec TLS model, so that a
// dump reaches it without a TLS lookup call.
struct HeadingCache;

struct SharedBuffer {
    char* data;
    size_t capacity;
    bool inUse;
    HeadingCache* headings;
};

thread_local SharedBuffer shared __attribute__((tls_model("initial-exec"))) = {nullptr, 0, false, nullptr};

// The heading blocks of the record classes met so far, up to the length value: every record
// of a class starts its dump with the same text. Keyed by heading, category and opcode.
struct HeadingCache {
    struct Entry {
        const char* heading = nullptr;  // the class's constant, compared by address
        int opcode = 0;
        unsigned char length = 0;
        char category[24] = {};  // compared by content: an unknown record's may be its own
        char text[200];
    };
    Entry entries[128];
};

// Frees the thread's buffer and cache when the thread ends; touched only when they are made.
struct SharedBufferRelease {
    ~SharedBufferRelease()
    {
        std::free(shared.data);
        delete shared.headings;
        shared = {nullptr, 0, false, nullptr};
    }
};

constexpr size_t kInitialCapacity = 16 * 1024;

// The 256 values byte / 255.0 as floats, formatted once.
struct ByteFractions {
    char text[256][16];
    unsigned char length[256];
    ByteFractions()
    {
        for (int b = 0; b < 256; ++b) {
            const double value = static_cast<float>(b / 255.0);
            auto result = std::to_chars(text[b], text[b] + sizeof text[b], value, std::chars_format::general, 6);
            length[b] = static_cast<unsigned char>(result.ptr - text[b]);
        }
    }
};

}  // namespace

FltDump::FltDump(std::ostream& os) : os_(os)
{
    if (!shared.inUse) {
        if (!shared.data) {
            thread_local SharedBufferRelease release;
            (void)release;
            shared.data = static_cast<char*>(std::malloc(kInitialCapacity));
            if (!shared.data) throw std::bad_alloc();
            shared.capacity = kInitialCapacity;
        }
        shared.inUse = true;
        borrowed_ = true;
        data_ = shared.data;
        capacity_ = shared.capacity;
    }
}

FltDump::~FltDump()
{
    flush();
    if (borrowed_) {
        shared.data = data_;
        shared.capacity = capacity_;
        shared.inUse = false;
    } else {
        std::free(data_);
    }
}

void FltDump::grow(size_t needed)
{
    size_t capacity = capacity_ ? capacity_ : 256;
    while (capacity < needed) capacity *= 2;
    char* data = static_cast<char*>(std::realloc(data_, capacity));
    if (!data) throw std::bad_alloc();
    data_ = data;
    capacity_ = capacity;
}

FltDump& FltDump::text(const char* s, size_t max)
{
    if (!s) return *this;
    const void* nul = std::memchr(s, '\0', max);
    put(s, nul ? static_cast<size_t>(static_cast<const char*>(nul) - s) : max);
    return *this;
}

FltDump& FltDump::bigNumber(long long value)
{
    reserve(24);
    size_ = static_cast<size_t>(std::to_chars(data_ + size_, data_ + size_ + 24, value).ptr - data_);
    return *this;
}

FltDump& FltDump::bigUnsigned(unsigned long long value)
{
    reserve(24);
    size_ = static_cast<size_t>(std::to_chars(data_ + size_, data_ + size_ + 24, value).ptr - data_);
    return *this;
}

FltDump& FltDump::real(double value)
{
    // Whole numbers of up to six digits print as integers in %g; most fields of a database
    // are such numbers, so they skip the general conversion.
    if (value >= -999999.0 && value <= 999999.0 && value == static_cast<double>(static_cast<long long>(value))) {
        if (value == 0.0 && std::signbit(value)) return text("-0");
        return num(static_cast<long long>(value));
    }
    // The stream default is printf's %g with precision 6; to_chars in general format with
    // the same precision is defined to give the same characters.
    reserve(40);
    size_ = static_cast<size_t>(
        std::to_chars(data_ + size_, data_ + size_ + 40, value, std::chars_format::general, 6).ptr - data_);
    return *this;
}

FltDump& FltDump::headingBlock(const char* heading, const char* category, int opcode)
{
    if (!shared.headings) {
        thread_local SharedBufferRelease release;
        (void)release;
        shared.headings = new HeadingCache;
    }
    if (!category) category = "";
    HeadingCache::Entry& entry = shared.headings->entries[static_cast<unsigned>(opcode) & 127u];
    if (entry.heading != heading || entry.opcode != opcode || std::strcmp(entry.category, category) != 0) {
        const std::string text = std::string(heading ? heading : "") + "\n  (" + category + ")\n-- Opcode: " +
                                 std::to_string(opcode) + "  Length: ";
        if (text.size() > sizeof entry.text || std::strlen(category) >= sizeof entry.category) {
            put(text.data(), text.size());
            return *this;
        }
        entry.heading = heading;
        entry.opcode = opcode;
        std::strcpy(entry.category, category);
        entry.length = static_cast<unsigned char>(text.size());
        std::memcpy(entry.text, text.data(), text.size());
    }
    put(entry.text, entry.length);
    return *this;
}

FltDump& FltDump::byteFraction(uint8_t byte)
{
    static const ByteFractions fractions;
    put(fractions.text[byte], fractions.length[byte]);
    return *this;
}

FltDump& FltDump::pointer(uintptr_t value)
{
    if (value == 0) return ch('0');
    reserve(24);
    put("0x", 2);
    size_ = static_cast<size_t>(
        std::to_chars(data_ + size_, data_ + size_ + 22, static_cast<unsigned long long>(value), 16).ptr - data_);
    return *this;
}

FltDump& FltDump::bits32(uint32_t word)
{
    reserve(32);
    for (int i = 0; i < 32; ++i) data_[size_ + i] = (word >> (31 - i)) & 1u ? '1' : '0';
    size_ += 32;
    return *this;
}

namespace {
thread_local uint64_t written __attribute__((tls_model("initial-exec"))) = 0;
}  // namespace

uint64_t FltDump::bytesWritten() { return written; }

void FltDump::flush()
{
    if (size_ == 0) return;
    written += size_;
    // Straight to the stream's buffer: one record's dump is one piece, and a stream in a
    // failed state is left as it stands.
    if (os_.good() && os_.rdbuf()) os_.rdbuf()->sputn(data_, static_cast<std::streamsize>(size_));
    size_ = 0;
}
