// The walk over the parsed records and the conversion of the header.
#include <Inventor/nodes/SoNormalBinding.h>
#include <Inventor/nodes/SoScale.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoTextureCoordinateBinding.h>

#include "convert/FltToInventor.h"
#include "reader/FltParser.h"
#include "reader/FltRecordHeader.h"

void FltToInventor::visitAllFltRecords()
{
    if (!fltParser) return;
    std::vector<FltRecord*>& records = fltParser->records;
    if (records.empty() || records.back() != nullptr) records.push_back(nullptr);

    for (FltRecordIterator it = records.begin(); !isEnd(it);) {
        FltRecord* record = *it;
        switch (record->getCategoryKind()) {
        case FltCategory::Primary: visitPrimaryRecord(it); break;
        case FltCategory::Ancillary: visitAncillaryRecord(record); break;
        case FltCategory::Control: visitControlRecord(record); break;
        case FltCategory::Palette: visitPaletteRecord(record); break;
        case FltCategory::Unknown: visitUnknownCategoryFltRecord(record); break;
        }
        // A visit may leave the iterator on the end marker; never step past it.
        if (!isEnd(it)) ++it;
    }
    allFltRecordsVisited = true;
}

void FltToInventor::visitPrimaryRecord(FltRecordIterator& it)
{
    FltRecord* record = *it;
    if (!record) return;
    switch (record->getOpcode()) {
    case 1: visitHeader(dynamic_cast<const FltRecordHeader*>(record)); break;
    default: break;
    }
}

void FltToInventor::visitControlRecord(FltRecord*) {}

void FltToInventor::visitPaletteRecord(FltRecord*) {}

void FltToInventor::visitAncillaryRecord(FltRecord*) {}

void FltToInventor::visitUnknownCategoryFltRecord(FltRecord*) {}

void FltToInventor::visitHeader(const FltRecordHeader* header)
{
    if (!header) return;
    if (!result) result = new SoSeparator;
    // This reference is never given back: the caller receives the root with a count of 1.
    result->ref();
    result->setName("root");
    lastPrimaryNode = result;

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
