// The vertex palette: every vertex lands in one of the four shared vertex properties, and
// a map from palette offset to its place lets faces find it again.
#include <Inventor/SbColor.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <algorithm>
#include <limits>
#include <iostream>

#include "convert/FltFieldUtil.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordVertex.h"

using fltfield::growField;
using fltfield::writeEntry;

namespace {

constexpr uint32_t kOpaqueWhite = 0xFFFFFFFFu;

}  // namespace

namespace {
bool offsetBefore(const std::pair<uint64_t, VertexEntry>& entry, uint64_t offset) { return entry.first < offset; }

// Slots are kept for palettes up to this size; a larger (damaged) offset uses the search.
constexpr uint64_t kMaxSlottedOffset = uint64_t(1) << 34;
}  // namespace

VertexEntry& FltVertexOffsetMap::insert(uint64_t offset)
{
    if (entries_.empty() || entries_.back().first < offset) {
        entries_.emplace_back(offset, VertexEntry());
        if (ordered_ && (offset & 7) == 0 && offset < kMaxSlottedOffset &&
            entries_.size() < std::numeric_limits<uint32_t>::max()) {
            if (slots_.size() <= (offset >> 3)) slots_.resize((offset >> 3) + 1, 0);
            slots_[offset >> 3] = static_cast<uint32_t>(entries_.size());
        }
        return entries_.back().second;
    }
    auto it = std::lower_bound(entries_.begin(), entries_.end(), offset, offsetBefore);
    if (it != entries_.end() && it->first == offset) return it->second;
    // An offset out of order moves the entries: the slots no longer hold.
    ordered_ = false;
    slots_.clear();
    slots_.shrink_to_fit();
    return entries_.emplace(it, offset, VertexEntry())->second;
}

const VertexEntry* FltVertexOffsetMap::search(uint64_t offset) const
{
    auto it = std::lower_bound(entries_.begin(), entries_.end(), offset, offsetBefore);
    return it != entries_.end() && it->first == offset ? &it->second : nullptr;
}

void FltToInventor::visitVertexPalette(const FltRecordVertexPalette*) {}

void FltToInventor::visitVertexColor(const FltRecordVertexColor* record)
{
    if (record) appendVertex(sharedProperties[0], record, vertexColor(record, false));
}

void FltToInventor::visitVertexColorNormal(const FltRecordVertexColorNormal* record)
{
    if (record) appendVertex(sharedProperties[1], record, vertexColor(record, false));
}

void FltToInventor::visitVertexColorUV(const FltRecordVertexColorUv* record)
{
    if (record) appendVertex(sharedProperties[2], record, vertexColor(record, false));
}

void FltToInventor::visitVertexColorNormalUV(const FltRecordVertexColorNormalUv* record)
{
    if (record) appendVertex(sharedProperties[3], record, vertexColor(record, true));
}

uint32_t FltToInventor::vertexColor(const FltRecordVertexColor* record, bool normalUvKind) const
{
    if (record->isNoColor()) return kOpaqueWhite;
    if (record->isPackedColor()) {
        // The file's alpha goes in as a transparency, so the stored alpha is its inverse:
        // kept on purpose, the established colours of packed vertices.
        const uint8_t* abgr = record->packedColor;
        SbColor color(abgr[3] / 255.0f, abgr[2] / 255.0f, abgr[1] / 255.0f);
        return color.getPackedValue(abgr[0] / 255.0f);
    }
    // Colour index: palette entry from bit 14 upward, intensity from bits 7 to 13. The kind
    // with normal and texture coordinates shifts instead of dividing, so every negative
    // index is white for it, and packs its colour fully transparent: both kept on purpose.
    const int32_t index = record->vertexColorIndex;
    const int32_t q = normalUvKind ? (index >> 7) : (index / 128);
    if (static_cast<uint32_t>(q) > 0x20000u) return kOpaqueWhite;
    const int32_t entry = (index < 0 ? index + 127 : index) >> 14;
    const float intensity = static_cast<float>((q & 127) / 127.0);
    float transparency = 0.0f;
    SbColor color;
    color.setPackedValue(getColorTableEntry(entry), transparency);
    color *= intensity;
    return color.getPackedValue(normalUvKind ? 1.0f : transparency);
}

