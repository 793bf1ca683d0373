// qetzflt-demo: writes the bundled example database, built with the project's own writer.
//
//   qetzflt-demo OUT.flt
//
// Next to OUT.flt it writes the files the database names: parts/kiosk.flt (an external
// reference, in packed-colour mode) and the SGI .rgb textures under textures/ and parts/.
// The main database is in colour-index mode and holds a terrain, two buildings as objects
// under LODs, trees as one instance used five times, a switch of street lamps with one
// lamp off, a crane under a DOF, a wall cut by a clip region, a glass pavilion of
// transparent faces and two references to the kiosk.
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "FltFixture.h"

namespace fs = std::filesystem;

namespace {

struct Rgb {
    uint8_t r, g, b;
};

// An SGI image file, uncompressed, three channels: a 512-byte header, then each channel's
// rows from the bottom up.
bool writeSgiImage(const std::string& path, int width, int height, const std::function<Rgb(int, int)>& pixel)
{
    std::string header(512, '\0');
    auto put16 = [&](size_t at, uint16_t v) {
        header[at] = static_cast<char>(v >> 8);
        header[at + 1] = static_cast<char>(v & 0xFF);
    };
    auto put32 = [&](size_t at, uint32_t v) {
        for (int i = 0; i < 4; ++i) header[at + i] = static_cast<char>((v >> (24 - 8 * i)) & 0xFF);
    };
    put16(0, 474);  // magic
    header[2] = 0;  // storage: verbatim
    header[3] = 1;  // one byte per channel
    put16(4, 3);    // dimensions
    put16(6, static_cast<uint16_t>(width));
    put16(8, static_cast<uint16_t>(height));
    put16(10, 3);
    put32(12, 0);    // minimum
    put32(16, 255);  // maximum
    header.replace(24, 11, "qetzflt-demo");
    std::string data(static_cast<size_t>(width) * height * 3, '\0');
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const Rgb c = pixel(x, y);
            const size_t at = static_cast<size_t>(y) * width + x;
            data[at] = static_cast<char>(c.r);
            data[static_cast<size_t>(width) * height + at] = static_cast<char>(c.g);
            data[2 * static_cast<size_t>(width) * height + at] = static_cast<char>(c.b);
        }
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << header << data;
    return static_cast<bool>(out);
}

// Pseudo-random but repeatable texture noise.
int noise(int x, int y, int seed)
{
    const uint32_t h = (static_cast<uint32_t>(x) * 73856093u) ^ (static_cast<uint32_t>(y) * 19349663u) ^
                       static_cast<uint32_t>(seed);
    return static_cast<int>(h & 0xFF) % 24;
}

void writeTextures(const fs::path& dir)
{
    fs::create_directories(dir / "textures");
    fs::create_directories(dir / "parts");
    writeSgiImage((dir / "textures/grass.rgb").string(), 64, 64, [](int x, int y) {
        const int n = noise(x / 8, y / 8, 7) / 2;
        return Rgb{static_cast<uint8_t>(60 + n), static_cast<uint8_t>(130 + n * 2), static_cast<uint8_t>(50 + n)};
    });
    writeSgiImage((dir / "textures/brick.rgb").string(), 64, 64, [](int x, int y) {
        const int row = y / 8;
        const bool mortar = y % 8 == 0 || (x + (row % 2) * 8) % 16 == 0;
        const int n = noise(x, y, 3);
        return mortar ? Rgb{200, 195, 185}
                      : Rgb{static_cast<uint8_t>(165 + n), static_cast<uint8_t>(70 + n / 2), static_cast<uint8_t>(50)};
    });
    writeSgiImage((dir / "textures/roof.rgb").string(), 32, 32, [](int x, int y) {
        const bool edge = y % 8 == 0 || (x + (y / 8 % 2) * 4) % 8 == 0;
        return edge ? Rgb{70, 40, 35} : Rgb{static_cast<uint8_t>(120 + noise(x, y, 5)), 55, 45};
    });
    writeSgiImage((dir / "parts/stripes.rgb").string(), 32, 32, [](int x, int) {
        return (x / 8) % 2 ? Rgb{240, 240, 235} : Rgb{30, 90, 200};
    });
}

