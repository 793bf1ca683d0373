// Level of detail, switch, degree of freedom, matrices, replication, clip regions and text.
#include "convert/FltToInventor.h"

void FltToInventor::visitLOD(const FltRecordLOD*, FltRecordIterator&) {}
void FltToInventor::visitOLDLOD(const FltRecordOLDLOD*, FltRecordIterator&) {}
void FltToInventor::visitSwitch(const FltRecordSwitch*, FltRecordIterator&) {}
void FltToInventor::visitDOF(const FltRecordDOF*, FltRecordIterator&) {}
void FltToInventor::visitMatrix(const FltRecordMatrix*, SoGroup*) {}
void FltToInventor::visitReplicate(const FltRecordReplicate*, SoNode*, std::vector<FltRecord*>::iterator&,
                                   std::vector<FltRecord*>&, FltRecordIterator&)
{
}
void FltToInventor::visitClipRegion(const FltRecordClipRegion*, FltRecordIterator&) {}
void FltToInventor::visitText(const FltRecordText*, FltRecordIterator&) {}
