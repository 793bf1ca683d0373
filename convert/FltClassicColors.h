// The colour rules of the classic conversion, as functions of a record, the palettes and the
// format revision: the packed colour of each vertex in the shared vertex properties, and the
// material entry of each face.
//
// They reproduce the established converter, whose results are often not what the format
// means (see the comments in the source): the golden files hold them to it.
#pragma once

#include <Inventor/SbColor.h>

#include <cstdint>

class FltPalettes;
class FltRecordFace;
class FltRecordVertexColor;
class FltVersion;

// The packed colour (red high, alpha low) of a vertex record by its flags, packed colour or
// colour index. The kind with normal and texture coordinates has rules of its own.
uint32_t fltClassicVertexColor(const FltRecordVertexColor& vertex, bool normalUvKind, const FltPalettes& palettes);

// One face's entry in the material of its face group.
struct FltFaceMaterialEntry {
    // False when the face's colour index lies beyond every palette: the entry is left to
    // the faces after it, and the log says "bad color index".
    bool set = true;
    SbColor ambient, diffuse, specular, emissive;
    float shininess = 0;
    // False when the rule leaves the transparency entry unwritten.
    bool setsTransparency = true;
    float transparency = 0;
};

// The entry of a face in an object of the given transparency (the object record's raw value,
// used as it stands).
FltFaceMaterialEntry fltClassicFaceMaterial(const FltRecordFace& face, const FltPalettes& palettes,
                                            const FltVersion& version, float objectTransparency);
