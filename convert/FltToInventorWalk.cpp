// The walk over the parsed records: dispatch by category and opcode, ancillary records
// applied to the node before them, children between push and pop levels; and the header.
#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoNormalBinding.h>
#include <Inventor/nodes/SoScale.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoTextureCoordinateBinding.h>

#include <cstring>
#include <string>

#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltParser.h"
#include "reader/FltRecordClipRegion.h"
#include "reader/FltRecordColorPalette.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordDOF.h"
#include "reader/FltRecordExternalReference.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordHeader.h"
#include "reader/FltRecordLOD.h"
#include "reader/FltRecordLightSource.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordMaterial.h"
#include "reader/FltRecordNamePalette.h"
#include "reader/FltRecordSwitch.h"
#include "reader/FltRecordText.h"
#include "reader/FltRecordTextureMapping.h"
#include "reader/FltRecordTexturePattern.h"
#include "reader/FltRecordTransformations.h"
#include "reader/FltRecordUnknown.h"
#include "reader/FltRecordVertex.h"

namespace {

// Primary records nest by recursion (a group visits its children, which may be groups);
// deeper hierarchies than this are not converted, so that no file can exhaust the stack.
constexpr int kMaxHierarchyDepth = 500;


}  // namespace

void FltToInventor::visitAllFltRecords()
{
    if (!fltParser) return;
    std::vector<FltRecord*>& records = fltParser->records;
    if (records.empty() || records.back() != nullptr) records.push_back(nullptr);

    for (FltRecordIterator it = records.begin(); !isEnd(it); advance(it)) {
        FltRecord* record = *it;
        switch (record->getCategoryKind()) {
        case FltCategory::Primary: visitPrimaryRecord(it); break;
        case FltCategory::Ancillary: visitAncillaryRecord(record); break;
        case FltCategory::Control: visitControlRecord(record); break;
        case FltCategory::Palette: visitPaletteRecord(record); break;
        case FltCategory::Unknown: visitUnknownCategoryFltRecord(record); break;
        }
        if (!releaseCandidates.empty()) releaseUnreachable();
    }
    releaseNotifications();
    // The walk is over: the caller may release the root before the converter.
    releaseLastPrimaryNode();
    releaseCandidates.clear();
    allFltRecordsVisited = true;
}

void FltToInventor::visitPrimaryRecord(FltRecordIterator& it)
{
    FltRecord* record = *it;
    if (!record) return;
    if (hierarchyDepth >= kMaxHierarchyDepth) {
        if (!hierarchyTooDeepReported) {
            hierarchyTooDeepReported = true;
            FltWarningMessageConsole::notifyMessage(
                "ERROR ! The hierarchy is nested more than " + std::to_string(kMaxHierarchyDepth) +
                    " levels deep at a record of opcode " + std::to_string(record->getOpcode()) +
                    ": deeper records are not converted",
                3, true);
        }
        return;
    }
    ++hierarchyDepth;
    switch (record->getOpcode()) {
    case 1: visitHeader(fltRecordCast<FltRecordHeader>(record)); break;
    case 2: visitGroup(fltRecordCast<FltRecordGroup>(record), it); break;
    case 3: visitOLDLOD(fltRecordCast<FltRecordOLDLOD>(record), it); break;
    case 4: visitObject(fltRecordCast<FltRecordObject>(record), it); break;
    case 5: visitNextSuccessiveFaces(it); break;
    case 14: visitDOF(fltRecordCast<FltRecordDOF>(record), it); break;
    case 63: visitExternalReference(fltRecordCast<FltRecordExternalReference>(record), it); break;
    case 73: visitLOD(fltRecordCast<FltRecordLOD>(record), it); break;
    case 95: visitText(fltRecordCast<FltRecordText>(record), it); break;
    case 96: visitSwitch(fltRecordCast<FltRecordSwitch>(record), it); break;
    case 98: visitClipRegion(fltRecordCast<FltRecordClipRegion>(record), it); break;
    default: break;  // light sources, sounds, light points and the rest build nothing
    }
    --hierarchyDepth;
}

void FltToInventor::visitControlRecord(FltRecord* record)
{
    if (!record) return;
    switch (record->getOpcode()) {
    case 10: visitPushLevel(); break;
    case 11: visitPopLevel(); break;
    case 61: visitInstanceReference(fltRecordCast<FltRecordInstanceReference>(record)); break;
    case 62: visitInstanceDefinition(fltRecordCast<FltRecordInstanceDefinition>(record)); break;
    default: break;
    }
}

void FltToInventor::visitPaletteRecord(FltRecord* record)
{
    if (!record) return;
    switch (record->getOpcode()) {
    case 32: visitColorPalette(fltRecordCast<FltRecordColorPalette>(record)); break;
    case 64: visitTexturePattern(fltRecordCast<FltRecordTexturePattern>(record)); break;
    case 66: visitOLDMaterialPalette(fltRecordCast<FltRecordOLDMaterialPalette>(record)); break;
    case 67: visitVertexPalette(fltRecordCast<FltRecordVertexPalette>(record)); break;
    case 68: visitVertexColor(fltRecordCast<FltRecordVertexColor>(record)); break;
    case 69: visitVertexColorNormal(fltRecordCast<FltRecordVertexColorNormal>(record)); break;
    case 70: visitVertexColorNormalUV(fltRecordCast<FltRecordVertexColorNormalUv>(record)); break;
    case 71: visitVertexColorUV(fltRecordCast<FltRecordVertexColorUv>(record)); break;
    case 97: visitLineStylePalette(fltRecordCast<FltRecordLineStylePalette>(record)); break;
    case 102: visitLightSourcePalette(fltRecordCast<FltRecordLightSourcePalette>(record)); break;
    case 112: visitTextureMapping(fltRecordCast<FltRecordTextureMappingPalette>(record)); break;
    case 113: visitMaterial(fltRecordCast<FltRecordMaterial>(record)); break;
    case 114: visitNamePalette(fltRecordCast<FltRecordNamePalette>(record)); break;
    default: break;  // sound and eyepoint palettes convert to nothing
    }
}

