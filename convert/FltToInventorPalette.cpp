// Palette records in the classic conversion: the palettes keep their values, and texture
// patterns, line styles and vertices become the nodes the faces use.
#include <Inventor/SoInput.h>
#include <Inventor/lists/SbStringList.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoTexture2.h>

#include <sys/stat.h>

#include <string>
#include <vector>

#include "convert/FltClassicColors.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordTexturePattern.h"
#include "reader/FltRecordVertex.h"

namespace {

// Whether the scene graph library, looking for this image where it looks (the working
// folder, then its search folders), could meet a named pipe or a device and wait on it.
bool mayBlock(const std::string& name)
{
    std::vector<std::string> candidates{name};
    if (!name.empty() && name[0] != '/') {
        const SbStringList& folders = SoInput::getDirectories();
        for (int i = 0; i < folders.getLength(); ++i)
            candidates.push_back(std::string(folders[i]->getString()) + "/" + name);
    }
    for (const std::string& candidate : candidates) {
        struct stat info;
        if (::stat(candidate.c_str(), &info) == 0 &&
            (S_ISFIFO(info.st_mode) || S_ISCHR(info.st_mode) || S_ISBLK(info.st_mode) || S_ISSOCK(info.st_mode)))
            return true;
    }
    return false;
}

}  // namespace

void FltToInventor::visitTexturePattern(const FltRecordTexturePattern* record)
{
    if (!record) return;
    palettes.setTexturePattern(*record);
    auto* texture = new SoTexture2;
    const std::string name = context.texturePrefix + record->fileName;
    if (mayBlock(name)) {
        // The name stays, but no image is read: setting it unheard loads nothing.
        FltWarningMessageConsole::notifyMessage(
            "WARNING ! Texture pattern " + std::to_string(record->patternIndex) + " names " + name +
                ", a named pipe or a device: its image is not read",
            2, true);
        texture->filename.enableNotify(FALSE);
        texture->filename.setValue(name.c_str());
        texture->filename.enableNotify(TRUE);
    } else {
        texture->filename.setValue(name.c_str());
    }
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
