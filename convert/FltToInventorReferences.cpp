// External references and instances.
#include "convert/FltToInventor.h"

void FltToInventor::visitExternalReference(const FltRecordExternalReference*, FltRecordIterator&) {}
void FltToInventor::visitInstanceDefinition(const FltRecordInstanceDefinition*) {}
void FltToInventor::visitInstanceReference(const FltRecordInstanceReference*) {}
