// FltDump: the one helper that writes every labelled line of a record dump.
//
// A record dump is a run of lines "label" value "\n". The helper formats into a buffer
// that is reused from record to record and hands the whole dump to the stream in one write
// when it goes out of scope: the log holds about ten bytes of text per byte of database, so
// per-field stream formatting would dominate a conversion. Numbers print as the standard
// stream prints them by default: integers in decimal, floating-point values with six
// significant digits in the shorter of fixed or scientific notation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>

class FltDump {
public:
    explicit FltDump(std::ostream& os);
    ~FltDump();
    FltDump(const FltDump&) = delete;
    FltDump& operator=(const FltDump&) = delete;

    // Pieces of a line.
    FltDump& text(const char* s)
    {
        if (s) put(s, std::strlen(s));
        return *this;
    }
    FltDump& text(const char* s, size_t max);  // up to the first NUL, at most max characters
    FltDump& ch(char c)
    {
        reserve(1);
        data_[size_++] = c;
        return *this;
    }
    FltDump& num(long long value)
    {
        if (value >= 0 && value < 100) return smallNumber(static_cast<unsigned>(value));
        return bigNumber(value);
    }
    FltDump& unum(unsigned long long value)
    {
        if (value < 100) return smallNumber(static_cast<unsigned>(value));
        return bigUnsigned(value);
    }
    FltDump& real(double value);
    FltDump& pointer(uintptr_t value);  // as a stream prints a void*: 0, or 0x and lower-case hex
    FltDump& bits32(uint32_t word);      // 32 digits 1/0, most significant bit first
    FltDump& nl() { return ch('\n'); }
    // A colour byte as the float byte / 255.0, the way packed colours are dumped.
    FltDump& byteFraction(uint8_t byte);
    // The start of a record's dump, up to its length: the heading, a line end, "  (" category
    // ")", a line end, "-- Opcode: " opcode "  Length: ". The heading and category are texts
    // that live as long as the program (the classes' own constants).
    FltDump& headingBlock(const char* heading, const char* category, int opcode);

    // Whole labelled lines: the label as given, the value, a line end.
    FltDump& i16(const char* label, int16_t value) { return text(label).num(value).nl(); }
    FltDump& u16(const char* label, uint16_t value) { return text(label).unum(value).nl(); }
    FltDump& i32(const char* label, int32_t value) { return text(label).num(value).nl(); }
    FltDump& u32(const char* label, uint32_t value) { return text(label).unum(value).nl(); }
    FltDump& f64(const char* label, double value) { return text(label).real(value).nl(); }
    FltDump& flag(const char* label, bool on) { return text(label).ch(on ? '1' : '0').nl(); }
    FltDump& str(const char* label, const char* s, size_t max) { return text(label).text(s, max).nl(); }
    FltDump& chr(const char* label, char c) { return text(label).ch(c).nl(); }
    FltDump& byteFraction(const char* label, uint8_t byte) { return text(label).byteFraction(byte).nl(); }
    // The label and n values on one line, separated by blanks (the palettes' matrices).
    template <typename Real>
    FltDump& reals(const char* label, const Real* values, size_t n)
    {
        text(label);
        for (size_t i = 0; i < n; ++i) {
            if (i) ch(' ');
            real(values[i]);
        }
        return nl();
    }

    // Writes what is buffered to the stream.
    void flush();
    // Bytes that dumps of this thread have written so far, so that a reader can bound a log.
    static uint64_t bytesWritten();
    std::string pending() const { return std::string(data_, size_); }

private:
    // Most numbers of a database have one or two digits: they skip the general conversion.
    FltDump& smallNumber(unsigned value)
    {
        reserve(2);
        if (value >= 10) data_[size_++] = static_cast<char>('0' + value / 10);
        data_[size_++] = static_cast<char>('0' + value % 10);
        return *this;
    }
    FltDump& bigNumber(long long value);
    FltDump& bigUnsigned(unsigned long long value);
    void put(const char* s, size_t n)
    {
        reserve(n);
        std::memcpy(data_ + size_, s, n);
        size_ += n;
    }
    void reserve(size_t n)
    {
        if (size_ + n > capacity_) grow(size_ + n);
    }
    void grow(size_t needed);

    std::ostream& os_;
    char* data_ = nullptr;
    size_t size_ = 0;
    size_t capacity_ = 0;
    bool borrowed_ = false;  // the thread's shared buffer, given back at destruction
};
