// The classic vertex colours and face materials.
#include "convert/FltClassicColors.h"

#include "convert/FltPalettes.h"
#include "reader/FltRecordFace.h"
#include "reader/FltRecordVertex.h"

namespace {

constexpr uint32_t kOpaqueWhite = 0xFFFFFFFFu;
const SbColor kBlack(0, 0, 0);
const SbColor kWhite(1, 1, 1);

SbColor rgb(const float value[3]) { return SbColor(value); }

// The face's packed colour as red, green and blue from 0 to 1 (bytes 3, 2 and 1).
SbColor packedRgb(const FltRecordFace& face)
{
    return SbColor(face.packedColor[3] / 255.0f, face.packedColor[2] / 255.0f, face.packedColor[1] / 255.0f);
}

SbColor multiply(const SbColor& a, const SbColor& b) { return SbColor(a[0] * b[0], a[1] * b[1], a[2] * b[2]); }

SbColor tableColor(const FltPalettes& palettes, long index)
{
    float ignored = 0.0f;
    SbColor color;
    color.setPackedValue(palettes.color(index), ignored);
    return color;
}

// Transparency of a face with a material: the face's transparency weighted by the object's
// raw transparency (the established formula).
float materialFaceTransparency(const FltRecordFace& face, float objectTransparency, float materialTransparency)
{
    return static_cast<float>((face.transparency * objectTransparency / -65535.0 + 1.0) * materialTransparency);
}

FltFaceMaterialEntry entry(const SbColor& ambient, const SbColor& diffuse, const SbColor& specular,
                           const SbColor& emissive, float shininess)
{
    FltFaceMaterialEntry e;
    e.ambient = ambient;
    e.diffuse = diffuse;
    e.specular = specular;
    e.emissive = emissive;
    e.shininess = shininess;
    return e;
}

// The colour a face with a colour and a material multiplies the material by.
SbColor indexedColorUnderMaterial(const FltRecordFace& face, const FltPalettes& palettes, const FltVersion& version)
{
    if (face.texturePatternIndex != -1 && face.textureWhite != 0) return kWhite;
    if (version.formatRevision >= 14) {
        if (face.isNoColor()) return kWhite;
        if (version.rgbMode || face.isPackedColor()) {
            // Each byte divided by 255 and truncated (1 only for 255), assembled alpha high and
            // red low and read as a table entry: nearly black. Kept on purpose, the established
            // colour of packed faces with a material.
            const uint8_t* abgr = face.packedColor;
            const uint32_t a = static_cast<uint32_t>(abgr[0] / 255.0);
            const uint32_t b = static_cast<uint32_t>(abgr[1] / 255.0);
            const uint32_t g = static_cast<uint32_t>(abgr[2] / 255.0);
            const uint32_t r = static_cast<uint32_t>(abgr[3] / 255.0);
            float ignored = 0.0f;
            SbColor color;
            color.setPackedValue((a << 24) | (b << 16) | (g << 8) | r, ignored);
            return color;
        }
        if (version.formatRevision < 1540) return tableColor(palettes, face.colorNameIndex >> 7);
        return tableColor(palettes, face.primaryColorIndex >> 7);
    }
    if (version.rgbMode) return tableColor(palettes, face.primaryColorIndex >> 7);
    const int32_t index = face.primaryColorIndex;
    if (index >= 0 && index <= 4095) return kWhite * static_cast<float>((index & 127) / 127.0);
    if (index >= 4096) return tableColor(palettes, 4096 + (index & 0xFFF));
    return kWhite;
}

}  // namespace

uint32_t fltClassicVertexColor(const FltRecordVertexColor& vertex, bool normalUvKind, const FltPalettes& palettes)
{
    if (vertex.isNoColor()) return kOpaqueWhite;
    if (vertex.isPackedColor()) {
        // The file's alpha goes in as a transparency, so the stored alpha is its inverse:
        // kept on purpose, the established colours of packed vertices.
        const uint8_t* abgr = vertex.packedColor;
        SbColor color(abgr[3] / 255.0f, abgr[2] / 255.0f, abgr[1] / 255.0f);
        return color.getPackedValue(abgr[0] / 255.0f);
    }
    // Colour index: palette entry from bit 14 upward, intensity from bits 7 to 13. The kind
    // with normal and texture coordinates shifts instead of dividing, so every negative
    // index is white for it, and packs its colour fully transparent: both kept on purpose.
    const int32_t index = vertex.vertexColorIndex;
    const int32_t q = normalUvKind ? (index >> 7) : (index / 128);
    if (static_cast<uint32_t>(q) > 0x20000u) return kOpaqueWhite;
    const int32_t slot = (index < 0 ? index + 127 : index) >> 14;
    const float intensity = static_cast<float>((q & 127) / 127.0);
    float transparency = 0.0f;
    SbColor color;
    color.setPackedValue(palettes.color(slot), transparency);
    color *= intensity;
    return color.getPackedValue(normalUvKind ? 1.0f : transparency);
}

FltFaceMaterialEntry fltClassicFaceMaterial(const FltRecordFace& face, const FltPalettes& palettes,
                                            const FltVersion& version, float objectTransparency)
{
    const bool noColor = face.isNoColor();
    const bool packed = face.isPackedColor();
    if (face.materialIndex != -1) {
        const FltMaterial& m = palettes.material(face.materialIndex);
        if (!noColor && packed) {
            const SbColor color = packedRgb(face);
            // The transparency entry is not written in this case: kept on purpose.
            FltFaceMaterialEntry e = entry(multiply(color, rgb(m.ambient)), multiply(color, rgb(m.diffuse)),
                                           rgb(m.specular), rgb(m.emissive), m.shininess);
            e.setsTransparency = false;
            return e;
        }
        const SbColor color = noColor ? kWhite : indexedColorUnderMaterial(face, palettes, version);
        FltFaceMaterialEntry e = noColor ? entry(rgb(m.ambient), rgb(m.diffuse), rgb(m.specular), rgb(m.emissive),
                                                 m.shininess)
                                         : entry(multiply(rgb(m.ambient), color), multiply(rgb(m.diffuse), color),
                                                 rgb(m.specular), rgb(m.emissive), m.shininess);
        e.transparency = materialFaceTransparency(face, objectTransparency, m.transparency);
        return e;
    }
    if (noColor) return entry(rgb(FltMaterial().ambient), rgb(FltMaterial().diffuse), kBlack, kBlack,
                              FltMaterial().shininess);
    if (packed) {
        // The packed alpha and both transparencies are not used here: the established look.
        const SbColor color = packedRgb(face);
        return entry(color, color, kBlack, kBlack, 0.0f);
    }
    const int32_t index = face.primaryColorIndex;
    const int32_t slot = index >> 7;
    if (static_cast<uint32_t>(slot) > 0x20000u) {
        FltFaceMaterialEntry bad;
        bad.set = false;
        return bad;
    }
    SbColor color = tableColor(palettes, slot);
    color *= static_cast<float>((index & 127) / 127.0);
    FltFaceMaterialEntry e = entry(color, color, kBlack, kBlack, 0.0f);
    e.transparency = static_cast<float>((face.transparency / 65535.0) * (1.0 - objectTransparency));
    return e;
}
