// The switch record and its bounded mask array.
#include "reader/FltRecordSwitch.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {
constexpr size_t kFirstMaskWord = 28;

// The number of mask words announced by the counts, clipped to the words that lie inside
// the record. Computed in 64 bits, so two large counts cannot overflow into a small one.
size_t keptMaskWords(int32_t masks, int32_t wordsPerMask, size_t recordSize)
{
    const int64_t announced = static_cast<int64_t>(masks) * static_cast<int64_t>(wordsPerMask);
    if (announced < 1) return 0;
    const size_t present = recordSize > kFirstMaskWord ? (recordSize - kFirstMaskWord) / 4 : 0;
    return static_cast<uint64_t>(announced) < present ? static_cast<size_t>(announced) : present;
}
}  // namespace

void FltRecordSwitch::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    spare = in.i32(12);
    indexOfCurrentMask = in.i32(16);
    numberOfMasks = in.i32(20);
    numberOf32BitWordsPerMask = in.i32(24);

    // Allocated before the old words go, so that a failed allocation leaves them in place.
    const size_t count = keptMaskWords(numberOfMasks, numberOf32BitWordsPerMask, in.size());
    uint32_t* words = new uint32_t[count];
    for (size_t w = 0; w < count; ++w) words[w] = in.u32(kFirstMaskWord + 4 * w);
    delete[] masks;
    masks = words;
    maskWordCount = count;
}

void FltRecordSwitch::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8)
        .i32("indexOfCurrentMask: ", indexOfCurrentMask)
        .i32("numberOfMasks: ", numberOfMasks)
        .i32("numberOf32BitWordsPerMask: ", numberOf32BitWordsPerMask);
    // One numbered line per word, not per mask: a two-word mask prints two numbers.
    for (size_t w = 0; w < maskWordCount; ++w) out.text("Mask number ").unum(w).text(": ").nl().bits32(masks[w]).nl();
}
