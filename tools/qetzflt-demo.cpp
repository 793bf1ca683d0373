// qetzflt-demo: writes the bundled example database, built with the project's own writer.
//
//   qetzflt-demo OUT.flt
#include <iostream>
#include <string>
#include <vector>

#include "FltFixture.h"

namespace {

// A colour palette word as the file stores it: alpha, blue, green, red.
uint32_t abgr(uint8_t r, uint8_t g, uint8_t b) { return 0xFF000000u | (uint32_t(b) << 16) | (uint32_t(g) << 8) | r; }

void writeDemo(FltFixture& db)
{
    db.header(1570, 0, 0, 0, "demo");
    std::vector<uint32_t> colors(1024, abgr(255, 255, 255));
    colors[1] = abgr(200, 60, 40);   // roof
    colors[2] = abgr(230, 220, 180); // walls
    colors[3] = abgr(70, 140, 60);   // ground
    db.colorPalette(colors);

    db.vertexPalette();
    auto v = [&](double x, double y, double z) { return db.vertexColor(x, y, z); };
    // Ground square and a house: four walls and a two-sided roof.
    const int g0 = v(-10, -10, 0), g1 = v(10, -10, 0), g2 = v(10, 10, 0), g3 = v(-10, 10, 0);
    const int b0 = v(-3, -2, 0), b1 = v(3, -2, 0), b2 = v(3, 2, 0), b3 = v(-3, 2, 0);
    const int t0 = v(-3, -2, 3), t1 = v(3, -2, 3), t2 = v(3, 2, 3), t3 = v(-3, 2, 3);
    const int r0 = v(-3, 0, 5), r1 = v(3, 0, 5);

    auto face = [&](int colorIndex, std::vector<int32_t> offsets) {
        FltFaceSpec spec;
        spec.primaryColorIndex = colorIndex * 128 + 127;
        spec.colorNameIndex = static_cast<uint16_t>(colorIndex * 128 + 127);
        db.face(spec).push().vertexList(offsets).pop();
    };

    db.push().group("world").push();
    db.object("ground").push();
    face(3, {g0, g1, g2, g3});
    db.pop();
    db.object("house").push();
    face(2, {b0, b1, t1, t0});
    face(2, {b1, b2, t2, t1});
    face(2, {b2, b3, t3, t2});
    face(2, {b3, b0, t0, t3});
    face(2, {t0, t1, r1, r0});
    face(1, {t1, t2, r1});
    face(1, {t3, t0, r0});
    face(1, {t0, t1, r1, r0});
    face(1, {t2, t3, r0, r1});
    db.pop();
    db.pop().pop();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: qetzflt-demo OUT.flt\n";
        return 2;
    }
    FltFixture db;
    writeDemo(db);
    db.save(argv[1]);
    std::cout << "wrote " << argv[1] << "\n";
    return 0;
}
