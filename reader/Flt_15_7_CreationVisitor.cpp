// The opcode table of the OpenFlight 15.7 record set and the factory that uses it.
#include <iostream>

#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltOpcode.h"
#include "reader/FltRawData.h"
#include "reader/FltRecordBoundingVolume.h"
#include "reader/FltRecordClipRegion.h"
#include "reader/FltRecordColorPalette.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordDOF.h"
#include "reader/FltRecordExternalReference.h"
#include "reader/FltRecordEyePointTrackPlane.h"
#include "reader/FltRecordFace.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordHeader.h"
#include "reader/FltRecordLOD.h"
#include "reader/FltRecordLightPoint.h"
#include "reader/FltRecordLightSource.h"
#include "reader/FltRecordLineStyle.h"
#include "reader/FltRecordMaterial.h"
#include "reader/FltRecordMultitexture.h"
#include "reader/FltRecordNamePalette.h"
#include "reader/FltRecordSound.h"
#include "reader/FltRecordSwitch.h"
#include "reader/FltRecordText.h"
#include "reader/FltRecordTextureMapping.h"
#include "reader/FltRecordTexturePattern.h"
#include "reader/FltRecordTransformations.h"
#include "reader/FltRecordUnknown.h"
#include "reader/FltRecordVertex.h"

namespace {

// The push and pop records of every kind: 4 bytes long by the format.
bool isPushOrPop(unsigned int opcode)
{
    switch (opcode) {
    case FltOpcode::PushLevel:
    case FltOpcode::PopLevel:
    case FltOpcode::PushSubface:
    case FltOpcode::PopSubface:
    case FltOpcode::PushExtension:
    case FltOpcode::PopExtension: return true;
    default: return false;
    }
}

using Create = AbstractFltRecord* (*)(unsigned int opcode, unsigned int length, int revision);

template <class T>
AbstractFltRecord* make(unsigned int, unsigned int length, int)
{
    return new T(length);
}

// Records whose layout depends on the format revision receive it at creation.
template <class T>
AbstractFltRecord* makeWithRevision(unsigned int, unsigned int length, int revision)
{
    T* record = new T(length);
    record->formatRevision = revision;
    return record;
}

AbstractFltRecord* unknown(unsigned int opcode, unsigned int length, int)
{
    // Opcodes above 32767 report a negative number (65535 becomes -1).
    return new FltRecordUnknown(static_cast<int16_t>(opcode), length);
}

struct OpcodeRow {
    unsigned int opcode;
    Create create;
};

// One row per opcode that has a class; every other opcode up to 114 is unknown.
const OpcodeRow kOpcodeTable[] = {
    {1, make<FltRecordHeader>},
    {2, makeWithRevision<FltRecordGroup>},
    {3, make<FltRecordOLDLOD>},
    {4, make<FltRecordObject>},
    {5, makeWithRevision<FltRecordFace>},
    {7, make<FltRecordOldVertex>},
    {8, make<FltRecordOldVertexColor>},
    {9, make<FltRecordOldVertexColorNormal>},
    {10, make<FltRecordPushLevel>},
    {11, make<FltRecordPopLevel>},
    {14, make<FltRecordDOF>},
    {19, make<FltRecordPushSubface>},
    {20, make<FltRecordPopSubface>},
    {21, make<FltRecordPushExtension>},
    {22, make<FltRecordPopExtension>},
    {31, make<FltRecordComment>},
    {32, makeWithRevision<FltRecordColorPalette>},
    {33, make<FltRecordLongID>},
    {49, make<FltRecordMatrix>},
    {50, make<FltRecordVector>},
    {51, make<FltRecordOldBoundingBox>},
    {52, make<FltRecordMultitexture>},
    // 53, the UV list, stays unknown: its class exists but is never created. Kept on purpose.
    {60, make<FltRecordReplicate>},
    {61, make<FltRecordInstanceReference>},
    {62, make<FltRecordInstanceDefinition>},
    {63, make<FltRecordExternalReference>},
    {64, make<FltRecordTexturePattern>},
    {66, makeWithRevision<FltRecordOLDMaterialPalette>},
    // Vertex records live inside the vertex palette, hence their palette category.
    {67, make<FltRecordVertexPalette>},
    {68, makeWithRevision<FltRecordVertexColor>},
    {69, makeWithRevision<FltRecordVertexColorNormal>},
    {70, makeWithRevision<FltRecordVertexColorNormalUv>},
    {71, makeWithRevision<FltRecordVertexColorUv>},
    {72, make<FltRecordVertexList>},
    {73, make<FltRecordLOD>},
    {74, make<FltRecordBoundingBox>},
    {76, make<FltRecordRotateAboutEdge>},
    {78, make<FltRecordTranslate>},
    {79, make<FltRecordScaleNonUniform>},
    {80, make<FltRecordRotateAboutPoint>},
    // 82, the put transform, is built as a rotate-about-edge record (reporting opcode 76).
    // Kept on purpose: FltRecordPutTransform exists but is never created.
    {82, make<FltRecordRotateAboutEdge>},
    {83, make<FltRecordEyePointTrackPlane>},
    {89, make<FltRecordMorphVertexList>},
    {91, make<FltRecordSound>},
    {93, make<FltRecordSoundPalette>},
    {94, make<FltRecordGeneralMatrix>},
    {95, make<FltRecordText>},
    {96, make<FltRecordSwitch>},
    {97, make<FltRecordLineStylePalette>},
    {98, make<FltRecordClipRegion>},
    {100, make<FltRecordExtensionAttribute>},
    {101, make<FltRecordLightSource>},
    {102, make<FltRecordLightSourcePalette>},
    {105, make<FltRecordBoundingVolumeSphere>},
    {106, make<FltRecordBoundingVolumeCylinder>},
    {108, make<FltRecordBoundingVolumeCenter>},
    {109, make<FltRecordBoundingVolumeOrientation>},
    {111, make<FltRecordLightPoint>},
    {112, make<FltRecordTextureMappingPalette>},
    {113, make<FltRecordMaterial>},
    {114, make<FltRecordNamePalette>},
};

constexpr unsigned int kHighestOpcode = 114;

// The table spread over every opcode from 0 to 114, built once.
struct OpcodeIndex {
    Create byOpcode[kHighestOpcode + 1];
    OpcodeIndex()
    {
        for (Create& c : byOpcode) c = unknown;
        for (const OpcodeRow& row : kOpcodeTable) byOpcode[row.opcode] = row.create;
    }
};

const OpcodeIndex& opcodeIndex()
{
    static const OpcodeIndex index;
    return index;
}

}  // namespace

