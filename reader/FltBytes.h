// FltBytes: the one bounds-checked big-endian reader that every record decoder uses.
//
// Records are decoded by absolute offset, the way the format's layout tables are written
// (`switchInDistance = in.f64(16)`). A field that would pass the end of the record reads as
// zero and marks the reader truncated, so a short or damaged record can never make a
// decoder touch memory outside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

class FltBytes {
public:
    FltBytes(const char* data, size_t size) : data_(data), size_(data ? size : 0) {}

    size_t size() const { return size_; }
    const char* data() const { return data_; }

    // True when [offset, offset + n) lies inside the record.
    bool has(size_t offset, size_t n) const { return offset <= size_ && n <= size_ - offset; }

    // True once any read asked for a byte past the end.
    bool truncated() const { return wanted_ > size_; }
    // The end of the furthest read past the end of the record, or 0 when every read fitted:
    // how long the record would have to be for what was read of it.
    size_t wanted() const { return wanted_; }

    uint8_t u8(size_t offset) const
    {
        if (!has(offset, 1)) return fail<uint8_t>(offset, 1);
        return static_cast<uint8_t>(data_[offset]);
    }
    int8_t i8(size_t offset) const { return static_cast<int8_t>(u8(offset)); }

    uint16_t u16(size_t offset) const
    {
        if (!has(offset, 2)) return fail<uint16_t>(offset, 2);
        uint16_t value;
        std::memcpy(&value, data_ + offset, 2);
        return fromBigEndian(value);
    }
    int16_t i16(size_t offset) const { return static_cast<int16_t>(u16(offset)); }

    uint32_t u32(size_t offset) const
    {
        if (!has(offset, 4)) return fail<uint32_t>(offset, 4);
        uint32_t value;
        std::memcpy(&value, data_ + offset, 4);
        return fromBigEndian(value);
    }
    int32_t i32(size_t offset) const { return static_cast<int32_t>(u32(offset)); }

    uint64_t u64(size_t offset) const
    {
        if (!has(offset, 8)) return fail<uint64_t>(offset, 8);
        uint64_t value;
        std::memcpy(&value, data_ + offset, 8);
        return fromBigEndian(value);
    }

    float f32(size_t offset) const
    {
        uint32_t bits = u32(offset);
        float value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    double f64(size_t offset) const
    {
        uint64_t bits = u64(offset);
        double value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    // n consecutive values from offset; those past the end read as zero like single fields.
    void f32s(size_t offset, float* dest, size_t n) const
    {
        for (size_t i = 0; i < n; ++i) dest[i] = f32(offset + 4 * i);
    }
    void f64s(size_t offset, double* dest, size_t n) const
    {
        for (size_t i = 0; i < n; ++i) dest[i] = f64(offset + 8 * i);
    }

    // Copies n raw bytes; the part past the end of the record is filled with zeros.
    void chars(size_t offset, size_t n, char* dest) const
    {
        size_t available = offset < size_ ? size_ - offset : 0;
        size_t copied = n < available ? n : available;
        if (copied) std::memcpy(dest, data_ + offset, copied);
        if (copied < n) {
            std::memset(dest + copied, 0, n - copied);
            reachedPast(offset, n);
        }
    }

    // A packed colour as stored in the file: four bytes in the order alpha, blue, green, red.
    // The bytes are copied as they stand (dest[0] alpha ... dest[3] red).
    void packedColor(size_t offset, uint8_t dest[4]) const
    {
        chars(offset, 4, reinterpret_cast<char*>(dest));
    }

private:
    // The file's most significant byte comes first; a little-endian host reverses the bytes.
    static uint16_t fromBigEndian(uint16_t v)
    {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
        return __builtin_bswap16(v);
#else
        return v;
#endif
    }
    static uint32_t fromBigEndian(uint32_t v)
    {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
        return __builtin_bswap32(v);
#else
        return v;
#endif
    }
    static uint64_t fromBigEndian(uint64_t v)
    {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
        return __builtin_bswap64(v);
#else
        return v;
#endif
    }

    void reachedPast(size_t offset, size_t n) const
    {
        const size_t end = offset + n < offset ? SIZE_MAX : offset + n;
        if (end > wanted_) wanted_ = end;
    }

    template <typename T>
    T fail(size_t offset, size_t n) const
    {
        reachedPast(offset, n);
        return T(0);
    }

    const char* data_;
    size_t size_;
    mutable size_t wanted_ = 0;
};
