// The walk over the parsed records: dispatch by category and opcode, and where each primary
// and control record puts its nodes in the hierarchy, with the children between its push
// and pop levels.
#include <Inventor/nodes/SoLOD.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoSeparator.h>

#include <string>

#include "convert/FltProgress.h"
#include "convert/FltRecordNames.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltOpcode.h"
#include "reader/FltRecordClipRegion.h"
#include "reader/FltRecordColorPalette.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordDOF.h"
#include "reader/FltRecordExternalReference.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordHeader.h"
#include "reader/FltRecordLOD.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordMaterial.h"
#include "reader/FltRecordNamePalette.h"
#include "reader/FltRecordSwitch.h"
#include "reader/FltRecordText.h"
#include "reader/FltRecordTexturePattern.h"
#include "reader/FltRecordTransformations.h"
#include "reader/FltRecordVertex.h"

namespace {

// Primary records nest by recursion (a group visits its children, which may be groups);
// deeper hierarchies than this are not converted, so that no file can exhaust the stack.
constexpr int kMaxHierarchyDepth = 500;

}  // namespace

void FltToInventor::build()
{
    // The nodes of objects of faces (an object, a push level, a face), made kind by kind.
    FltNodePool::Counts counts;
    counts.separators = counts.bindings = counts.materials = counts.faceSets = context.records.objectsOfFaces();
    pool.make(counts);
    // Then the names: made first, the ids would lengthen the chains the pool's constructors
    // search (a database's first conversion in a process).
    recordNames = std::make_unique<FltRecordNames>(context.records);
    visitAllFltRecords();
    recordNames.reset();
    pool.release();
}

void FltToInventor::visitAllFltRecords()
{
    for (FltRecordIterator it = context.records.walk(); *it; fltAdvance(it)) {
        FltRecord* record = *it;
        switch (record->getCategoryKind()) {
        case FltCategory::Primary: visitPrimaryRecord(it); break;
        case FltCategory::Control: visitControlRecord(record); break;
        case FltCategory::Palette:
            if (record->getOpcode() == FltOpcode::VertexPalette) reserveVertexPool(it);
            visitPaletteRecord(record);
            break;
        case FltCategory::Ancillary:  // an ancillary record that follows no primary one applies to nothing
        case FltCategory::Unknown: break;
        }
        nodes.releaseUnreachable();
    }
    nodes.finishWalk();
}

void FltToInventor::reserveVertexPool(FltRecordIterator it)
{
    // The vertex records that follow the palette record, counted from the records themselves
    // (not the palette's declared length, which a damaged file may overstate).
    size_t count = 0;
    uint64_t bytes = 0;
    for (fltAdvance(it); *it; ++it) {
        const int opcode = (*it)->getOpcode();
        if (opcode < FltOpcode::VertexColor || opcode > FltOpcode::VertexColorUv) break;
        ++count;
        bytes += (*it)->getLength();
    }
    palettes.reserveVertices(count, bytes);
}

void FltToInventor::visitPrimaryRecord(FltRecordIterator& it)
{
    FltRecord* record = *it;
    if (!record) return;
    if (context.progress) {
        const auto at = static_cast<uint64_t>(it - context.records.walk());
        if (at >= nextProgress) nextProgress = context.progress->walked(at, context.records.size());
    }
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
    case FltOpcode::Header: visitHeader(fltRecordCast<FltRecordHeader>(record)); break;
    case FltOpcode::Group: visitGroup(fltRecordCast<FltRecordGroup>(record), it); break;
    case FltOpcode::OldLod: visitOLDLOD(fltRecordCast<FltRecordOLDLOD>(record), it); break;
    case FltOpcode::Object: visitObject(fltRecordCast<FltRecordObject>(record), it); break;
    case FltOpcode::Face: visitNextSuccessiveFaces(it); break;
    case FltOpcode::DegreeOfFreedom: visitDOF(fltRecordCast<FltRecordDOF>(record), it); break;
    case FltOpcode::ExternalReference:
        visitExternalReference(fltRecordCast<FltRecordExternalReference>(record), it);
        break;
    case FltOpcode::Lod: visitLOD(fltRecordCast<FltRecordLOD>(record), it); break;
    case FltOpcode::Text: visitText(fltRecordCast<FltRecordText>(record), it); break;
    case FltOpcode::Switch: visitSwitch(fltRecordCast<FltRecordSwitch>(record), it); break;
    case FltOpcode::ClipRegion: visitClipRegion(fltRecordCast<FltRecordClipRegion>(record), it); break;
    default: break;  // light sources, sounds, light points and the rest build nothing
    }
    --hierarchyDepth;
}

