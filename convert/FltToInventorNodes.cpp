// The nodes some records become, apart from where the walk puts them: the header's scale,
// shape hints and bindings, the level of detail around its content, the switch separator
// with its masks, the clip planes.
#include <Inventor/SbName.h>
#include <Inventor/SbPlane.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoClipPlane.h>
#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoLOD.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoNormalBinding.h>
#include <Inventor/nodes/SoScale.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoTextureCoordinateBinding.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "convert/FltToInventor.h"
#include "reader/FltRecordClipRegion.h"
#include "reader/FltRecordHeader.h"
#include "reader/FltRecordLOD.h"
#include "reader/FltRecordSwitch.h"

void FltToInventor::addHeaderNodes(const FltRecordHeader& header)
{
    double factor = header.metresPerUnit();
    if (header.formatRevisionLevel < 13) {
        // Old files carry a unit multiplier (positive) or divisor (negative); 0 collapses the
        // geometry, as the format's readers always did.
        const int m = header.multiplierDiviserUnit;
        if (m < 0)
            factor /= -m;
        else
            factor *= m;
    }
    if (factor != 1.0) {
        auto* scale = new SoScale;
        const float f = static_cast<float>(factor);
        scale->scaleFactor.setValue(f, f, f);
        result->addChild(scale);
    }

    auto* hints = new SoShapeHints;
    hints->vertexOrdering = SoShapeHints::COUNTERCLOCKWISE;
    hints->shapeType = SoShapeHints::SOLID;
    result->addChild(hints);
    auto* texBinding = new SoTextureCoordinateBinding;
    texBinding->value = SoTextureCoordinateBinding::PER_VERTEX_INDEXED;
    result->addChild(texBinding);
    auto* normalBinding = new SoNormalBinding;
    normalBinding->value = SoNormalBinding::PER_VERTEX_INDEXED;
    result->addChild(normalBinding);
}

SoLOD* FltToInventor::makeLod(const FltRecordLOD& record)
{
    auto* lod = new SoLOD;
    lod->setName(record.idASCII);
    lod->center.setValue(static_cast<float>(record.XcenterCoordinate), static_cast<float>(record.YcenterCoordinate),
                         static_cast<float>(record.ZcenterCoordinate));
    lod->range.set1Value(0, static_cast<float>(record.switchOutDistance));
    lod->range.set1Value(1, static_cast<float>(record.switchInDistance));
    return lod;
}

void FltToInventor::completeLod(SoLOD* lod, SoSeparator* content)
{
    // Nearer than the switch-out distance the LOD shows the empty label, then the content,
    // and beyond the switch-in distance nothing.
    lod->addChild(minRangeLimitLabel);
    lod->addChild(content);
    // The file's centre is kept whenever it is not exactly zero; the freeze-centre flag is
    // not consulted, as in every database converted so far.
    if (lod->center.getValue() == SbVec3f(0, 0, 0)) {
        SoGetBoundingBoxAction box{SbViewportRegion()};
        FltNodeStack::noteTraversal();
        box.apply(content);
        lod->center.setValue(box.getBoundingBox().getCenter());
    }
    lod->addChild(maxRangeLimitLabel);
}

void FltToInventor::widenOldLod(const FltRecordOLDLOD& record, FltRecordLOD& widened)
{
    std::copy(std::begin(record.idASCII), std::end(record.idASCII), std::begin(widened.idASCII));
    widened.switchInDistance = static_cast<double>(record.switchInDistance);
    widened.switchOutDistance = static_cast<double>(record.switchOutDistance);
    widened.flags = record.flags;
    widened.XcenterCoordinate = static_cast<double>(record.XcenterCoordinate);
    widened.YcenterCoordinate = static_cast<double>(record.YcenterCoordinate);
    widened.ZcenterCoordinate = static_cast<double>(record.ZcenterCoordinate);
}

SoSeparator* FltToInventor::makeSwitchSeparator(const FltRecordSwitch& record)
{
    auto* separator = new SoSeparator;
    separator->setName(record.idASCII);
    // The name carries "flt_switch", which is how children added later find their switch.
    const std::string name = std::string(separator->getName().getString()) + "_(flt_switch)";
    separator->setName(name.c_str());
    SoInfo* info = new SoInfo;
    static const SbName infoName(kFltSwitchInfoName);  // made once: see FltRecordNames.h
    info->setName(infoName);
    info->string.setValue(fltSwitchMaskText(record).c_str());
    separator->addChild(info);
    return separator;
}

void FltToInventor::addClipPlanes(SoGroup* separator, const FltRecordClipRegion& record)
{
    const int planes = record.getUsedFlags();
    for (int i = 0; i < planes && i < FltRecordClipRegion::kPlanes; ++i) {
        auto* clip = new SoClipPlane;
        const SbVec3f normal(static_cast<float>(record.clipRegionCoefs[FltRecordClipRegion::A][i]),
                             static_cast<float>(record.clipRegionCoefs[FltRecordClipRegion::B][i]),
                             static_cast<float>(record.clipRegionCoefs[FltRecordClipRegion::C][i]));
        clip->plane.setValue(SbPlane(normal, static_cast<float>(-record.clipRegionCoefs[FltRecordClipRegion::D][i])));
        clip->on.setValue(record.isEnabledClipPlane(i));
        separator->addChild(clip);
    }
}