// Faces gathered before writing: the vertex palette must precede every face.
struct DemoFace {
    std::vector<int> vertices;  // indices into the builder's vertex list
    FltFaceSpec spec;
};

struct DemoObject {
    std::string name;
    uint16_t transparency = 0;
    std::vector<DemoFace> faces;
};

class DemoBuilder {
public:
    int vertex(double x, double y, double z, float nx, float ny, float nz, float u, float v)
    {
        FltVertexSpec s;
        s.x = x, s.y = y, s.z = z, s.i = nx, s.j = ny, s.k = nz, s.u = u, s.v = v;
        vertices.push_back(s);
        return static_cast<int>(vertices.size()) - 1;
    }

    // A quad a b c d (counter-clockwise seen from outside) with its own flat normal; the
    // texture repeats every `tile` metres along the quad's sides.
    void quad(DemoObject& object, const FltFaceSpec& spec, const double a[3], const double b[3], const double c[3],
              const double d[3], double tile = 4.0)
    {
        const double ux = b[0] - a[0], uy = b[1] - a[1], uz = b[2] - a[2];
        const double vx = d[0] - a[0], vy = d[1] - a[1], vz = d[2] - a[2];
        double nx = uy * vz - uz * vy, ny = uz * vx - ux * vz, nz = ux * vy - uy * vx;
        const double len = std::sqrt(nx * nx + ny * ny + nz * nz);
        nx /= len, ny /= len, nz /= len;
        const float su = static_cast<float>(std::sqrt(ux * ux + uy * uy + uz * uz) / tile);
        const float sv = static_cast<float>(std::sqrt(vx * vx + vy * vy + vz * vz) / tile);
        const float fx = static_cast<float>(nx), fy = static_cast<float>(ny), fz = static_cast<float>(nz);
        DemoFace face;
        face.spec = spec;
        face.vertices = {vertex(a[0], a[1], a[2], fx, fy, fz, 0, 0), vertex(b[0], b[1], b[2], fx, fy, fz, su, 0),
                         vertex(c[0], c[1], c[2], fx, fy, fz, su, sv), vertex(d[0], d[1], d[2], fx, fy, fz, 0, sv)};
        object.faces.push_back(face);
    }

    void triangle(DemoObject& object, const FltFaceSpec& spec, const double a[3], const double b[3], const double c[3])
    {
        const double ux = b[0] - a[0], uy = b[1] - a[1], uz = b[2] - a[2];
        const double vx = c[0] - a[0], vy = c[1] - a[1], vz = c[2] - a[2];
        double nx = uy * vz - uz * vy, ny = uz * vx - ux * vz, nz = ux * vy - uy * vx;
        const double len = std::sqrt(nx * nx + ny * ny + nz * nz);
        const float fx = static_cast<float>(nx / len), fy = static_cast<float>(ny / len), fz = static_cast<float>(nz / len);
        DemoFace face;
        face.spec = spec;
        face.vertices = {vertex(a[0], a[1], a[2], fx, fy, fz, 0, 0), vertex(b[0], b[1], b[2], fx, fy, fz, 1, 0),
                         vertex(c[0], c[1], c[2], fx, fy, fz, 0.5f, 1)};
        object.faces.push_back(face);
    }

    // The four walls and the top of a box.
    void box(DemoObject& object, const FltFaceSpec& walls, const FltFaceSpec& top, double x0, double y0, double z0,
             double x1, double y1, double z1, double tile = 4.0)
    {
        const double p[8][3] = {{x0, y0, z0}, {x1, y0, z0}, {x1, y1, z0}, {x0, y1, z0},
                                {x0, y0, z1}, {x1, y0, z1}, {x1, y1, z1}, {x0, y1, z1}};
        quad(object, walls, p[0], p[1], p[5], p[4], tile);
        quad(object, walls, p[1], p[2], p[6], p[5], tile);
        quad(object, walls, p[2], p[3], p[7], p[6], tile);
        quad(object, walls, p[3], p[0], p[4], p[7], tile);
        quad(object, top, p[4], p[5], p[6], p[7], tile);
    }