void FltToInventor::visitAncillaryRecord(FltRecord*) {}

void FltToInventor::visitUnknownCategoryFltRecord(FltRecord*) {}

void FltToInventor::iterator2VectorOfAncillaryElements(std::vector<FltRecord*>& out, FltRecordIterator& it)
{
    while (!isEnd(it) && (*it)->getCategoryKind() == FltCategory::Ancillary) {
        out.push_back(*it);
        ++it;
    }
}

void FltToInventor::visitAncillaryRecords(FltRecordIterator& it, SoGroup* node)
{
    std::vector<FltRecord*> ancillary;
    iterator2VectorOfAncillaryElements(ancillary, it);
    for (auto position = ancillary.begin(); position != ancillary.end(); ++position) {
        FltRecord* record = *position;
        switch (record->getOpcode()) {
        case 31: visitComment(fltRecordCast<FltRecordComment>(record), node); break;
        case 33: visitLongID(fltRecordCast<FltRecordLongID>(record), node); break;
        case 49: visitMatrix(fltRecordCast<FltRecordMatrix>(record), node); break;
        case 60:
            visitReplicate(fltRecordCast<FltRecordReplicate>(record), node, position, ancillary, it);
            if (position == ancillary.end()) return;
            break;
        default: break;  // bounding volumes and modelling transforms convert to nothing
        }
    }
}

void FltToInventor::visitGroupChildren(FltRecordIterator& it)
{
    if (isEnd(it)) return;
    if ((*it)->getOpcode() != 10) {
        // Without a push level, the single following record is the only child, one level down.
        visitPushLevel();
        visitPrimaryRecord(it);
        visitPopLevel();
        return;
    }
    int depth = 0;
    for (; !isEnd(it); advance(it)) {
        const int opcode = (*it)->getOpcode();
        if (opcode == 10) {
            ++depth;
            visitPushLevel();
        } else if (opcode == 11) {
            --depth;
            visitPopLevel();
            if (depth <= 0) return;
        } else {
            visitPrimaryRecord(it);
        }
    }
}

SoGroup* FltToInventor::beginPrimaryNode(SoGroup* content, SoGroup* attached, const char* name,
                                        FltRecordIterator& it)
{
    if (name) content->setName(name);
    setLastPrimaryNode(content);
    addSoGroupToNodesStackTop(attached);
    advance(it);
    visitAncillaryRecords(it, content);
    return content;
}

void FltToInventor::visitGroup(const FltRecordGroup* group, FltRecordIterator& it)
{
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, group ? group->idASCII : nullptr, it);
    visitGroupChildren(it);
}

void FltToInventor::visitUnknownPrimaryRecord(const FltRecordUnknown*, FltRecordIterator& it)
{
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, "UnknownPrimaryRecord", it);
}

void FltToInventor::visitLongID(const FltRecordLongID* record, SoNode* node)
{
    if (record && node) node->setName(record->getText());
}

void FltToInventor::visitComment(const FltRecordComment* record, SoGroup* node)
{
    if (!record || !node) return;
    // Each line break cuts the text; the piece after it runs to the end of the comment,
    // since later breaks are not cut yet. So the first line never gets a node of its own
    // and "A\nB" yields two nodes holding "B": kept on purpose, as the format's readers
    // always split comments.
    std::string copy(record->getText());
    const size_t length = copy.size();
    // A comment of many short lines repeats its text once per line; the text all comments
    // may add is bounded by the file's size (see commentTextBudget).
    auto emit = [&](size_t start) {
        const size_t size = length - start;
        if (size > commentTextBudget) {
            if (!commentBudgetReported) {
                commentBudgetReported = true;
                FltWarningMessageConsole::notifyMessage(
                    "WARNING ! The lines of the comments would repeat more text than 16 times the database holds: "
                    "further comment lines are not converted into info nodes",
                    2, true);
            }
            commentTextBudget = 0;
            return;
        }
        commentTextBudget -= size;
        auto* info = new SoInfo;
        info->string.setValue(copy.c_str() + start);
        node->addChild(info);
    };
    size_t start = 0;
    for (size_t i = 0; i <= length; ++i) {
        const char c = copy[i];
        if (c == '\r' || c == '\n') {
            copy[i] = '\0';
            start = i + 1;
            if (copy[i + 1] == '\n') {
                start = i + 2;
                ++i;
            }
            if (copy[start] != '\0') emit(start);
        } else if (i == length) {
            if (copy[start] != '\0') emit(start);
        }
    }
}

void FltToInventor::visitHeader(const FltRecordHeader* header)
{
    if (!header) return;
    if (!result) result = new SoSeparator;
    // This reference is never given back: the caller receives the root with a count of 1.
    result->ref();
    result->setName("root");
    setLastPrimaryNode(result);

    double factor = 1.0;
    switch (header->vertexCoordinateUnits) {
    case 0: factor = 1.0; break;
    case 1: factor = 1000.0; break;
    case 4: factor = 0.3048; break;
    case 5: factor = 0.0254; break;
    case 8: factor = 1852.0; break;
    default: factor = 1.0; break;
    }
    if (header->formatRevisionLevel < 13) {
        // Old files carry a unit multiplier (positive) or divisor (negative); 0 collapses the
        // geometry, as the format's readers always did.
        const int m = header->multiplierDiviserUnit;
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

    packedColorMode = header->isPackedColorMode();
}
