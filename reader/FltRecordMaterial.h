// Material palette records, current and obsolete.
#pragma once

#include <cstdint>
#include <vector>

#include "reader/FltRecord.h"

// One material of the obsolete material palette, 184 bytes; its index is its position.
struct FltOldMaterial {
    float ambientRed = 0;
    float ambientGreen = 0;
    float ambientBlue = 0;
    float diffuseRed = 0;
    float diffuseGreen = 0;
    float diffuseBlue = 0;
    float specularRed = 0;
    float specularGreen = 0;
    float specularBlue = 0;
    float emissiveRed = 0;
    float emissiveGreen = 0;
    float emissiveBlue = 0;
    float shininess = 0;
    float alpha = 0;
    int32_t flags = 0;
    char name[13] = {};
    char reserved[112] = {};
};

// Old material palette record, opcode 66: 64 materials of 184 bytes from offset 4. Below
// revision 14 every name is emptied, since those revisions kept no names there. Only the
// materials that start inside the record are kept; the others read as all zero.
class FltRecordOLDMaterialPalette : public PaletteFltRecord, public FltVersion {
public:
    static constexpr int kMaterialCount = 64;

    explicit FltRecordOLDMaterialPalette(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 66; }
    const char* getHeading() const override { return "\n OLD MATERIAL PALETTE RECORD (OBSOLETE)"; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    // Material k, 0 to kMaterialCount - 1.
    const FltOldMaterial& material(int k) const;
    // Materials from this one on are all zero.
    int materialsHeld() const { return static_cast<int>(materials_.size()); }

private:
    std::vector<FltOldMaterial> materials_;
};

// Material palette record, opcode 113, 84 bytes: one material of the palette.
class FltRecordMaterial : public PaletteFltRecord {
public:
    explicit FltRecordMaterial(unsigned int length) : PaletteFltRecord(length) {}
    int getOpcode() const override { return 113; }
    const char* getHeading() const override { return "\n MATERIAL PALETTE RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    int32_t index = 0;
    char name[13] = {};
    int32_t flags = 0;
    float ambient[3] = {};
    float diffuse[3] = {};
    float specular[3] = {};
    float emissive[3] = {};
    float shininess = 0;
    float alpha = 0;
    int32_t reserved = 0;
};
