// Objects, and runs of faces outside any object, become separators of face sets.
#include <Inventor/nodes/SoSeparator.h>

#include "convert/FltObjectToSoSeparator.h"
#include "convert/FltToInventor.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordGroupAndObject.h"

void FltToInventor::visitObject(const FltRecordObject* object, FltRecordIterator& it)
{
    auto* separator = new SoSeparator;
    if (object) separator->setName(object->idASCII);
    currentObjectSeparator = separator;
    addSoGroupToNodesStackTop(separator);
    if (!isEnd(it)) ++it;
    visitAncillaryRecords(it, separator);
    if (isEnd(it) || (*it)->getOpcode() == 11) {
        // No records below the object: the walk must see the pop level (or the end) itself.
        --it;
        return;
    }
    const float transparency = object ? static_cast<float>(object->transparency) : 0.0f;
    SoGroup* destination = separator;
    visitObjectFaceRecords(it, transparency, destination);
}

void FltToInventor::visitObjectFaceRecords(FltRecordIterator& it, const float& transparency, SoGroup*& destination)
{
    {
        FltObjectToSoSeparator builder;
        builder.setCurrentIterator(it);
        builder.setCurrentFltObjectTransparency(transparency);
        builder.setDestination(destination);
        builder.setFltToInventor(this);
        builder.buildFinalSoSeparator();
    }
    // Past the object's subtree: onto the pop level that closes its first push, or the end.
    int depth = 0;
    for (; !isEnd(it); ++it) {
        const int opcode = (*it)->getOpcode();
        if (opcode == 10) {
            ++depth;
        } else if (opcode == 11) {
            if (depth == 1) return;
            --depth;
        }
    }
}

void FltToInventor::visitNextSuccessiveFaces(FltRecordIterator& it)
{
    if (isEnd(it) || (*it)->getOpcode() != 5) return;
    // The run of faces is wrapped in a push and a pop level of its own and built like an
    // object of transparency 1.
    FltRecordPushLevel push(4);
    FltRecordPopLevel pop(4);
    std::vector<FltRecord*> run;
    run.push_back(&push);
    int depth = 0;
    bool afterPop = false;
    for (; !isEnd(it); ++it) {
        const int opcode = (*it)->getOpcode();
        if (opcode == 4) break;
        if (opcode == 11 && depth == 0) break;
        if (afterPop && depth == 0 && opcode != 5) break;
        run.push_back(*it);
        afterPop = false;
        if (opcode == 10) {
            ++depth;
        } else if (opcode == 11) {
            --depth;
            afterPop = true;
        }
    }
    // The record that stopped the run is seen again by the walk.
    --it;
    run.push_back(&pop);
    run.push_back(nullptr);

    FltRecordIterator local = run.begin();
    const float transparency = 1.0f;
    SoGroup* destination = getNodesStackTop();
    visitObjectFaceRecords(local, transparency, destination);
}
