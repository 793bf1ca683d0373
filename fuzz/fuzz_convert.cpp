// libFuzzer target: arbitrary bytes through the whole conversion, as a host calls it.
//
// Each input is written as db.flt into a scratch directory and converted as a host would,
// with nothing on the standard streams: parse, log, walks, geometry, scenes and nodes. The
// same bytes also stand as ref.flt beside it, so that external references of the input
// ("ref.flt", "./db.flt", ...) resolve inside the scratch directory, to itself included:
// reference cycles are exercised too.
//
// One conversion per input keeps the rate up: a hash of the input picks the builder
// (classic or as-authored) and the log (with its dump for one input in four, the progress
// lines only for one in four, none for the rest; the parser target dumps too).
#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoSeparator.h>

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "FuzzChoice.h"
#include "QetzFlt/QetzFlt.h"
#include "diagnostics/FltWarningMessageConsole.h"

namespace {

struct Scratch {
    std::string dir;
    std::string db;
    std::string ref;
    Scratch()
    {
        // In memory where there is such a folder with room for the largest logs: a disk's
        // file system flushes each file that is truncated and written again, as these are at
        // every input.
        const std::filesystem::path shm = "/dev/shm";
        std::error_code error;
        const bool inMemory = std::filesystem::is_directory(shm, error) && access(shm.c_str(), W_OK | X_OK) == 0 &&
                              std::filesystem::space(shm, error).available >= (uint64_t(512) << 20) && !error;
        std::string pattern = ((inMemory ? shm : std::filesystem::temp_directory_path()) / "qetzflt-fuzz-XXXXXX").string();
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
    const uint32_t choice = fuzzChoiceOf(data, size);
    const unsigned int builder = (choice & 0x1) ? QETZFLT_BUILD_AS_AUTHORED : QETZFLT_BUILD_CLASSIC;
    const unsigned int logs[] = {QETZFLT_LOG_FILE, QETZFLT_LOG_NO_DUMP, QETZFLT_LOG_NONE, QETZFLT_LOG_NONE};
    const unsigned int log = logs[(choice >> 1) & 0x3];
    // The console's echo and the library's lines on standard output would drown the fuzzer's.
    SoSeparator* root = qetzfltConvert(scratch.db.c_str(), QETZFLT_NO_STANDARD_OUTPUT | QETZFLT_NO_ECHO | builder | log);
    if (root) {
        if (root->getRefCount() == 0) root->ref();
        root->unref();
    }
    FltWarningMessageConsole::clearMessages();
    return 0;
}