    // A gabled roof along x over the box's top at height z, ridge `rise` higher.
    void gable(DemoObject& object, const FltFaceSpec& roof, const FltFaceSpec& ends, double x0, double y0, double x1,
               double y1, double z, double rise)
    {
        const double ym = (y0 + y1) / 2;
        const double a[3] = {x0, y0, z}, b[3] = {x1, y0, z}, c[3] = {x1, ym, z + rise}, d[3] = {x0, ym, z + rise};
        quad(object, roof, a, b, c, d, 3.0);
        const double e[3] = {x1, y1, z}, f[3] = {x0, y1, z};
        quad(object, roof, e, f, d, c, 3.0);
        triangle(object, ends, b, e, c);
        triangle(object, ends, f, a, d);
    }

    // Writes the vertex palette; afterwards offsetOf gives each vertex's palette offset.
    void writePalette(FltFixture& db)
    {
        db.vertexPalette();
        offsets.clear();
        for (const FltVertexSpec& s : vertices) offsets.push_back(db.vertexColorNormalUv(s));
    }

    void writeObject(FltFixture& db, const DemoObject& object)
    {
        db.object(object.name, object.transparency).push();
        for (const DemoFace& face : object.faces) {
            std::vector<int32_t> list;
            for (int v : face.vertices) list.push_back(offsets[static_cast<size_t>(v)]);
            db.face(face.spec).push().vertexList(list).pop();
        }
        db.pop();
    }

    std::vector<FltVertexSpec> vertices;
    std::vector<int32_t> offsets;
};

uint32_t abgr(uint8_t r, uint8_t g, uint8_t b) { return 0xFF000000u | (uint32_t(b) << 16) | (uint32_t(g) << 8) | r; }

// A face coloured by palette entry `entry` at full intensity, optionally textured.
FltFaceSpec indexed(int entry, int16_t texture = -1, uint16_t transparency = 0)
{
    FltFaceSpec spec;
    spec.primaryColorIndex = entry * 128 + 127;
    spec.colorNameIndex = static_cast<uint16_t>(entry * 128 + 127);
    spec.texturePatternIndex = texture;
    spec.transparency = transparency;
    return spec;
}

enum Palette { kWhite = 0, kRoofRed = 1, kWall = 2, kGrass = 3, kTrunk = 4, kLeaves = 5, kSteel = 6, kGlass = 7,
               kCrane = 8, kLamp = 9 };
enum Texture { kGrassTexture = 0, kBrickTexture = 1, kRoofTexture = 2 };

double terrainHeight(double x, double y)
{
    const double r = std::sqrt(x * x + y * y);
    const double rim = r < 26 ? 0 : std::min(1.0, (r - 26) / 14);
    return rim * rim * (3.0 + std::sin(x / 5.0) * std::cos(y / 7.0));
}

DemoObject terrain(DemoBuilder& b)
{
    DemoObject object{"terrain", 0, {}};
    const int n = 12;
    const double size = 90, step = size / n, origin = -size / 2;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            const double x0 = origin + i * step, y0 = origin + j * step;
            const double a[3] = {x0, y0, terrainHeight(x0, y0)}, c[3] = {x0 + step, y0 + step, terrainHeight(x0 + step, y0 + step)};
            const double bb[3] = {x0 + step, y0, terrainHeight(x0 + step, y0)}, d[3] = {x0, y0 + step, terrainHeight(x0, y0 + step)};
            b.quad(object, indexed(kGrass, kGrassTexture), a, bb, c, d, 7.5);
        }
    return object;
}

DemoObject house(DemoBuilder& b, const std::string& name, double x, double y, double w, double d, double h)
{
    DemoObject object{name, 0, {}};
    b.box(object, indexed(kWall, kBrickTexture), indexed(kWall), x, y, 0, x + w, y + d, h);
    b.gable(object, indexed(kRoofRed, kRoofTexture), indexed(kWall, kBrickTexture), x - 0.4, y - 0.4, x + w + 0.4,
            y + d + 0.4, h, d * 0.45);
    return object;
}

