// Ancillary records, applied to the node of the primary record before them: comments become
// info nodes, long identifiers rename the node, matrices put a transform in front of its
// children, and a replicate record repeats it under the matrices that follow.
#include <Inventor/SbMatrix.h>
#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoMatrixTransform.h>
#include <Inventor/nodes/SoSeparator.h>

#include <string>
#include <vector>

#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltOpcode.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordTransformations.h"

void FltToInventor::visitAncillaryRecords(FltRecordIterator& it, SoGroup* node)
{
    std::vector<FltRecord*> ancillary;
    for (; *it && (*it)->getCategoryKind() == FltCategory::Ancillary; ++it) ancillary.push_back(*it);
    for (auto position = ancillary.begin(); position != ancillary.end(); ++position) {
        FltRecord* record = *position;
        switch (record->getOpcode()) {
        case FltOpcode::Comment: visitComment(fltRecordCast<FltRecordComment>(record), node); break;
        case FltOpcode::LongId: visitLongID(fltRecordCast<FltRecordLongID>(record), node); break;
        case FltOpcode::Matrix: visitMatrix(fltRecordCast<FltRecordMatrix>(record), node); break;
        case FltOpcode::Replicate:
            visitReplicate(fltRecordCast<FltRecordReplicate>(record), node, position, ancillary, it);
            if (position == ancillary.end()) return;
            break;
        default: break;  // bounding volumes and modelling transforms convert to nothing
        }
    }
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

void FltToInventor::visitMatrix(const FltRecordMatrix* record, SoGroup* group)
{
    if (!record || !group) return;
    // Stored row by row with the translation in the fourth row: the scene graph's own
    // convention, so no transposition.
    auto* transform = new SoMatrixTransform;
    transform->matrix.setValue(SbMatrix(record->matrix));
    group->addChild(transform);
}

void FltToInventor::visitReplicate(const FltRecordReplicate* record, SoNode* node,
                                   std::vector<FltRecord*>::iterator& listPosition,
                                   std::vector<FltRecord*>& ancillaryList, FltRecordIterator& recordPosition)
{
    if (!record) return;
    auto* replications = new SoSeparator;
    replications->setName("Replications");
    // Without a parent it stays alive with the converter's other unattached nodes.
    if (SoGroup* parent = nodes.top())
        parent->addChild(replications);
    else
        nodes.keepUnattached(replications);

    const int32_t count = record->numberOfReplications;
    if (count <= 0 || !node) return;
    ++listPosition;
    if (listPosition == ancillaryList.end()) return;
    nodes.holdNotification(node);
    int32_t copies = 0;
    for (;;) {
        if ((*listPosition)->getOpcode() != FltOpcode::Matrix) return;
        // The copy takes the record after the matrix just tested: the test and the use are
        // one record apart, kept on purpose. Whatever follows must itself be a matrix.
        ++listPosition;
        // The walk's own position moves on with each copy. It already stands after the
        // ancillary records, so each copy passes over one record after them: the established
        // walk of replicated records, kept; it never passes the end of the records.
        fltAdvance(recordPosition);
        if (listPosition == ancillaryList.end()) return;
        const auto* matrix = dynamic_cast<const FltRecordMatrix*>(*listPosition);
        if (!matrix) return;
        visitMatrix(matrix, replications);
        // The same node again, not a copy: each copy sits under every transform before it.
        replications->addChild(node);
        if (++copies == count) return;
        ++listPosition;
        if (listPosition == ancillaryList.end()) return;
    }
}
