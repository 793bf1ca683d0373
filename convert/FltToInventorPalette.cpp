// Palette records in the classic conversion: the palettes keep their values, and texture
// patterns, line styles and vertices become the nodes the faces use.
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoTexture2.h>

#include "convert/FltClassicColors.h"
#include "convert/FltToInventor.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordTexturePattern.h"
#include "reader/FltRecordVertex.h"

void FltToInventor::visitTexturePattern(const FltRecordTexturePattern* record)
{
    if (!record) return;
    palettes.setTexturePattern(*record);
    auto* texture = new SoTexture2;
    texture->filename.setValue((context.texturePrefix + record->fileName).c_str());
    texture->ref();
    SoTexture2*& slot = textures[record->patternIndex];
    if (slot) slot->unref();
    slot = texture;
}

void FltToInventor::visitLineStylePalette(const FltRecordLineStylePalette* record)
{
    if (!record) return;
    palettes.setLineStyle(*record);
    auto* style = new SoDrawStyle;
    style->lineWidth = static_cast<float>(record->lineWidth);
    style->linePattern = record->patternMask;
    style->ref();
    SoDrawStyle*& slot = lineStyles[record->lineStyleIndex];
    if (slot) slot->unref();
    slot = style;
}

void FltToInventor::visitVertex(const FltRecordVertexColor* record, int kind)
{
    if (!record) return;
    // The colour is decided now, from the colour table as it stands at this record.
    const uint32_t rgba = fltClassicVertexColor(*record, kind == VERTEX_COLOR_NORMAL_UV_PROPERTY_ID, palettes);
    FltVertexEntry& entry = palettes.addVertex(*record, kind);
    entry.index = vertexProperties.append(kind, *record, rgba);
}
