// The vertex palette: every vertex lands in one of the four shared vertex properties.
#include "convert/FltToInventor.h"

void FltToInventor::visitVertexPalette(const FltRecordVertexPalette*) {}
void FltToInventor::visitVertexColor(const FltRecordVertexColor*) {}
void FltToInventor::visitVertexColorNormal(const FltRecordVertexColorNormal*) {}
void FltToInventor::visitVertexColorUV(const FltRecordVertexColorUv*) {}
void FltToInventor::visitVertexColorNormalUV(const FltRecordVertexColorNormalUv*) {}
