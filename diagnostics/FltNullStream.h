// A stream that swallows everything written to it: for output nobody asked for. Header only,
// so that the tool, which loads the library at run time, shares it.
#pragma once

#include <ostream>
#include <streambuf>

class FltNullBuffer : public std::streambuf {
protected:
    int overflow(int c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

class FltNullStream : public std::ostream {
public:
    FltNullStream() : std::ostream(&buffer_) {}

private:
    FltNullBuffer buffer_;
};
