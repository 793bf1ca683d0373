// Palette records fill the converter's tables: colours, materials, textures, line styles and
// names. No palette adds a node to the graph by itself.
#include <Inventor/SbColor.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoTexture2.h>

#include <string>

#include "convert/FltFieldUtil.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordColorPalette.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordMaterial.h"
#include "reader/FltRecordNamePalette.h"
#include "reader/FltRecordTexturePattern.h"

using fltfield::releaseIfUnused;
using fltfield::setEntry;

namespace {

// Faces address materials with a 16-bit index; entries beyond are never reachable.
constexpr int kHighestMaterialIndex = 32767;

}  // namespace

uint32_t FltToInventor::getColorTableEntry(long index) const
{
    // An index outside the table reads opaque white.
    if (index < 0 || index >= kColorTableSize) return 0xFFFFFFFFu;
    return colorTable[index];
}

void FltToInventor::visitColorPalette(const FltRecordColorPalette* record)
{
    if (!record) return;
    // The record keeps red in the low byte and alpha in the high byte; the table keeps the
    // form that SbColor::setPackedValue takes, red high and alpha low. The palette replaces
    // the whole table; only the slots it holds and those an earlier one may have filled are
    // written, so that a short record costs little.
    const int held = record->slotsHeld() < kColorTableSize ? record->slotsHeld() : kColorTableSize;
    for (int i = 0; i < held; ++i) {
        const uint32_t c = record->colorAt(i);
        colorTable[i] = (c << 24) | ((c & 0xFF00u) << 8) | ((c >> 8) & 0xFF00u) | (c >> 24);
    }
    for (int i = held; i < colorTableFilled; ++i) colorTable[i] = 0;
    colorTableFilled = held;
}

void FltToInventor::setPaletteMaterial(int index, const float ambient[3], const float diffuse[3],
                                       const float specular[3], const float emissive[3], float shininess, float alpha)
{
    if (index < 0 || index > kHighestMaterialIndex) {
        FltWarningMessageConsole::notifyMessage("WARNING ! Material palette index " + std::to_string(index) +
                                                    " is outside 0.." + std::to_string(kHighestMaterialIndex) +
                                                    ": the material is ignored",
                                                3, true);
        return;
    }
    SoMaterial* m = paletteMaterial;
    setEntry(m->ambientColor, index, SbColor(ambient), SbColor(0.2f, 0.2f, 0.2f));
    setEntry(m->diffuseColor, index, SbColor(diffuse), SbColor(0.8f, 0.8f, 0.8f));
    setEntry(m->specularColor, index, SbColor(specular), SbColor(0, 0, 0));
    setEntry(m->emissiveColor, index, SbColor(emissive), SbColor(0, 0, 0));
    // The file's shininess runs from 0 to 128, Inventor's from 0 to 1.
    setEntry(m->shininess, index, shininess * 0.0078125f, 0.2f);
    setEntry(m->transparency, index, 1.0f - alpha, 0.0f);
}

void FltToInventor::visitMaterial(const FltRecordMaterial* record)
{
    if (!record) return;
    // Flags and name are not consulted: every material record applies, used or not.
    setPaletteMaterial(record->index, record->ambient, record->diffuse, record->specular, record->emissive,
                       record->shininess, record->alpha);
}

void FltToInventor::visitOLDMaterialPalette(const FltRecordOLDMaterialPalette* record)
{
    if (!record) return;
    // Only the materials the record holds apply: a full record gives all 64, and a short one
    // (already reported by the parser) must not cost 64 materials per record.
    for (int k = 0; k < record->materialsHeld(); ++k) {
        const auto& e = record->material(k);
        const float ambient[3] = {e.ambientRed, e.ambientGreen, e.ambientBlue};
        const float diffuse[3] = {e.diffuseRed, e.diffuseGreen, e.diffuseBlue};
        const float specular[3] = {e.specularRed, e.specularGreen, e.specularBlue};
        const float emissive[3] = {e.emissiveRed, e.emissiveGreen, e.emissiveBlue};
        setPaletteMaterial(k, ambient, diffuse, specular, emissive, e.shininess, e.alpha);
    }
}

void FltToInventor::visitTexturePattern(const FltRecordTexturePattern* record)
{
    if (!record) return;
    auto* texture = new SoTexture2;
    texture->filename.setValue((relativePath + record->fileName).c_str());
    // The table holds its own reference: the faces that used an earlier texture of this
    // index may be released before the conversion ends.
    texture->ref();
    SoTexture2*& slot = textures[record->patternIndex];
    if (slot) slot->unref();
    slot = texture;
}

SoTexture2* FltToInventor::getTexture(int patternIndex)
{
    auto it = textures.find(patternIndex);
    return it == textures.end() ? nullptr : it->second;
}

void FltToInventor::visitLineStylePalette(const FltRecordLineStylePalette* record)
{
    if (!record) return;
    auto* style = new SoDrawStyle;
    style->lineWidth = static_cast<float>(record->lineWidth);
    style->linePattern = record->patternMask;
    style->ref();
    SoDrawStyle*& slot = lineStyles[record->lineStyleIndex];
    if (slot) slot->unref();
    slot = style;
}

// Light sources and texture mappings convert to nothing.
void FltToInventor::visitLightSourcePalette(const FltRecordLightSourcePalette*) {}

void FltToInventor::visitTextureMapping(const FltRecordTextureMappingPalette*) {}

void FltToInventor::visitNamePalette(const FltRecordNamePalette* record)
{
    if (record) names = record->names;
}