void FltToInventor::appendVertex(SharedVertexProperty& shared, const FltRecordVertexColor* record, uint32_t rgba)
{
    VertexEntry& entry = offsetToVertexEntry.insert(currentPaletteOffset);
    entry.index = shared.count;
    entry.size = static_cast<int32_t>(record->getLength());
    entry.property = shared.property;
    currentPaletteOffset += record->getLength();

    SoVertexProperty* property = shared.property;
    const int count = shared.count;
    const bool normals = hasNormals(shared.id);
    const bool texCoords = hasTexCoords(shared.id);
    if (!shared.sized && property->vertex.getNum() <= count) {
        // The fields hold 100000 entries from the start and grow past that. Each entry below
        // the count is written before anything reads it, so the first sizing fills nothing.
        shared.sized = true;
        if (normals) property->normal.setNum(kSharedVertexCapacity);
        if (texCoords) property->texCoord.setNum(kSharedVertexCapacity);
        property->orderedRGBA.setNum(kSharedVertexCapacity);
        property->vertex.setNum(kSharedVertexCapacity);
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
        if (shared.id == VERTEX_COLOR_PROPERTY_ID) shared.positionTarget = sharedProperties[2].property;
        if (shared.id == VERTEX_COLOR_NORMAL_PROPERTY_ID) shared.positionTarget = sharedProperties[3].property;
    }

    writeEntry(shared.positionTarget->vertex, count,
               SbVec3f(static_cast<float>(record->Xcoordinate), static_cast<float>(record->Ycoordinate),
                       static_cast<float>(record->Zcoordinate)));
    if (normals)
        writeEntry(property->normal, count,
                   SbVec3f(record->vertexNormal[0], record->vertexNormal[1], record->vertexNormal[2]));
    if (texCoords) writeEntry(property->texCoord, count, SbVec2f(record->texture[0], record->texture[1]));
    writeEntry(property->orderedRGBA, count, rgba);
    shared.count = count + 1;
}

SoVertexProperty* FltToInventor::getVertexPropertyFromIntId(const int& id)
{
    if (id >= VERTEX_COLOR_PROPERTY_ID && id <= VERTEX_COLOR_NORMAL_UV_PROPERTY_ID)
        return sharedProperties[id - 1].property;
    FltWarningMessageConsole::notifyMessage(
        "WARNING: no vertex property associated with this id, vertexColorProperty will be returned", 3, true);
    return sharedProperties[0].property;
}

int FltToInventor::getIntIdFromVertexProperty(SoVertexProperty* property)
{
    for (const SharedVertexProperty& shared : sharedProperties)
        if (property && shared.property == property) return shared.id;
    FltWarningMessageConsole::notifyMessage(
        "WARNING ! This SoVertexProperty hasn t any id,  UNDEFINED_SO_VERTEX_PROPERTY_ID will be returned", 3, true);
    return UNDEFINED_SO_VERTEX_PROPERTY_ID;
}

// Offsets that no vertex record occupies answer index 0, size 0 and no property. They are
// not entered into the map, so that a file full of bad offsets cannot grow it.
SoVertexProperty* FltToInventor::getSoVertexPropertyFromOffset(unsigned long offset)
{
    const VertexEntry* entry = offsetToVertexEntry.find(offset);
    return entry ? entry->property : nullptr;
}

int FltToInventor::getIndexVertexFromOffset(unsigned long offset)
{
    const VertexEntry* entry = offsetToVertexEntry.find(offset);
    return entry ? entry->index : 0;
}

int FltToInventor::getSizeVertexFromOffset(unsigned long offset)
{
    const VertexEntry* entry = offsetToVertexEntry.find(offset);
    return entry ? entry->size : 0;
}

void FltToInventor::copyVertexToVertexColorNormalUV(int sourceId, int sourceIndex, SbVec3f normal, int& newIndex)
{
    SharedVertexProperty& target = sharedProperties[3];
    SoVertexProperty* property = target.property;
    const int count = target.count;
    if (property->vertex.getNum() <= count) {
        // Copies grow the richest property by one entry at a time.
        growField(property->texCoord, count + 1, SbVec2f(0, 0));
        growField(property->normal, count + 1, SbVec3f(0, 0, 0));
        growField(property->vertex, count + 1, SbVec3f(0, 0, 0));
    }
    SoVertexProperty* source = getVertexPropertyFromIntId(sourceId);
    const bool inSource = sourceIndex >= 0 && sourceIndex < source->vertex.getNum();
    writeEntry(property->vertex, count, inSource ? source->vertex[sourceIndex] : SbVec3f(0, 0, 0));
    writeEntry(property->normal, count, normal);
    SbVec2f uv(0, 0);
    if (source->texCoord.getNum() > 0 && sourceIndex >= 0 && sourceIndex < source->texCoord.getNum())
        uv = source->texCoord[sourceIndex];
    writeEntry(property->texCoord, count, uv);

    newIndex = count;
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
}

void FltToInventor::showOffsetToVertexEntryMap(int lineLimit)
{
    int lines = 0;
    for (const auto& e : offsetToVertexEntry.entries()) {
        if (lineLimit > 0 && lines >= lineLimit) break;
        std::cout << "offset: " << e.first << "  index: " << e.second.index << "  size: " << e.second.size
                  << "  SOVP: " << getIntIdFromVertexProperty(e.second.property) << "\n";
        ++lines;
    }
}
