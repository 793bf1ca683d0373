// The faces of an object, or a run of faces outside any object, become face sets.
#include <Inventor/nodes/SoSeparator.h>

#include "convert/FltObjectToSoSeparator.h"
#include "convert/FltToInventor.h"
#include "reader/FltOpcode.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordGroupAndObject.h"

void FltToInventor::visitObjectFaceRecords(FltRecordIterator& it, float transparency, SoGroup* destination)
{
    {
        FltObjectToSoSeparator builder(
            FltObjectContext{palettes, {context.version.formatRevision, packedColorMode}, vertexProperties, textures,
                             context.log, pool});
        builder.setCurrentIterator(it);
        builder.setCurrentFltObjectTransparency(transparency);
        builder.setDestination(destination);
        builder.buildFinalSoSeparator();
        // Past the object's subtree: onto the pop level that closes its first push, or the end.
        it = builder.subtreeEnd();
    }
}

void FltToInventor::visitNextSuccessiveFaces(FltRecordIterator& it)
{
    if (!*it || (*it)->getOpcode() != FltOpcode::Face) return;
    // The run of faces is wrapped in a push and a pop level of its own and built like an
    // object of transparency 1.
    FltRecordPushLevel push(4);
    FltRecordPopLevel pop(4);
    std::vector<FltRecord*> run;
    run.push_back(&push);
    int depth = 0;
    bool afterPop = false;
    for (; *it; ++it) {
        const int opcode = (*it)->getOpcode();
        if (opcode == FltOpcode::Object) break;
        if (opcode == FltOpcode::PopLevel && depth == 0) break;
        if (afterPop && depth == 0 && opcode != FltOpcode::Face) break;
        run.push_back(*it);
        afterPop = false;
        if (opcode == FltOpcode::PushLevel) {
            ++depth;
        } else if (opcode == FltOpcode::PopLevel) {
            --depth;
            afterPop = true;
        }
    }
    // The record that stopped the run is seen again by the walk.
    --it;
    run.push_back(&pop);
    run.push_back(nullptr);

    FltRecordIterator local = run.begin();
    visitObjectFaceRecords(local, 1.0f, nodes.top());
}
