// FltSharedVertexProperties: the four SoVertexProperty nodes that hold every vertex of the
// vertex palette in the classic conversion, one per vertex kind, named
// "vertexColorProperty", "vertexColorNormalProperty", "vertexColorUVProperty" and
// "vertexColorNormalUVProperty". Face sets index into them.
#pragma once

#include <Inventor/SbVec3f.h>

#include <cstdint>

#include "convert/FltPalettes.h"

class SoVertexProperty;
class FltRecordVertexColor;

class FltSharedVertexProperties {
public:
    // The entries each property holds before it first grows.
    static constexpr int32_t kInitialCapacity = 100000;

    // Creates the four properties, each referenced once.
    FltSharedVertexProperties();
    ~FltSharedVertexProperties();
    FltSharedVertexProperties(const FltSharedVertexProperties&) = delete;
    FltSharedVertexProperties& operator=(const FltSharedVertexProperties&) = delete;

    // The property of a kind (1 to 4); any other id is reported and reads the colour one.
    SoVertexProperty* property(int kind) const;
    // The kind of a vertex entry; a missing one is reported and reads 5, no kind.
    static int kindOf(const FltVertexEntry* entry);
    // The vertices appended to the property of a kind, copies included.
    int32_t count(int kind) const { return shared_[kind - 1].count; }

    // Appends one vertex record to the property of its kind; returns its index there.
    int32_t append(int kind, const FltRecordVertexColor& record, uint32_t rgba);
    // Copies a vertex of another kind into the colour, normal and texture property with the
    // normal given; returns its index there.
    int32_t copyToRichest(int kind, int32_t index, const SbVec3f& normal);
    // Shrinks a property's fields to the vertices it holds.
    void trim(int kind);

private:
    // A count, a capacity and a write target per property.
    struct Shared {
        int id = UNDEFINED_SO_VERTEX_PROPERTY_ID;
        SoVertexProperty* property = nullptr;
        int32_t count = 0;
        int32_t capacity = 0;
        bool sized = false;  // fields sized to the initial capacity
        // The property whose vertex field receives this one's positions (see append).
        SoVertexProperty* positionTarget = nullptr;
    };
    Shared shared_[4];
};
