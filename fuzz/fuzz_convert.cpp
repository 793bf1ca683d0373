// libFuzzer target: arbitrary bytes through the whole conversion, as a host calls it.
//
// Each input is written as db.flt into a scratch directory and converted as a host would,
// with the log and its dump but nothing on the standard streams, by both builders: parse,
// dump, walks, geometry, scenes and nodes. The same bytes also stand as ref.flt beside it, so that
// external references of the input ("ref.flt", "./db.flt", ...) resolve inside the scratch
// directory, to itself included: reference cycles are exercised too.
#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoSeparator.h>

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "QetzFlt/QetzFlt.h"
#include "diagnostics/FltWarningMessageConsole.h"

namespace {

struct Scratch {
    std::string dir;
    std::string db;
    std::string ref;
    Scratch()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "qetzflt-fuzz-XXXXXX").string();
        if (!mkdtemp(pattern.data())) std::abort();
        dir = pattern;
        db = dir + "/db.flt";
        ref = dir + "/ref.flt";
    }
    ~Scratch()
    {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }
};

void writeBytes(const std::string& path, const uint8_t* data, size_t size)
{
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) std::abort();
    if (size) std::fwrite(data, 1, size, file);
    std::fclose(file);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    SoDB::init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Scratch scratch;
    writeBytes(scratch.db, data, size);
    writeBytes(scratch.ref, data, size);
    // The console's echo and the library's lines on standard output would drown the fuzzer's.
    for (unsigned int builder : {QETZFLT_BUILD_CLASSIC, QETZFLT_BUILD_AS_AUTHORED}) {
        SoSeparator* root = qetzfltConvert(scratch.db.c_str(), QETZFLT_NO_STANDARD_OUTPUT | QETZFLT_NO_ECHO | builder);
        if (!root) continue;
        if (root->getRefCount() == 0) root->ref();
        root->unref();
    }
    FltWarningMessageConsole::clearMessages();
    return 0;
}