DemoObject block(DemoBuilder& b, const std::string& name, double x, double y, double w, double d, double h)
{
    DemoObject object{name, 0, {}};
    b.box(object, indexed(kWall), indexed(kRoofRed), x, y, 0, x + w, y + d, h);
    return object;
}

void writeKiosk(const fs::path& path)
{
    // Packed-colour mode: the faces carry their own colours instead of palette indices.
    FltFixture db;
    db.header(1570, 0, 0x40000000, 0, "kiosk");
    db.texturePattern(0, "stripes.rgb");
    DemoBuilder b;
    DemoObject body{"kiosk", 0, {}};
    FltFaceSpec cream;
    cream.flags = 0x10000000;  // packed colour
    cream.packed[0] = 255, cream.packed[1] = 190, cream.packed[2] = 225, cream.packed[3] = 240;
    FltFaceSpec awning = cream;
    awning.texturePatternIndex = 0;
    awning.packed[1] = 255, awning.packed[2] = 255, awning.packed[3] = 255;
    b.box(body, cream, awning, -1.5, -1.5, 0, 1.5, 1.5, 2.6, 3.0);
    const double a[3] = {-2.0, -2.6, 2.2}, c[3] = {2.0, -1.5, 2.9}, bb[3] = {2.0, -2.6, 2.2}, d[3] = {-2.0, -1.5, 2.9};
    b.quad(body, awning, a, bb, c, d, 4.0);
    b.writePalette(db);
    db.push();
    b.writeObject(db, body);
    db.pop();
    db.save(path.string());
}