void FltToInventor::visitControlRecord(const FltRecord* record)
{
    switch (record->getOpcode()) {
    case FltOpcode::PushLevel: visitPushLevel(); break;
    case FltOpcode::PopLevel: visitPopLevel(); break;
    case FltOpcode::InstanceReference:
        visitInstanceReference(fltRecordCast<FltRecordInstanceReference>(record));
        break;
    case FltOpcode::InstanceDefinition:
        visitInstanceDefinition(fltRecordCast<FltRecordInstanceDefinition>(record));
        break;
    default: break;
    }
}

void FltToInventor::visitPaletteRecord(const FltRecord* record)
{
    // Light source, texture mapping, sound and eyepoint palettes convert to nothing.
    switch (record->getOpcode()) {
    case FltOpcode::ColorPalette:
        if (const auto* colors = fltRecordCast<FltRecordColorPalette>(record)) palettes.setColorPalette(*colors);
        break;
    case FltOpcode::TexturePattern: visitTexturePattern(fltRecordCast<FltRecordTexturePattern>(record)); break;
    case FltOpcode::OldMaterialPalette:
        if (const auto* old = fltRecordCast<FltRecordOLDMaterialPalette>(record)) palettes.setOldMaterials(*old);
        break;
    case FltOpcode::VertexColor:
        visitVertex(fltRecordCast<FltRecordVertexColor>(record), VERTEX_COLOR_PROPERTY_ID);
        break;
    case FltOpcode::VertexColorNormal:
        visitVertex(fltRecordCast<FltRecordVertexColorNormal>(record), VERTEX_COLOR_NORMAL_PROPERTY_ID);
        break;
    case FltOpcode::VertexColorNormalUv:
        visitVertex(fltRecordCast<FltRecordVertexColorNormalUv>(record), VERTEX_COLOR_NORMAL_UV_PROPERTY_ID);
        break;
    case FltOpcode::VertexColorUv:
        visitVertex(fltRecordCast<FltRecordVertexColorUv>(record), VERTEX_COLOR_UV_PROPERTY_ID);
        break;
    case FltOpcode::LineStylePalette: visitLineStylePalette(fltRecordCast<FltRecordLineStylePalette>(record)); break;
    case FltOpcode::MaterialPalette:
        if (const auto* material = fltRecordCast<FltRecordMaterial>(record)) palettes.setMaterial(*material);
        break;
    case FltOpcode::NamePalette:
        if (const auto* names = fltRecordCast<FltRecordNamePalette>(record)) palettes.setNames(*names);
        break;
    default: break;
    }
}

void FltToInventor::visitGroupChildren(FltRecordIterator& it)
{
    if (!*it) return;
    if ((*it)->getOpcode() != FltOpcode::PushLevel) {
        // Without a push level, the single following record is the only child, one level down.
        visitPushLevel();
        visitPrimaryRecord(it);
        visitPopLevel();
        return;
    }
    int depth = 0;
    for (; *it; fltAdvance(it)) {
        const int opcode = (*it)->getOpcode();
        if (opcode == FltOpcode::PushLevel) {
            ++depth;
            visitPushLevel();
        } else if (opcode == FltOpcode::PopLevel) {
            --depth;
            visitPopLevel();
            if (depth <= 0) return;
        } else {
            visitPrimaryRecord(it);
        }
    }
}

void FltToInventor::nameFromRecord(SoNode* node, const char* id, FltRecordIterator it)
{
    const SbName* made =
        recordNames ? recordNames->find(static_cast<size_t>(it - context.records.walk()), id) : nullptr;
    if (made)
        node->setName(*made);
    else
        node->setName(id);
}

SoGroup* FltToInventor::beginPrimaryNode(SoGroup* content, SoGroup* attached, const char* name,
                                        FltRecordIterator& it)
{
    if (name) nameFromRecord(content, name, it);
    nodes.setLastPrimary(content);
    addSoGroupToNodesStackTop(attached);
    fltAdvance(it);
    visitAncillaryRecords(it, content);
    return content;
}

void FltToInventor::visitGroup(const FltRecordGroup* group, FltRecordIterator& it)
{
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, group ? group->idASCII : nullptr, it);
    visitGroupChildren(it);
}

void FltToInventor::visitHeader(const FltRecordHeader* header)
{
    if (!header) return;
    // This reference is never given back: the caller receives the root with a count of 1,
    // or 2 from a file of two headers; a flood of headers takes no more.
    if (++headersVisited <= 2) result->ref();
    result->setName("root");
    nodes.setLastPrimary(result);
    addHeaderNodes(*header);
    packedColorMode = header->isPackedColorMode();
}

void FltToInventor::visitLOD(const FltRecordLOD* record, FltRecordIterator& it)
{
    if (!record) return;
    SoLOD* lod = makeLod(*record);
    auto* content = new SoSeparator;
    beginPrimaryNode(content, lod, record->idASCII, it);
    visitGroupChildren(it);
    completeLod(lod, content);
}

