// Number formatting of the record dumps, matching the standard stream's default output.
#include "reader/FltDump.h"

#include <charconv>
#include <cstring>

FltDump& FltDump::text(const char* s)
{
    if (s) buffer_.append(s);
    return *this;
}

FltDump& FltDump::text(const char* s, size_t max)
{
    if (!s) return *this;
    const void* nul = std::memchr(s, '\0', max);
    size_t n = nul ? static_cast<size_t>(static_cast<const char*>(nul) - s) : max;
    buffer_.append(s, n);
    return *this;
}

FltDump& FltDump::num(long long value)
{
    char digits[24];
    auto result = std::to_chars(digits, digits + sizeof digits, value);
    buffer_.append(digits, result.ptr);
    return *this;
}

FltDump& FltDump::unum(unsigned long long value)
{
    char digits[24];
    auto result = std::to_chars(digits, digits + sizeof digits, value);
    buffer_.append(digits, result.ptr);
    return *this;
}

FltDump& FltDump::real(double value)
{
    // The stream default is printf's %g with precision 6; to_chars in general format with
    // the same precision is defined to give the same characters.
    char digits[40];
    auto result = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
    buffer_.append(digits, result.ptr);
    return *this;
}

FltDump& FltDump::pointer(uintptr_t value)
{
    if (value == 0) return ch('0');
    char digits[24];
    auto result = std::to_chars(digits, digits + sizeof digits, static_cast<unsigned long long>(value), 16);
    buffer_.append("0x");
    buffer_.append(digits, result.ptr);
    return *this;
}

FltDump& FltDump::bits32(uint32_t word)
{
    char bits[32];
    for (int i = 0; i < 32; ++i) bits[i] = (word >> (31 - i)) & 1u ? '1' : '0';
    buffer_.append(bits, sizeof bits);
    return *this;
}

void FltDump::flush()
{
    if (buffer_.empty()) return;
    os_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
}
