// FltDump: the one helper that writes every labelled line of a record dump.
//
// A record dump is a run of lines "label" value "\n". The helper formats into a private
// buffer and hands the whole dump to the stream in one write when it goes out of scope,
// because per-field stream formatting dominates the cost of a conversion whose log is on.
// Numbers print as the standard stream prints them by default: integers in decimal,
// floating-point values with six significant digits in the shortest of fixed or
// scientific notation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

class FltDump {
public:
    explicit FltDump(std::ostream& os) : os_(os) {}
    ~FltDump() { flush(); }
    FltDump(const FltDump&) = delete;
    FltDump& operator=(const FltDump&) = delete;

    // Pieces of a line.
    FltDump& text(const char* s);
    FltDump& text(const char* s, size_t max);  // up to the first NUL, at most max characters
    FltDump& ch(char c)
    {
        buffer_.push_back(c);
        return *this;
    }
    FltDump& num(long long value);
    FltDump& unum(unsigned long long value);
    FltDump& real(double value);
    FltDump& pointer(uintptr_t value);  // as a stream prints a void*: 0, or 0x and lower-case hex
    FltDump& bits32(uint32_t word);      // 32 digits 1/0, most significant bit first
    FltDump& nl() { return ch('\n'); }

    // Whole labelled lines: the label as given, the value, a line end.
    FltDump& i16(const char* label, int16_t value) { return text(label).num(value).nl(); }
    FltDump& u16(const char* label, uint16_t value) { return text(label).unum(value).nl(); }
    FltDump& i32(const char* label, int32_t value) { return text(label).num(value).nl(); }
    FltDump& u32(const char* label, uint32_t value) { return text(label).unum(value).nl(); }
    FltDump& f64(const char* label, double value) { return text(label).real(value).nl(); }
    FltDump& flag(const char* label, bool on) { return text(label).ch(on ? '1' : '0').nl(); }
    FltDump& str(const char* label, const char* s, size_t max) { return text(label).text(s, max).nl(); }
    FltDump& chr(const char* label, char c) { return text(label).ch(c).nl(); }

    void flush();
    const std::string& pending() const { return buffer_; }

private:
    std::ostream& os_;
    std::string buffer_;
};
