// FltPalettes: what the palette records of a database define, as plain values that any
// builder or exporter can read: the colour table, the materials, the texture file names,
// the line styles, the name palette and the vertex pool by palette offset.
//
// The palettes are filled as a walk meets their records, so a face reads the palettes as
// they stand at its place in the file. Nothing here depends on the scene graph library.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

class FltRecordColorPalette;
class FltRecordLineStylePalette;
class FltRecordMaterial;
class FltRecordNamePalette;
class FltRecordOLDMaterialPalette;
class FltRecordTexturePattern;
class FltRecordVertexColor;

// The four kinds of vertex record (colour; colour and normal; colour and texture coordinates;
// all three), numbered as the shared vertex properties that hold them; 5 stands for none.
enum FltVertexPropertyId {
    VERTEX_COLOR_PROPERTY_ID = 1,
    VERTEX_COLOR_NORMAL_PROPERTY_ID = 2,
    VERTEX_COLOR_UV_PROPERTY_ID = 3,
    VERTEX_COLOR_NORMAL_UV_PROPERTY_ID = 4,
    UNDEFINED_SO_VERTEX_PROPERTY_ID = 5
};

inline bool fltKindHasNormals(int kind)
{
    return kind == VERTEX_COLOR_NORMAL_PROPERTY_ID || kind == VERTEX_COLOR_NORMAL_UV_PROPERTY_ID;
}
inline bool fltKindHasTexCoords(int kind)
{
    return kind == VERTEX_COLOR_UV_PROPERTY_ID || kind == VERTEX_COLOR_NORMAL_UV_PROPERTY_ID;
}

// A vertex of the vertex palette: its kind, its record, its record's length and the index a
// builder gave it.
struct FltVertexEntry {
    int32_t index = 0;
    int32_t size = 0;
    int kind = UNDEFINED_SO_VERTEX_PROPERTY_ID;
    const FltRecordVertexColor* record = nullptr;
};

// Vertex palette offsets to vertices. Offsets arrive in increasing order while the palette
// is walked, so entries are kept sorted by offset; vertex records are multiples of 8 bytes
// long, so a slot per 8 bytes of palette answers almost every lookup at once, and a binary
// search the others.
class FltVertexOffsetMap {
public:
    // The entry of an offset, created when absent.
    FltVertexEntry& add(uint64_t offset);
    // Room for this many more vertices, the last one at most at lastOffset: a palette's
    // vertices are added without the arrays moving.
    void reserve(size_t vertices, uint64_t lastOffset);
    // The entry of an offset, or null when no vertex record starts there.
    const FltVertexEntry* lookup(uint64_t offset) const
    {
        if ((offset & 7) == 0 && (offset >> 3) < slots_.size()) {
            const uint32_t slot = slots_[offset >> 3];
            return slot ? &entries_[slot - 1].second : nullptr;
        }
        return search(offset);
    }
    size_t count() const { return entries_.size(); }
    const std::vector<std::pair<uint64_t, FltVertexEntry>>& entries() const { return entries_; }

private:
    const FltVertexEntry* search(uint64_t offset) const;
    std::vector<std::pair<uint64_t, FltVertexEntry>> entries_;
    // Entry number + 1 of the vertex at each multiple of 8, 0 for none; valid while entries
    // were appended in increasing order (the slots stop growing otherwise).
    std::vector<uint32_t> slots_;
    bool ordered_ = true;
};

// A material as the scene graph takes it: colours, shininess and transparency from 0 to 1.
// A default one holds Inventor's own defaults, which every index no record set reads.
struct FltMaterial {
    float ambient[3] = {0.2f, 0.2f, 0.2f};
    float diffuse[3] = {0.8f, 0.8f, 0.8f};
    float specular[3] = {0, 0, 0};
    float emissive[3] = {0, 0, 0};
    float shininess = 0.2f;
    float transparency = 0;
};

struct FltLineStyle {
    int32_t width = 0;
    uint16_t pattern = 0;
};

class FltPalettes {
public:
    static constexpr int kColorTableSize = 4152;
    // Faces address materials with a 16-bit index; entries beyond are never reachable.
    static constexpr int kHighestMaterialIndex = 32767;

    // The colour palette replaces the whole table.
    void setColorPalette(const FltRecordColorPalette& record);
    // A table entry as red, green, blue and alpha from the high byte down; an index outside
    // the table reads opaque white.
    uint32_t color(long index) const
    {
        return index < 0 || index >= kColorTableSize ? 0xFFFFFFFFu : colorTable_[index];
    }

    // Every material record applies, used or not; an index outside 0..32767 is reported and
    // ignored.
    void setMaterial(const FltRecordMaterial& record);
    void setOldMaterials(const FltRecordOLDMaterialPalette& record);
    const FltMaterial& material(int index) const;

    void setTexturePattern(const FltRecordTexturePattern& record);
    // The file name of a pattern index as written in the database, or null.
    const std::string* textureName(int patternIndex) const;

    void setLineStyle(const FltRecordLineStylePalette& record);
    const std::map<int, FltLineStyle>& lineStyles() const { return lineStyles_; }

    void setNames(const FltRecordNamePalette& record);
    const std::map<int, std::string>& names() const { return names_; }

    // Enters a vertex record of the given kind at the next palette offset (the first vertex
    // lies 8 bytes into the palette, after the palette record itself).
    FltVertexEntry& addVertex(const FltRecordVertexColor& record, int kind);
    // Room for this many more vertices, of these many bytes together, added from here on.
    void reserveVertices(size_t count, uint64_t bytes);
    // The vertex at a palette offset, or null when no vertex record starts there.
    const FltVertexEntry* vertexAt(uint64_t offset) const { return vertices_.lookup(offset); }
    const FltVertexOffsetMap& vertices() const { return vertices_; }

private:
    void setMaterialAt(int index, const float ambient[3], const float diffuse[3], const float specular[3],
                       const float emissive[3], float shininess, float alpha);

    uint32_t colorTable_[kColorTableSize] = {};
    int colorTableFilled_ = 0;  // slots from this one on are zero
    std::vector<FltMaterial> materials_;
    std::map<int, std::string> textureNames_;
    std::map<int, FltLineStyle> lineStyles_;
    std::map<int, std::string> names_;
    FltVertexOffsetMap vertices_;
    uint64_t nextVertexOffset_ = 8;
};
