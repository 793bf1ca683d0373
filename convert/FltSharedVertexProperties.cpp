// The classic conversion's shared vertex properties: filling, growing, copying, trimming.
#include "convert/FltSharedVertexProperties.h"

#include <Inventor/SbVec2f.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <algorithm>

#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordVertex.h"

namespace {

const char* const kPropertyNames[4] = {"vertexColorProperty", "vertexColorNormalProperty", "vertexColorUVProperty",
                                       "vertexColorNormalUVProperty"};

// Writes one entry of a multiple-value field in place, without notification; entries
// outside the field are dropped. The caller marks the field changed once its writes end.
template <class Field, class Value>
void writeEntry(Field& field, int index, const Value& value)
{
    if (index < 0 || index >= field.getNum()) return;
    const_cast<Value*>(field.getValues(0))[index] = value;
}

// Grows a field to newSize entries, the new ones set to fill.
template <class Field, class Value>
void growField(Field& field, int newSize, const Value& fill)
{
    const int old = field.getNum();
    if (newSize <= old) return;
    field.setNum(newSize);
    Value* values = field.startEditing();
    std::fill(values + old, values + newSize, fill);
    field.finishEditing();
}

}  // namespace

FltSharedVertexProperties::FltSharedVertexProperties()
{
    for (int i = 0; i < 4; ++i) {
        Shared& shared = shared_[i];
        shared.property = new SoVertexProperty;
        shared.property->ref();
        shared.property->setName(kPropertyNames[i]);
        shared.capacity = kInitialCapacity;
        shared.id = i + 1;
        shared.positionTarget = shared.property;
        // The fields get their 100000 entries with the first vertex of their kind (see
        // append), so that a database without that kind allocates nothing for it.
    }
}

FltSharedVertexProperties::~FltSharedVertexProperties()
{
    for (Shared& shared : shared_) shared.property->unref();
}

SoVertexProperty* FltSharedVertexProperties::property(int kind) const
{
    if (kind >= VERTEX_COLOR_PROPERTY_ID && kind <= VERTEX_COLOR_NORMAL_UV_PROPERTY_ID)
        return shared_[kind - 1].property;
    FltWarningMessageConsole::notifyMessage(
        "WARNING: no vertex property associated with this id, vertexColorProperty will be returned", 3, true);
    return shared_[0].property;
}

int FltSharedVertexProperties::kindOf(const FltVertexEntry* entry)
{
    if (entry) return entry->kind;
    FltWarningMessageConsole::notifyMessage(
        "WARNING ! This SoVertexProperty hasn t any id,  UNDEFINED_SO_VERTEX_PROPERTY_ID will be returned", 3, true);
    return UNDEFINED_SO_VERTEX_PROPERTY_ID;
}

int32_t FltSharedVertexProperties::append(int kind, const FltRecordVertexColor& record, uint32_t rgba)
{
    Shared& shared = shared_[kind - 1];
    SoVertexProperty* property = shared.property;
    const int count = shared.count;
    const bool normals = fltKindHasNormals(shared.id);
    const bool texCoords = fltKindHasTexCoords(shared.id);
    if (!shared.sized && property->vertex.getNum() <= count) {
        // The fields hold 100000 entries from the start and grow past that. Each entry below
        // the count is written before anything reads it, so the first sizing fills nothing.
        shared.sized = true;
        if (normals) property->normal.setNum(kInitialCapacity);
        if (texCoords) property->texCoord.setNum(kInitialCapacity);
        property->orderedRGBA.setNum(kInitialCapacity);
        property->vertex.setNum(kInitialCapacity);
    }
    if (property->vertex.getNum() <= count) {
        const int newSize = static_cast<int>(count * 1.5 + 100.0);
        if (normals) growField(property->normal, newSize, SbVec3f(0, 0, 0));
        if (texCoords) growField(property->texCoord, newSize, SbVec2f(0, 0));
        growField(property->orderedRGBA, newSize, uint32_t(0));
        growField(property->vertex, newSize, SbVec3f(0, 0, 0));
        shared.capacity = newSize;
        // After growing, colour-only vertices continue their positions in the vertex array of
        // "vertexColorUVProperty", and colour-and-normal ones in that of
        // "vertexColorNormalUVProperty": kept on purpose, the established placement of
        // positions past the first 100000 vertices of those kinds.
        if (shared.id == VERTEX_COLOR_PROPERTY_ID) shared.positionTarget = shared_[2].property;
        if (shared.id == VERTEX_COLOR_NORMAL_PROPERTY_ID) shared.positionTarget = shared_[3].property;
    }

    writeEntry(shared.positionTarget->vertex, count,
               SbVec3f(static_cast<float>(record.Xcoordinate), static_cast<float>(record.Ycoordinate),
                       static_cast<float>(record.Zcoordinate)));
    if (normals)
        writeEntry(property->normal, count,
                   SbVec3f(record.vertexNormal[0], record.vertexNormal[1], record.vertexNormal[2]));
    if (texCoords) writeEntry(property->texCoord, count, SbVec2f(record.texture[0], record.texture[1]));
    writeEntry(property->orderedRGBA, count, rgba);
    shared.count = count + 1;
    return count;
}

int32_t FltSharedVertexProperties::copyToRichest(int kind, int32_t index, const SbVec3f& normal)
{
    Shared& target = shared_[VERTEX_COLOR_NORMAL_UV_PROPERTY_ID - 1];
    SoVertexProperty* property = target.property;
    const int count = target.count;
    if (property->vertex.getNum() <= count) {
        // Copies grow the richest property by one entry at a time.
        growField(property->texCoord, count + 1, SbVec2f(0, 0));
        growField(property->normal, count + 1, SbVec3f(0, 0, 0));
        growField(property->vertex, count + 1, SbVec3f(0, 0, 0));
    }
    SoVertexProperty* source = this->property(kind);
    const bool inSource = index >= 0 && index < source->vertex.getNum();
    writeEntry(property->vertex, count, inSource ? source->vertex[index] : SbVec3f(0, 0, 0));
    writeEntry(property->normal, count, normal);
    SbVec2f uv(0, 0);
    if (source->texCoord.getNum() > 0 && index >= 0 && index < source->texCoord.getNum()) uv = source->texCoord[index];
    writeEntry(property->texCoord, count, uv);

    target.count = count + 1;
    // The richest property's colours are emptied after every copy: kept on purpose, the
    // established look of faces that mix textured vertex kinds. So the copied colour is
    // never written: growing and filling the colours only to empty them made each copy cost
    // as much as the whole property.
    property->orderedRGBA.setNum(0);
    property->vertex.touch();
    property->texCoord.touch();
    property->normal.touch();
    property->orderedRGBA.touch();
    return count;
}

void FltSharedVertexProperties::trim(int kind)
{
    Shared& shared = shared_[kind - 1];
    SoVertexProperty* property = shared.property;
    const int count = shared.count;
    property->vertex.setNum(count);
    property->orderedRGBA.setNum(count);
    if (fltKindHasNormals(shared.id)) property->normal.setNum(count);
    if (fltKindHasTexCoords(shared.id)) property->texCoord.setNum(count);
    property->vertex.touch();
    property->orderedRGBA.touch();
    property->normal.touch();
    property->texCoord.touch();
    // The fields now hold exactly count entries: the next vertex appended grows them afresh.
    shared.capacity = count;
    shared.sized = true;
}
