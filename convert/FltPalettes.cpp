// The palettes as plain values.
#include "convert/FltPalettes.h"

#include <algorithm>
#include <limits>

#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordColorPalette.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordMaterial.h"
#include "reader/FltRecordNamePalette.h"
#include "reader/FltRecordTexturePattern.h"
#include "reader/FltRecordVertex.h"

namespace {

bool offsetBefore(const std::pair<uint64_t, FltVertexEntry>& entry, uint64_t offset) { return entry.first < offset; }

// Slots are kept for palettes up to this size; a larger (damaged) offset uses the search.
constexpr uint64_t kMaxSlottedOffset = uint64_t(1) << 34;

}  // namespace

FltVertexEntry& FltVertexOffsetMap::add(uint64_t offset)
{
    if (entries_.empty() || entries_.back().first < offset) {
        entries_.emplace_back(offset, FltVertexEntry());
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
    return entries_.emplace(it, offset, FltVertexEntry())->second;
}

void FltVertexOffsetMap::reserve(size_t vertices, uint64_t lastOffset)
{
    entries_.reserve(entries_.size() + vertices);
    if (ordered_ && lastOffset < kMaxSlottedOffset) slots_.reserve((lastOffset >> 3) + 1);
}

const FltVertexEntry* FltVertexOffsetMap::search(uint64_t offset) const
{
    auto it = std::lower_bound(entries_.begin(), entries_.end(), offset, offsetBefore);
    return it != entries_.end() && it->first == offset ? &it->second : nullptr;
}

void FltPalettes::setColorPalette(const FltRecordColorPalette& record)
{
    // The record keeps red in the low byte and alpha in the high byte; the table keeps red
    // high and alpha low. Only the slots the record holds and those an earlier one may have
    // filled are written, so that a short record costs little.
    const int held = std::min(record.slotsHeld(), kColorTableSize);
    for (int i = 0; i < held; ++i) {
        const uint32_t c = record.colorAt(i);
        colorTable_[i] = (c << 24) | ((c & 0xFF00u) << 8) | ((c >> 8) & 0xFF00u) | (c >> 24);
    }
    for (int i = held; i < colorTableFilled_; ++i) colorTable_[i] = 0;
    colorTableFilled_ = held;
}

void FltPalettes::setMaterialAt(int index, const float ambient[3], const float diffuse[3], const float specular[3],
                                const float emissive[3], float shininess, float alpha)
{
    if (index < 0) {
        FltWarningMessageConsole::notifyMessage("WARNING ! Material palette index " + std::to_string(index) +
                                                    " is outside 0.." + std::to_string(kHighestMaterialIndex) +
                                                    ": the material is ignored",
                                                3, true);
        return;
    }
    // A face names its material in 16 bits: nothing in the file can reach a higher index.
    if (index > kHighestMaterialIndex) return;
    if (static_cast<size_t>(index) >= materials_.size()) materials_.resize(static_cast<size_t>(index) + 1);
    FltMaterial& m = materials_[static_cast<size_t>(index)];
    std::copy(ambient, ambient + 3, m.ambient);
    std::copy(diffuse, diffuse + 3, m.diffuse);
    std::copy(specular, specular + 3, m.specular);
    std::copy(emissive, emissive + 3, m.emissive);
    // The file's shininess runs from 0 to 128, the scene graph's from 0 to 1.
    m.shininess = shininess * 0.0078125f;
    m.transparency = 1.0f - alpha;
}

void FltPalettes::setMaterial(const FltRecordMaterial& record)
{
    // Flags and name are not consulted.
    setMaterialAt(record.index, record.ambient, record.diffuse, record.specular, record.emissive, record.shininess,
                  record.alpha);
}

void FltPalettes::setOldMaterials(const FltRecordOLDMaterialPalette& record)
{
    // Only the materials the record holds apply: a full record gives all 64, and a short one
    // (already reported by the parser) must not cost 64 materials per record.
    for (int k = 0; k < record.materialsHeld(); ++k) {
        const auto& e = record.material(k);
        const float ambient[3] = {e.ambientRed, e.ambientGreen, e.ambientBlue};
        const float diffuse[3] = {e.diffuseRed, e.diffuseGreen, e.diffuseBlue};
        const float specular[3] = {e.specularRed, e.specularGreen, e.specularBlue};
        const float emissive[3] = {e.emissiveRed, e.emissiveGreen, e.emissiveBlue};
        setMaterialAt(k, ambient, diffuse, specular, emissive, e.shininess, e.alpha);
    }
}

const FltMaterial& FltPalettes::material(int index) const
{
    static const FltMaterial defaults;
    return index >= 0 && static_cast<size_t>(index) < materials_.size() ? materials_[static_cast<size_t>(index)]
                                                                         : defaults;
}

void FltPalettes::setTexturePattern(const FltRecordTexturePattern& record)
{
    textureNames_[record.patternIndex] = record.fileName;
}

const std::string* FltPalettes::textureName(int patternIndex) const
{
    auto it = textureNames_.find(patternIndex);
    return it == textureNames_.end() ? nullptr : &it->second;
}

void FltPalettes::setLineStyle(const FltRecordLineStylePalette& record)
{
    lineStyles_[record.lineStyleIndex] = FltLineStyle{record.lineWidth, record.patternMask};
}

void FltPalettes::setNames(const FltRecordNamePalette& record) { names_ = record.names; }

void FltPalettes::reserveVertices(size_t count, uint64_t bytes)
{
    if (count > 0) vertices_.reserve(count, nextVertexOffset_ + bytes);
}

FltVertexEntry& FltPalettes::addVertex(const FltRecordVertexColor& record, int kind)
{
    FltVertexEntry& entry = vertices_.add(nextVertexOffset_);
    entry.size = static_cast<int32_t>(record.getLength());
    entry.kind = kind;
    entry.record = &record;
    nextVertexOffset_ += record.getLength();
    return entry;
}
