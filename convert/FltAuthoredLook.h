// The as-authored colour rules: how a face or a mesh is drawn by what its fields mean in the
// OpenFlight format, as functions of its fields, the palettes and the format revision.
#pragma once

#include <cstdint>

#include "convert/FltScene.h"

class FltPalettes;
class FltRecordFace;
class FltRecordVertexColor;
struct FltMeshFields;

// The drawing fields that face and mesh records share.
struct FltDrawFields {
    int drawType = 0;
    bool textureWhite = false;
    int texturePattern = -1;
    int material = -1;
    uint16_t transparency = 0;
    uint32_t flags = 0;
    int lightMode = 0;
    uint8_t packedColor[4] = {0, 0, 0, 0};  // alpha, blue, green, red
    uint32_t colorIndex = 0;                // the primary colour index (the colour name index before 15.0)

    static FltDrawFields of(const FltRecordFace& face);
    static FltDrawFields of(const FltMeshFields& mesh);
};

struct FltRgba {
    float r = 1, g = 1, b = 1, a = 1;
};

// How a face or a mesh is drawn.
struct FltAuthoredLook {
    bool hidden = false;  // the "Hidden" flag: not drawn
    // Lit (light modes 2 and 3) or not, sides, the vertices' colours (modes 1 and 3) or the
    // face's, the material's terms that the colour modulates; the texture is the face's
    // pattern index.
    FltSceneAppearance appearance;
    // The face colour, and its alpha: the face's, the material's and the object's opacities
    // together.
    FltRgba color;
};

// The look of a face in an object of the given transparency (0 opaque to 65535 clear).
FltAuthoredLook fltAuthoredLook(const FltDrawFields& fields, const FltPalettes& palettes, int formatRevision,
                                uint16_t objectTransparency);

// A colour index: palette entry index / 128 at intensity (index % 128) / 127 from revision
// 14 on; before, an index into the table of intensities itself.
FltRgba fltIndexedColor(const FltPalettes& palettes, uint32_t index, int formatRevision);

// A vertex's colour as light modes 1 and 3 draw it, with the look's alpha; a vertex without
// a colour of its own takes the face's.
FltRgba fltVertexColor(const FltRecordVertexColor& vertex, const FltAuthoredLook& look, const FltPalettes& palettes,
                       int formatRevision);