void writeDemo(const fs::path& path)
{
    const fs::path dir = path.parent_path().empty() ? fs::path(".") : path.parent_path();
    writeTextures(dir);
    writeKiosk(dir / "parts/kiosk.flt");

    FltFixture db;
    db.header(1570, 0, 0, 0, "demo");
    std::vector<uint32_t> colors(1024, abgr(255, 255, 255));
    colors[kRoofRed] = abgr(190, 60, 45);
    colors[kWall] = abgr(225, 215, 190);
    colors[kGrass] = abgr(80, 150, 60);
    colors[kTrunk] = abgr(110, 75, 40);
    colors[kLeaves] = abgr(40, 120, 45);
    colors[kSteel] = abgr(90, 95, 105);
    colors[kGlass] = abgr(150, 200, 235);
    colors[kCrane] = abgr(240, 190, 30);
    colors[kLamp] = abgr(255, 240, 150);
    db.colorPalette(colors);
    db.texturePattern(kGrassTexture, "textures/grass.rgb");
    db.texturePattern(kBrickTexture, "textures/brick.rgb");
    db.texturePattern(kRoofTexture, "textures/roof.rgb");

    DemoBuilder b;
    const DemoObject ground = terrain(b);
    const DemoObject houseA = house(b, "houseA", -16, -6, 10, 7, 5);
    const DemoObject houseAFar = block(b, "houseAlo", -16, -6, 10, 7, 6.5);
    const DemoObject houseB = house(b, "houseB", 4, 6, 8, 8, 7);
    const DemoObject houseBFar = block(b, "houseBlo", 4, 6, 8, 8, 9);

    DemoObject tree{"tree", 0, {}};
    b.box(tree, indexed(kTrunk), indexed(kTrunk), -0.3, -0.3, 0, 0.3, 0.3, 2.0);
    for (int side = 0; side < 4; ++side) {
        const double corners[4][2] = {{-1.8, -1.8}, {1.8, -1.8}, {1.8, 1.8}, {-1.8, 1.8}};
        const double a[3] = {corners[side][0], corners[side][1], 1.6};
        const double c[3] = {corners[(side + 1) % 4][0], corners[(side + 1) % 4][1], 1.6};
        const double top[3] = {0, 0, 6.0};
        b.triangle(tree, indexed(kLeaves), a, c, top);
    }

    std::vector<DemoObject> lamps;
    for (int i = 0; i < 3; ++i) {
        DemoObject lamp{"lamp_" + std::string(1, static_cast<char>('a' + i)), 0, {}};
        const double x = -6 + 6.0 * i, y = -14;
        b.box(lamp, indexed(kSteel), indexed(kSteel), x - 0.12, y - 0.12, 0, x + 0.12, y + 0.12, 4.0);
        b.box(lamp, indexed(kLamp), indexed(kLamp), x - 0.5, y - 0.5, 4.0, x + 0.5, y + 0.5, 4.6);
        lamps.push_back(lamp);
    }

    DemoObject crane{"crane", 0, {}};
    b.box(crane, indexed(kCrane), indexed(kCrane), 18, -18, 0, 19, -17, 16);
    b.box(crane, indexed(kCrane), indexed(kCrane), 8, -18, 15, 26, -17, 16);

    DemoObject wall{"wall", 0, {}};
    b.box(wall, indexed(kWall, kBrickTexture), indexed(kWall), -30, 22, 0, 30, 22.6, 2.5);

    DemoObject pavilion{"pavilion", 0, {}};
    b.box(pavilion, indexed(kGlass, -1, 32768), indexed(kGlass, -1, 32768), -10, 12, 0, -4, 18, 3.5);

    b.writePalette(db);

    db.push().group("world").push();
    b.writeObject(db, ground);

    db.group("town").push();
    db.lod("lodA_hi", 300, 0).push();
    b.writeObject(db, houseA);
    db.pop();
    db.lod("lodA_lo", 3000, 300).push();
    b.writeObject(db, houseAFar);
    db.pop();
    db.lod("lodB_hi", 300, 0).push();
    b.writeObject(db, houseB);
    db.pop();
    db.lod("lodB_lo", 3000, 300).push();
    b.writeObject(db, houseBFar);
    db.pop();
    db.pop();

    // One tree, defined once where the first stands and referenced at four more places.
    const double treeAt[5][2] = {{-24, 8}, {-20, 14}, {20, 10}, {24, 2}, {-2, -24}};
    db.group("trees").push();
    db.group("tree_0").translationMatrix(static_cast<float>(treeAt[0][0]), static_cast<float>(treeAt[0][1]), 0);
    db.push().instanceDefinition(1).push();
    b.writeObject(db, tree);
    db.pop().pop();
    for (int i = 1; i < 5; ++i) {
        db.group("tree_" + std::to_string(i))
            .translationMatrix(static_cast<float>(treeAt[i][0]), static_cast<float>(treeAt[i][1]), 0);
        db.push().instanceReference(1).pop();
    }
    db.pop();

    // Street lamps: the middle one is switched off.
    db.switchNode("lamps", 0, 1, {0x5u}).push();
    for (const DemoObject& lamp : lamps) b.writeObject(db, lamp);
    db.pop();

    db.dof("cranedof").push();
    b.writeObject(db, crane);
    db.pop();

    // The wall is kept where x <= 10: plane -x + 10 = 0, the other planes off.
    db.clipRegion("wallclip", {{-1, 0, 0, 10}}, {true}).push();
    b.writeObject(db, wall);
    db.pop();

    b.writeObject(db, pavilion);

    // The kiosk, referenced twice: the file is converted once and shared.
    db.group("kioskW").translationMatrix(-4, -6, 0).push();
    db.externalReference("parts/kiosk.flt");
    db.pop();
    db.group("kioskE").translationMatrix(14, -8, 0).push();
    db.externalReference("./parts/kiosk.flt");
    db.pop();

    db.pop().pop();
    db.save(path.string());
}

}  // namespace

int main(int argc, char** argv)
{
    const char* const usage =
        "usage: qetzflt-demo OUT.flt\n"
        "\n"
        "Writes the example database OUT.flt, with parts/kiosk.flt and the textures it names beside it.\n";
    const std::string first = argc > 1 ? argv[1] : "";
    if (argc == 2 && (first == "-h" || first == "--help")) {
        std::cout << usage;
        return 0;
    }
    // A name that begins with a dash is an option this program does not know, never a file.
    if (argc != 2 || first.empty() || first[0] == '-') {
        std::cerr << usage;
        return 2;
    }
    try {
        writeDemo(argv[1]);
    } catch (const std::exception& e) {
        std::cerr << "qetzflt-demo: " << e.what() << "\n";
        return 1;
    }
    std::cout << "wrote " << argv[1] << " with parts/kiosk.flt and its textures\n";
    return 0;
}
