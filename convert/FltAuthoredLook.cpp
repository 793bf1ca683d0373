// The as-authored colours, materials, lighting and sides of faces and meshes.
#include "convert/FltAuthoredLook.h"

#include <algorithm>

#include "convert/FltPalettes.h"
#include "reader/FltMeshRecords.h"
#include "reader/FltRecordFace.h"
#include "reader/FltRecordVertex.h"

namespace {

constexpr uint32_t kNoColor = 0x40000000u;
constexpr uint32_t kPackedColor = 0x10000000u;
constexpr uint32_t kHidden = 0x04000000u;

// Red, green and blue from bytes stored alpha, blue, green, red. The alpha byte is not an
// opacity: writers leave it 0 on visible faces.
FltRgba packedRgb(const uint8_t abgr[4])
{
    FltRgba c;
    c.r = abgr[3] / 255.0f;
    c.g = abgr[2] / 255.0f;
    c.b = abgr[1] / 255.0f;
    return c;
}

}  // namespace

namespace {

// Faces and meshes name their drawing fields alike.
template <class Record>
FltDrawFields drawFieldsOf(const Record& r)
{
    FltDrawFields f;
    f.drawType = r.drawType;
    f.textureWhite = r.textureWhite != 0;
    f.texturePattern = r.texturePatternIndex;
    f.material = r.materialIndex;
    f.transparency = r.transparency;
    f.flags = static_cast<uint32_t>(r.flags);
    f.lightMode = r.lightMode;
    std::copy(r.packedColor, r.packedColor + 4, f.packedColor);
    // Before 15.0 the face decoder gives the colour name index here.
    f.colorIndex = static_cast<uint32_t>(r.primaryColorIndex);
    return f;
}

}  // namespace

FltDrawFields FltDrawFields::of(const FltRecordFace& face) { return drawFieldsOf(face); }

FltDrawFields FltDrawFields::of(const FltMeshFields& mesh) { return drawFieldsOf(mesh); }

FltRgba fltIndexedColor(const FltPalettes& palettes, uint32_t index, int formatRevision)
{
    uint32_t packed = 0;
    float intensity = 1;
    if (formatRevision <= 13) {
        packed = palettes.color(static_cast<long>(std::min<uint32_t>(index, FltPalettes::kColorTableSize)));
    } else {
        packed = palettes.color(static_cast<long>(std::min<uint32_t>(index / 128, FltPalettes::kColorTableSize)));
        intensity = (index % 128) / 127.0f;
    }
    FltRgba c;
    c.r = ((packed >> 24) & 0xFF) / 255.0f * intensity;
    c.g = ((packed >> 16) & 0xFF) / 255.0f * intensity;
    c.b = ((packed >> 8) & 0xFF) / 255.0f * intensity;
    return c;
}

FltAuthoredLook fltAuthoredLook(const FltDrawFields& fields, const FltPalettes& palettes, int formatRevision,
                                uint16_t objectTransparency)
{
    FltAuthoredLook look;
    look.hidden = (fields.flags & kHidden) != 0;
    FltSceneAppearance& a = look.appearance;
    a.lit = fields.lightMode == 2 || fields.lightMode == 3;
    a.vertexColors = fields.lightMode == 1 || fields.lightMode == 3;
    // Draw type 0 culls the back faces; 1 draws both sides (and so do the wireframe and
    // light point types, drawn here as solids).
    a.twoSided = fields.drawType != 0;
    a.texture = fields.texturePattern >= 0 ? fields.texturePattern : -1;

    FltRgba& color = look.color;
    if (a.texture >= 0 && fields.textureWhite) {
        // The texture is not tinted.
    } else if (fields.flags & kNoColor) {
        // No colour of its own: white, or the material alone.
    } else if (fields.flags & kPackedColor) {
        color = packedRgb(fields.packedColor);
    } else {
        color = fltIndexedColor(palettes, fields.colorIndex, formatRevision);
    }

    float alpha = (1.0f - fields.transparency / 65535.0f) * (1.0f - objectTransparency / 65535.0f);
    if (fields.material >= 0) {
        const FltMaterial& m = palettes.material(fields.material);
        alpha *= 1.0f - m.transparency;
        // A material shades lit faces only: the colour modulates its ambient and diffuse,
        // its other terms are its own. Unlit faces show their colour as it is.
        if (a.lit) {
            for (int i = 0; i < 3; ++i) {
                a.ambient[i] = m.ambient[i];
                a.diffuse[i] = m.diffuse[i];
                a.specular[i] = m.specular[i];
                a.emissive[i] = m.emissive[i];
            }
            a.shininess = m.shininess;
        }
    }
    color.a = std::max(0.0f, std::min(1.0f, alpha));
    return look;
}

FltRgba fltVertexColor(const FltRecordVertexColor& vertex, const FltAuthoredLook& look, const FltPalettes& palettes,
                       int formatRevision)
{
    if (vertex.isNoColor()) return look.color;
    FltRgba c;
    if (vertex.isPackedColor()) {
        c = packedRgb(vertex.packedColor);
    } else {
        const int32_t index = formatRevision >= 1540 ? vertex.vertexColorIndex : vertex.colorNameIndex;
        c = fltIndexedColor(palettes, static_cast<uint32_t>(index), formatRevision);
    }
    c.a = look.color.a;
    return c;
}
