// Material palette records: decoding and dump.
#include "reader/FltRecordMaterial.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {

bool mostSignificantBit(int32_t word) { return (static_cast<uint32_t>(word) & 0x80000000u) != 0; }

}  // namespace

void FltRecordMaterial::decode(const FltBytes& in)
{
    index = in.i32(4);
    in.chars(8, 12, name);
    flags = in.i32(20);
    in.f32s(24, ambient, 3);
    in.f32s(36, diffuse, 3);
    in.f32s(48, specular, 3);
    in.f32s(60, emissive, 3);
    shininess = in.f32(72);
    alpha = in.f32(76);
    reserved = in.i32(80);
}

void FltRecordMaterial::dumpFields(FltDump& out) const
{
    out.i32("index: ", index).str("name : ", name, 12);
    // The word's top bit means "used", yet the dump says "NOT" when it is set: kept on
    // purpose, the log has always read this way.
    out.text("flags: material IS ");
    if (mostSignificantBit(flags)) out.text("NOT ");
    out.text("used").nl();
    out.reals("ambient  (RGB) :", ambient, 3);
    out.reals("diffuse  (RGB) :", diffuse, 3);
    out.reals("specular (RGB) :", specular, 3);
    out.reals("emissive (RGB) :", emissive, 3);
    out.text("shininess      :").real(shininess).nl();
    out.text("alpha          :").real(alpha).nl();
}

void FltRecordOLDMaterialPalette::decode(const FltBytes& in)
{
    // A material cut by the record's end is kept, its missing fields zero.
    const size_t held = in.size() > 4 ? (in.size() - 4 + 183) / 184 : 0;
    materials_.assign(held < kMaterialCount ? held : kMaterialCount, FltOldMaterial());
    // A record ending before the last material is marked short, as reading it would do.
    in.u8(4 + 184 * (kMaterialCount - 1));
    for (size_t k = 0; k < materials_.size(); ++k) {
        const size_t at = 4 + 184 * k;
        FltOldMaterial& m = materials_[k];
        m.ambientRed = in.f32(at);
        m.ambientGreen = in.f32(at + 4);
        m.ambientBlue = in.f32(at + 8);
        m.diffuseRed = in.f32(at + 12);
        m.diffuseGreen = in.f32(at + 16);
        m.diffuseBlue = in.f32(at + 20);
        m.specularRed = in.f32(at + 24);
        m.specularGreen = in.f32(at + 28);
        m.specularBlue = in.f32(at + 32);
        m.emissiveRed = in.f32(at + 36);
        m.emissiveGreen = in.f32(at + 40);
        m.emissiveBlue = in.f32(at + 44);
        m.shininess = in.f32(at + 48);
        m.alpha = in.f32(at + 52);
        m.flags = in.i32(at + 56);
        in.chars(at + 60, 12, m.name);
        in.chars(at + 72, sizeof m.reserved, m.reserved);
        // Revisions before 14 kept no names here: emptied on purpose.
        if (formatRevision < 14) m.name[0] = '\0';
    }
}

const FltOldMaterial& FltRecordOLDMaterialPalette::material(int k) const
{
    static const FltOldMaterial none;
    return k >= 0 && static_cast<size_t>(k) < materials_.size() ? materials_[k] : none;
}

void FltRecordOLDMaterialPalette::dumpFields(FltDump& out) const
{
    for (int k = 0; k < kMaterialCount; ++k) {
        const FltOldMaterial& m = material(k);
        out.text("Material at index:").num(k).nl()
            .f64("ambientRed: ", m.ambientRed)
            .f64("ambientGreen: ", m.ambientGreen)
            .f64("ambientBlue: ", m.ambientBlue)
            .f64("diffuseRed: ", m.diffuseRed)
            .f64("diffuseGreen: ", m.diffuseGreen)
            .f64("diffuseBlue: ", m.diffuseBlue)
            .f64("specularRed: ", m.specularRed)
            .f64("specularGreen: ", m.specularGreen)
            .f64("specularBlue: ", m.specularBlue)
            .f64("emissiveRed: ", m.emissiveRed)
            .f64("emissiveGreen: ", m.emissiveGreen)
            .f64("emissiveBlue: ", m.emissiveBlue)
            .f64("shininess: ", m.shininess)
            .f64("alpha: ", m.alpha)
            .i32("flags: ", m.flags)
            .flag("material used:", mostSignificantBit(m.flags))
            .str("name: ", m.name, 12);
    }
}
