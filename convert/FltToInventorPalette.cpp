// Palette records fill the converter's tables: colours, materials, textures, line styles, names.
#include "convert/FltToInventor.h"

void FltToInventor::visitColorPalette(const FltRecordColorPalette*) {}
void FltToInventor::visitTexturePattern(const FltRecordTexturePattern*) {}
void FltToInventor::visitOLDMaterialPalette(const FltRecordOLDMaterialPalette*) {}
void FltToInventor::visitMaterial(const FltRecordMaterial*) {}
void FltToInventor::visitLineStylePalette(const FltRecordLineStylePalette*) {}
void FltToInventor::visitLightSourcePalette(const FltRecordLightSourcePalette*) {}
void FltToInventor::visitTextureMapping(const FltRecordTextureMappingPalette*) {}
void FltToInventor::visitNamePalette(const FltRecordNamePalette*) {}
