// libFuzzer target: arbitrary bytes through the parser alone, from memory.
//
// No file, no scene, no Coin: the bytes are cut into records, each decoded by its type,
// then every record is freed with the parser. Being cheap, it reaches far more inputs than
// the whole conversion does. A hash of the input picks the cheap variations: one input in
// four has its records dumped (into a stream that discards them, so that the dump's
// formatting runs), and one in two leaves padded push and pop records unreported.
#include <cstdint>
#include <ostream>
#include <streambuf>

#include "FuzzChoice.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltInput.h"
#include "reader/FltParser.h"

namespace {

// The parser never writes into its buffer, so it may read the fuzzer's bytes in place.
class BorrowedInput : public FltInput {
public:
    BorrowedInput(const uint8_t* data, size_t size) : data_(data), size_(size) {}
    char* getBuffer() override { return const_cast<char*>(reinterpret_cast<const char*>(data_)); }
    uint64_t getSize() const override { return size_; }
    bool isInFlowCreated() const override { return true; }
    const char* getFileName() const override { return "fuzz.flt"; }
    const char* getDirName() const override { return nullptr; }

private:
    const uint8_t* data_;
    size_t size_;
};

// Accepts every character and keeps none.
class DiscardBuffer : public std::streambuf {
protected:
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static DiscardBuffer discard;
    static std::ostream nowhere(&discard);
    const uint32_t choice = fuzzChoiceOf(data, size);
    {
        // Kept, capped and not echoed: the console's lines would drown the fuzzer's.
        FltWarningMessageConsole::ConversionMessages quiet(false);
        BorrowedInput input(data, size);
        FltParser parser(&input, false);
        parser.setProgressStream(nullptr);
        parser.setDumpStream((choice & 0x3) == 0x3 ? &nowhere : nullptr);
        parser.setReportPaddedControlRecords((choice & 0x4) != 0);
        parser.run();
    }
    FltWarningMessageConsole::clearMessages();
    return 0;
}
