// qetzflt-bench-generate: writes a terrain-like OpenFlight database of about the asked size.
//
//   qetzflt-bench-generate OUT.flt SIZE_MIB
//   qetzflt-bench-generate --objects N OUT.flt
//
// A square grid of vertices (colour, normal and texture coordinates, shared through the
// vertex palette) cut into tiles: a group per row of tiles, an object per tile, two triangle
// faces per grid cell with their vertex lists, a colour palette and a few materials.
// With --objects, a culture-like database instead: N objects of one triangle each, named
// apart as modellers name them, in groups of 100.
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "tools/FltFixture.h"

namespace {

// Bytes per grid vertex: one vertex record and two faces with push, vertex list and pop.
constexpr double kBytesPerVertex = 64 + 2 * (80 + 4 + 16 + 4);
constexpr int kTile = 16;  // cells per tile side

uint32_t abgr(uint8_t r, uint8_t g, uint8_t b) { return 0xFF000000u | (uint32_t(b) << 16) | (uint32_t(g) << 8) | r; }

void palettes(FltFixture& db, const char* name)
{
    db.header(1570, 0, 0, 0, name);
    std::vector<uint32_t> colors(1024);
    for (int i = 0; i < 1024; ++i) colors[i] = abgr(uint8_t(i * 7), uint8_t(100 + i % 100), uint8_t(255 - i % 200));
    db.colorPalette(colors);
    for (int m = 0; m < 4; ++m) {
        const float diffuse[3] = {0.3f + 0.1f * m, 0.6f, 0.2f + 0.15f * m};
        db.material(m, diffuse, 16.0f * m, 1.0f);
    }
}

int objects(const char* out, int count)
{
    FltFixture db;
    palettes(db, "culture");
    db.vertexPalette();
    std::vector<int32_t> offsets(static_cast<size_t>(count) * 3);
    FltVertexSpec v;
    v.flags = 0;
    for (int o = 0; o < count; ++o) {
        const double x = (o % 200) * 50.0, y = (o / 200) * 50.0;
        for (int k = 0; k < 3; ++k) {
            v.x = x + (k == 1 ? 8.0 : 0.0);
            v.y = y + (k == 2 ? 8.0 : 0.0);
            v.z = 0.0;
            v.i = 0, v.j = 0, v.k = 1;
            v.u = k == 1 ? 1.0f : 0.0f, v.v = k == 2 ? 1.0f : 0.0f;
            v.vertexColorIndex = (o % 1024) * 128 + 127;
            offsets[static_cast<size_t>(o) * 3 + k] = db.vertexColorNormalUv(v);
        }
    }
    db.push().group("culture").push();
    for (int o = 0; o < count; ++o) {
        if (o % 100 == 0) db.group(("g" + std::to_string(o / 100)).c_str()).push();
        FltFaceSpec face;
        face.primaryColorIndex = (o % 1024) * 128 + 100;
        face.materialIndex = static_cast<int16_t>(o % 5 - 1);
        const size_t at = static_cast<size_t>(o) * 3;
        db.object(("o" + std::to_string(o)).c_str()).push();
        db.face(face).push().vertexList({offsets[at], offsets[at + 1], offsets[at + 2]}).pop();
        db.pop();
        if (o % 100 == 99 || o + 1 == count) db.pop();
    }
    db.pop().pop();
    db.save(out);
    std::cout << out << ": " << count << " objects of one face\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::string(argv[1]) == "--objects") {
        const int count = std::atoi(argv[2]);
        if (count <= 0) {
            std::cerr << "qetzflt-bench-generate: N must be positive\n";
            return 2;
        }
        return objects(argv[3], count);
    }
    if (argc != 3) {
        std::cerr << "usage: qetzflt-bench-generate OUT.flt SIZE_MIB | --objects N OUT.flt\n";
        return 2;
    }
    const double mib = std::atof(argv[2]);
    if (!(mib > 0)) {
        std::cerr << "qetzflt-bench-generate: SIZE_MIB must be positive\n";
        return 2;
    }
    const int n = std::max(2, static_cast<int>(std::sqrt(mib * 1024 * 1024 / kBytesPerVertex)));

    FltFixture db;
    palettes(db, "terrain");

    db.vertexPalette();
    std::vector<int32_t> offsets(static_cast<size_t>(n) * n);
    FltVertexSpec v;
    v.flags = 0;
    for (int y = 0; y < n; ++y) {
        for (int x = 0; x < n; ++x) {
            v.x = x * 10.0;
            v.y = y * 10.0;
            v.z = 20.0 * std::sin(x * 0.05) * std::cos(y * 0.07);
            v.i = 0, v.j = 0, v.k = 1;
            v.u = x / float(n), v.v = y / float(n);
            v.vertexColorIndex = ((x + y) % 1024) * 128 + 127;
            offsets[static_cast<size_t>(y) * n + x] = db.vertexColorNormalUv(v);
        }
    }

    db.push().group("terrain").push();
    const int cells = n - 1;
    for (int ty = 0; ty < cells; ty += kTile) {
        db.group("row").push();
        for (int tx = 0; tx < cells; tx += kTile) {
            db.object("tile").push();
            for (int y = ty; y < std::min(ty + kTile, cells); ++y) {
                for (int x = tx; x < std::min(tx + kTile, cells); ++x) {
                    const int32_t a = offsets[size_t(y) * n + x], b = offsets[size_t(y) * n + x + 1];
                    const int32_t c = offsets[size_t(y + 1) * n + x + 1], d = offsets[size_t(y + 1) * n + x];
                    FltFaceSpec face;
                    face.primaryColorIndex = ((x * 3 + y) % 1024) * 128 + 100;
                    face.materialIndex = static_cast<int16_t>((x + y) % 5 - 1);
                    db.face(face).push().vertexList({a, b, c}).pop();
                    db.face(face).push().vertexList({a, c, d}).pop();
                }
            }
            db.pop();
        }
        db.pop();
    }
    db.pop().pop();
    db.save(argv[1]);
    std::cout << argv[1] << ": " << n * n << " vertices, " << 2 * cells * cells << " faces\n";
    return 0;
}
