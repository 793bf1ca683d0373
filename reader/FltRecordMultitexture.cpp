// Multitexture and UV list records.
#include "reader/FltRecordMultitexture.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {
constexpr int kLayers = 8;

// Bit n of the mask counted from the least significant bit (an arithmetic shift); a number
// outside the 32-bit word has no bit, so it is no layer.
bool maskHasLayer(int32_t mask, int n)
{
    if (n < 0 || n > 31) return false;
    return ((mask >> n) & 1) != 0;
}

void dumpMask(FltDump& out, int32_t mask)
{
    // Printed as a pointer value: 0, or 0x and the hexadecimal digits of the 32-bit word.
    out.text("attributeMask: ").pointer(static_cast<uint32_t>(mask)).nl();
}
}  // namespace

bool FltRecordMultitexture::hasLayerN(int n) const { return maskHasLayer(attributeMask, n); }

void FltRecordMultitexture::decode(const FltBytes& in)
{
    attributeMask = in.i32(4);
    size_t cursor = 8;
    for (int n = 0; n < kLayers; ++n) {
        if (!hasLayerN(n)) continue;
        layer[n].texture = in.u16(cursor);
        layer[n].effect = in.u16(cursor + 2);
        layer[n].mapping = in.u16(cursor + 4);
        layer[n].data = in.u16(cursor + 6);
        cursor += 8;
    }
}

void FltRecordMultitexture::dumpFields(FltDump& out) const
{
    dumpMask(out, attributeMask);
    for (int n = 0; n < kLayers; ++n) {
        if (!hasLayerN(n)) continue;
        out.text("layer[").num(n).text("]: ").nl()
            .u16("  texture: ", layer[n].texture)
            .u16("   effect: ", layer[n].effect)
            .u16("  mapping: ", layer[n].mapping)
            .u16("     data: ", layer[n].data);
    }
}

bool FltRecordUVList::hasLayerN(int n) const { return maskHasLayer(attributeMask, n); }

int FltRecordUVList::presentLayers() const
{
    int count = 0;
    for (int n = 0; n < kLayers; ++n) count += hasLayerN(n) ? 1 : 0;
    return count;
}

void FltRecordUVList::decode(const FltBytes& in)
{
    attributeMask = in.i32(4);
    // Allocated before the old values go, so that a failed allocation leaves them in place.
    const size_t count = in.size() > 8 ? (in.size() - 8) / 4 : 0;
    float* values = new float[count];
    for (size_t i = 0; i < count; ++i) values[i] = in.f32(8 + 4 * i);
    delete[] uv;
    uv = values;
    uvCount = count;
}

long long FltRecordUVList::firstValue(int vertex, int layerNumber, int valuesPerLayer) const
{
    if (vertex < 0 || layerNumber >= kLayers || !hasLayerN(layerNumber)) return -1;
    int before = 0;
    for (int n = 0; n < layerNumber; ++n) before += hasLayerN(n) ? 1 : 0;
    const long long perVertex = static_cast<long long>(presentLayers()) * valuesPerLayer;
    const long long first = vertex * perVertex + static_cast<long long>(before) * valuesPerLayer;
    if (first + valuesPerLayer > static_cast<long long>(uvCount)) return -1;
    return first;
}

bool FltRecordUVList::getUV(int vertex, int layerNumber, double& u, double& v) const
{
    u = v = 0;
    const long long first = firstValue(vertex, layerNumber, 2);
    if (first < 0) return false;
    u = uv[first];
    v = uv[first + 1];
    return true;
}

bool FltRecordUVList::getMorphUV(int vertex, int layerNumber, double& u0, double& v0, double& u100,
                                 double& v100) const
{
    u0 = v0 = u100 = v100 = 0;
    const long long first = firstValue(vertex, layerNumber, 4);
    if (first < 0) return false;
    u0 = uv[first];
    v0 = uv[first + 1];
    u100 = uv[first + 2];
    v100 = uv[first + 3];
    return true;
}

void FltRecordUVList::dumpFields(FltDump& out) const
{
    dumpMask(out, attributeMask);
    // The values in file order, as u/v pairs; which pair belongs to which layer and vertex
    // depends on the mask and on the vertex type.
    for (size_t i = 0; i + 1 < uvCount; i += 2) out.text("u=").real(uv[i]).text("  v=").real(uv[i + 1]).nl();
}
