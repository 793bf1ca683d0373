// SGI image files (.rgb, .rgba, .int, .inta) for the tests: uncompressed, one byte a
// channel, 1 to 4 channels (grey, grey and alpha, RGB, RGBA).
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// The bytes of an SGI image: a 512-byte header, then each channel's rows from the bottom
// up. pixel(x, y, channel) gives the value at column x of row y counted from the bottom.
inline std::string sgiImage(int width, int height, int channels, const std::function<uint8_t(int, int, int)>& pixel)
{
    std::string bytes(512, '\0');
    auto put16 = [&](size_t at, uint16_t v) {
        bytes[at] = static_cast<char>(v >> 8);
        bytes[at + 1] = static_cast<char>(v & 0xFF);
    };
    put16(0, 474);  // magic
    bytes[2] = 0;   // storage: verbatim
    bytes[3] = 1;   // one byte per channel
    put16(4, channels == 1 ? 2 : 3);
    put16(6, static_cast<uint16_t>(width));
    put16(8, static_cast<uint16_t>(height));
    put16(10, static_cast<uint16_t>(channels));
    bytes[19] = static_cast<char>(255);  // maximum
    for (int c = 0; c < channels; ++c)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) bytes += static_cast<char>(pixel(x, y, c));
    return bytes;
}
