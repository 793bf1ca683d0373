// Objects and faces become separators of indexed face sets over the shared vertex properties.
#include "convert/FltToInventor.h"

void FltToInventor::visitObject(const FltRecordObject*, FltRecordIterator&) {}
void FltToInventor::visitNextSuccessiveFaces(FltRecordIterator&) {}