Flt_15_7_CreationVisitor::Flt_15_7_CreationVisitor() : dumpStream(&std::cout) {}

AbstractFltRecord* Flt_15_7_CreationVisitor::createRecord(unsigned int opcode, unsigned int length, int revision)
{
    Create create = opcode <= kHighestOpcode ? opcodeIndex().byOpcode[opcode] : unknown;
    return create(opcode, length, revision);
}

void Flt_15_7_CreationVisitor::visitFltRawData(FltRecord*& out, const FltRawData* raw)
{
    out = nullptr;
    lastRecordMissing = 0;
    if (!raw) return;
    if (raw->opcode == 93 && previousRecord && previousRecord->getOpcode() == 93) {
        // A sound palette continues the one just before it: the same object decodes the new
        // bytes and is handed out again.
        auto* sound = static_cast<FltRecordSoundPalette*>(previousRecord);
        lastRecordMissing = sound->decodeFrom(raw->data, raw->length);
        out = sound;
    } else if (shareLevels && raw->length == 4 && fltSharedLevelRecord(raw->opcode)) {
        // Fieldless, so one object serves them all; it decodes nothing and lacks nothing.
        out = fltSharedLevelRecord(raw->opcode);
    } else {
        AbstractFltRecord* record = createRecord(raw->opcode, raw->length, formatRevision);
        if (reportPadding && raw->length != 4 && isPushOrPop(raw->opcode))
            FltWarningMessageConsole::notifyMessage("WARNING ! this ControlRecord hasn t the correct length !", 1,
                                                    false);
        lastRecordMissing = record->decodeFrom(raw->data, raw->data ? raw->length : 0);
        if (lastRecordMissing > 0 && shortAsUnknown) {
            // Headers too: the first, whose revision the parse takes, comes before the limit.
            delete record;
            record = new FltRecordUnknown(static_cast<int16_t>(raw->opcode), raw->length);
            record->decodeFrom(raw->data, raw->data ? raw->length : 0);
        }
        out = record;
    }
    previousRecord = out;
    if (dumpStream) out->properties(*dumpStream);
}
