// Face record: revision-dependent decoding and dump.
#include "reader/FltRecordFace.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordFace::decode(const FltBytes& in)
{
    in.chars(4, 8, idField);
    IRColorCode = in.i32(12);
    relativePriority = in.i16(16);
    drawType = in.i8(18);
    textureWhite = in.i8(19);
    colorNameIndex = in.u16(20);
    alternateColorNameIndex = in.u16(22);
    reserved1 = in.i8(24);
    templateBillboard = in.i8(25);
    detailTexturePatternIndex = in.i16(26);
    texturePatternIndex = in.i16(28);
    materialIndex = in.i16(30);
    surfaceMaterialCode = in.i16(32);
    idFeature = in.i16(34);
    IRMaterialCode = in.i32(36);
    transparency = in.u16(40);
    LODGenerationControl = in.u8(42);
    lineStyleIndex = in.u8(43);
    flags = in.i32(44);
    lightMode = in.u8(48);
    reserved2 = in.u8(49);
    reserved3 = in.u16(50);
    reserved4 = in.i32(52);
    in.packedColor(56, packedColor);
    in.packedColor(60, alternatePackedColor);

    if (formatRevision >= 1500) {
        textureMappingIndex = in.i16(64);
        reserved5 = in.i16(66);
        primaryColorIndex = in.i32(68);
        alternateColorIndex = in.i32(72);
        reserved6 = in.i16(76);
        reserved7 = in.i16(78);
        return;
    }
    // Older files: both colour indices take the primary colour (the alternate one too, on
    // purpose), so that the geometry builder treats every revision alike.
    textureMappingIndex = -1;
    reserved5 = 0;
    primaryColorIndex = colorNameIndex;
    alternateColorIndex = colorNameIndex;
    reserved6 = 0;
    reserved7 = 0;
}

void FltRecordFace::dumpFields(FltDump& out) const
{
    const uint32_t bits = static_cast<uint32_t>(flags);
    out.str("idField: ", idField, 8)
        .i32("IRColorCode: ", IRColorCode)
        .i16("relativePriority: ", relativePriority)
        .i16("drawType: ", drawType)
        .i16("textureWhite: ", textureWhite)
        .u16("colorNameIndex: ", colorNameIndex)
        .u16("alternateColorNameIndex: ", alternateColorNameIndex)
        .i16("templateBillboard: ", templateBillboard)
        .i16("detailTexturePatternIndex: ", detailTexturePatternIndex)
        .i16("texturePatternIndex: ", texturePatternIndex)
        .i16("materialIndex: ", materialIndex)
        .i16("surfaceMaterialCode: ", surfaceMaterialCode)
        .i16("idFeature: ", idFeature)
        .i32("IRMaterialCode: ", IRMaterialCode)
        .u16("transparency: ", transparency)
        .u16("LODGenerationControl: ", LODGenerationControl)
        .u16("lineStyleIndex: ", lineStyleIndex)
        .flag("flags:           Terrain: ", bits & 0x80000000u)
        .flag("                No Color: ", bits & 0x40000000u)
        .flag("      No Alternate Color: ", bits & 0x20000000u)
        .flag("            Packed Color: ", bits & 0x10000000u)
        .flag("  Terrain Culture Cutout: ", bits & 0x08000000u)
        .flag("      Hidden (not drawn): ", bits & 0x04000000u)
        .u16("lightMode: ", lightMode)
        .byteFraction("packedColor: alpha=", packedColor[0])
        .byteFraction("              blue=", packedColor[1])
        .byteFraction("             green=", packedColor[2])
        .byteFraction("               red=", packedColor[3])
        .byteFraction("alternatePackedColor: alpha=", alternatePackedColor[0])
        .byteFraction("                       blue=", alternatePackedColor[1])
        .byteFraction("                      green=", alternatePackedColor[2])
        .byteFraction("                        red=", alternatePackedColor[3]);
    if (formatRevision >= 1500) {
        out.i16("textureMappingIndex: ", textureMappingIndex)
            .i32("primaryColorIndex: ", primaryColorIndex)
            .i32("alternateColorIndex: ", alternateColorIndex);
    } else {
        out.i32("primaryColorIndex: ", primaryColorIndex);
    }
}