void FltToInventor::visitOLDLOD(const FltRecordOLDLOD* record, FltRecordIterator& it)
{
    if (!record) return;
    FltRecordLOD widened(record->getLength());
    widenOldLod(*record, widened);
    visitLOD(&widened, it);
}

void FltToInventor::visitSwitch(const FltRecordSwitch* record, FltRecordIterator& it)
{
    if (!record) return;
    SoSeparator* separator = makeSwitchSeparator(*record);
    nodes.setLastPrimary(separator);
    addSoGroupToNodesStackTop(separator);
    fltAdvance(it);
    visitAncillaryRecords(it, separator);
    visitGroupChildren(it);
}

void FltToInventor::visitDOF(const FltRecordDOF* record, FltRecordIterator& it)
{
    if (!record) return;
    // The local coordinate system, limits and current values stay in the record: only a
    // matrix record following the DOF moves its subtree.
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, record->idASCII, it);
    visitGroupChildren(it);
}

void FltToInventor::visitClipRegion(const FltRecordClipRegion* record, FltRecordIterator& it)
{
    if (!record) return;
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, record->idASCII, it);
    // No children walk here: the walk goes on from the record after the ancillary records,
    // so a push level there opens this separator after its clip planes.
    --it;
    addClipPlanes(separator, *record);
}

void FltToInventor::visitText(const FltRecordText* record, FltRecordIterator& it)
{
    if (!record) return;
    // The text, its font and placement are not drawn: an empty named separator stands for it.
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, record->idASCII, it);
    --it;  // as for clip regions: the walk sees the record after the ancillary records
}

void FltToInventor::visitObject(const FltRecordObject* object, FltRecordIterator& it)
{
    SoSeparator* separator = pool.separator();
    if (object) nameFromRecord(separator, object->idASCII, it);
    addSoGroupToNodesStackTop(separator);
    // Each child added would notify the object's parents: quiet until the object is built.
    const FltQuietNode quiet(separator, nodes);
    fltAdvance(it);
    visitAncillaryRecords(it, separator);
    if (!*it || (*it)->getOpcode() == FltOpcode::PopLevel) {
        // No records below the object: the walk must see the pop level (or the end) itself.
        --it;
        return;
    }
    visitObjectFaceRecords(it, object ? static_cast<float>(object->transparency) : 0.0f, separator);
}

void FltToInventor::visitExternalReference(const FltRecordExternalReference* record, FltRecordIterator& it)
{
    if (!record) return;
    auto* reference = new SoSeparator;
    nodes.setLastPrimary(reference);
    addSoGroupToNodesStackTop(reference);

    const std::string name = record->asciiPath;
    // The prefix ends in a blank and the format adds one: two blanks before the name, intended.
    auto* label = new SoLabel;
    label->label.setValue((std::string("From OpenFlight File: ") + " " + name).c_str());
    reference->addChild(label);

    fltAdvance(it);
    visitAncillaryRecords(it, reference);
    if (name.empty()) {
        --it;
        return;
    }
    // A file that cannot be opened passes over the record after the reference's ancillary
    // records, unlike the other ways out. Kept on purpose, as databases were always read so.
    if (convertReferencedFile(name, reference)) --it;
}

void FltToInventor::visitInstanceDefinition(const FltRecordInstanceDefinition* record)
{
    if (!record) return;
    auto* separator = new SoSeparator;
    separator->setName(("InstanceDefinition_" + std::to_string(record->instanceDefinitionNumber)).c_str());
    // A later definition of the same number replaces the earlier one for later references.
    // The table holds its own reference, so that a definition inside a released group
    // stays for the references after it.
    separator->ref();
    SoSeparator*& slot = instances[record->instanceDefinitionNumber];
    SoSeparator* replaced = slot;
    slot = separator;
    if (replaced) {
        replaced->unref();
        nodes.addReleaseCandidate(replaced);
    }
    nodes.holdNotification(separator);
    nodes.setLastPrimary(separator);
    addSoGroupToNodesStackTop(separator);
}

void FltToInventor::visitInstanceReference(const FltRecordInstanceReference* record)
{
    if (!record) return;
    // A number not defined yet is entered with no separator: nothing is shown for it.
    SoSeparator* instance = instances[record->instanceDefinitionNumber];
    if (!instance) return;
    SoGroup* parent = nodes.top();
    const FltNodeStack::Containment cycle =
        parent ? nodes.wouldContainItself(instance, parent) : FltNodeStack::Containment::No;
    if (cycle != FltNodeStack::Containment::No) {
        FltWarningMessageConsole::notifyMessage(
            "ERROR ! Instance reference " + std::to_string(record->instanceDefinitionNumber) +
                (cycle == FltNodeStack::Containment::Yes
                     ? " stands inside its own definition: not added, the instance would contain itself"
                     : " stands under a group that a push level opened again, too deep to search: not added, the "
                       "instance could contain itself"),
            3, true);
        return;
    }
    addSoGroupToNodesStackTop(instance);
}
