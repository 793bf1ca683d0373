// Coin's names for the records' ids, made in one pass.
#include "convert/FltRecordNames.h"

#include <Inventor/SbName.h>

#include "reader/FltOpcode.h"
#include "reader/FltRecord.h"
#include "reader/FltRecordClipRegion.h"
#include "reader/FltRecordDOF.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordLOD.h"
#include "reader/FltRecordStore.h"
#include "reader/FltRecordSwitch.h"
#include "reader/FltRecordText.h"

namespace {

template <class T>
void makeName(const FltRecord* record)
{
    if (const T* named = fltRecordCast<T>(record)) SbName made(named->idASCII);
}

}  // namespace

void fltMakeRecordNames(const FltRecordStore& records)
{
    for (size_t at : records.namingRecords()) {
        const FltRecord* record = records.at(at);
        if (!record) continue;
        switch (record->getOpcode()) {
        case FltOpcode::Group: makeName<FltRecordGroup>(record); break;
        case FltOpcode::Object: makeName<FltRecordObject>(record); break;
        case FltOpcode::OldLod: makeName<FltRecordOLDLOD>(record); break;
        case FltOpcode::Lod: makeName<FltRecordLOD>(record); break;
        case FltOpcode::DegreeOfFreedom: makeName<FltRecordDOF>(record); break;
        case FltOpcode::Switch: makeName<FltRecordSwitch>(record); break;
        case FltOpcode::ClipRegion: makeName<FltRecordClipRegion>(record); break;
        case FltOpcode::Text: makeName<FltRecordText>(record); break;
        case FltOpcode::LongId:
            if (const auto* id = fltRecordCast<FltRecordLongID>(record)) SbName made(id->getText());
            break;
        default: break;
        }
    }
}
