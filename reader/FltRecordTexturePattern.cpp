// Texture pattern record: the two layouts and the dump.
#include "reader/FltRecordTexturePattern.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordTexturePattern::decode(const FltBytes& in)
{
    const size_t nameBytes = length == 96 ? 80 : 200;
    in.chars(4, nameBytes, fileName);
    const size_t at = 4 + nameBytes;
    patternIndex = in.i32(at);
    XlocationInTexturePalette = in.i32(at + 4);
    YlocationInTexturePalette = in.i32(at + 8);
}

void FltRecordTexturePattern::dumpFields(FltDump& out) const
{
    out.str("fileName: ", fileName, 200)
        .i32("patternIndex: ", patternIndex)
        .i32("XlocationInTexturePalette: ", XlocationInTexturePalette)
        .i32("YlocationInTexturePalette: ", YlocationInTexturePalette);
}
