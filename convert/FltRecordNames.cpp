// Coin's names for the records' ids, made in one pass.
#include "convert/FltRecordNames.h"

#include <algorithm>
#include <cstring>

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
SbName nameOf(const FltRecord* record)
{
    const T* named = fltRecordCast<T>(record);
    return named ? SbName(named->idASCII) : SbName();
}

SbName makeName(const FltRecord* record)
{
    switch (record->getOpcode()) {
    case FltOpcode::Group: return nameOf<FltRecordGroup>(record);
    case FltOpcode::Object: return nameOf<FltRecordObject>(record);
    case FltOpcode::OldLod: return nameOf<FltRecordOLDLOD>(record);
    case FltOpcode::Lod: return nameOf<FltRecordLOD>(record);
    case FltOpcode::DegreeOfFreedom: return nameOf<FltRecordDOF>(record);
    case FltOpcode::Switch: return nameOf<FltRecordSwitch>(record);
    case FltOpcode::ClipRegion: return nameOf<FltRecordClipRegion>(record);
    case FltOpcode::Text: return nameOf<FltRecordText>(record);
    case FltOpcode::LongId:
        if (const auto* id = fltRecordCast<FltRecordLongID>(record)) return SbName(id->getText());
        return SbName();
    default: return SbName();
    }
}

}  // namespace

FltRecordNames::FltRecordNames(const FltRecordStore& records) : indices_(records.namingRecords())
{
    names_.reserve(indices_.size());
    for (size_t at : indices_) {
        const FltRecord* record = records.at(at);
        names_.push_back(record ? makeName(record) : SbName());
    }
}

const SbName* FltRecordNames::find(size_t index, const char* id)
{
    if (next_ >= indices_.size() || indices_[next_] != index) {
        const auto found = std::lower_bound(indices_.begin(), indices_.end(), index);
        if (found == indices_.end() || *found != index) return nullptr;
        next_ = static_cast<size_t>(found - indices_.begin());
    }
    const SbName& name = names_[next_++];
    return id && std::strcmp(name.getString(), id) == 0 ? &name : nullptr;
}
