// qetzflt-fuzz-corpus: writes the fuzzer's seed corpus with the project's own writer: a
// database of every record type and small databases of each conversion area.
//
//   qetzflt-fuzz-corpus DIR
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "EveryRecordDatabase.h"
#include "FltFixture.h"

namespace {

FltVertexSpec at(double x, double y, double z)
{
    FltVertexSpec s;
    s.x = x, s.y = y, s.z = z;
    return s;
}

// A palette of three vertices of each kind, then a body written by the caller.
std::vector<int32_t> palette(FltFixture& db, int kind)
{
    db.vertexPalette();
    std::vector<int32_t> offsets;
    for (int i = 0; i < 3; ++i) {
        FltVertexSpec v = at(i, i % 2, 0);
        v.flags = static_cast<uint16_t>(i == 0 ? 0x2000 : i == 1 ? 0x1000 : 0);
        v.vertexColorIndex = 16384 * i + 127;
        switch (kind) {
        case 68: offsets.push_back(db.vertexColor(v)); break;
        case 69: offsets.push_back(db.vertexColorNormal(v)); break;
        case 70: offsets.push_back(db.vertexColorNormalUv(v)); break;
        default: offsets.push_back(db.vertexColorUv(v)); break;
        }
    }
    return offsets;
}

void save(const std::string& dir, const std::string& name, const std::string& bytes)
{
    FltFixture raw;
    raw.raw(bytes);
    raw.save(dir + "/" + name);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: qetzflt-fuzz-corpus DIR\n";
        return 2;
    }
    const std::string dir = argv[1];
    std::filesystem::create_directories(dir);
    save(dir, "every-record.flt", everyrecord::build());

    for (int kind : {68, 69, 70, 71}) {
        FltFixture db;
        db.header(kind == 68 ? 1420 : 1570);
        db.texturePattern(1, "t.rgb");
        const float diffuse[3] = {1, 0.5f, 0.25f};
        db.material(0, diffuse, 32, 0.5f);
        std::vector<int32_t> v = palette(db, kind);
        db.push().group("g").comment("a\nb").push().object("o", 1000).push();
        FltFaceSpec face;
        face.texturePatternIndex = 1;
        face.materialIndex = 0;
        db.face(face).push().vertexList(v).pop();
        db.pushSubface();
        face.flags = 0x10000000;
        db.face(face).push().vertexList(v).pop();
        db.popSubface();
        db.pop().pop().pop();
        save(dir, "faces-" + std::to_string(kind) + ".flt", db.bytes());
    }

    FltFixture nodes;
    nodes.header().push();
    nodes.lod("lod", 100, 0).push().group("near").push().pop().pop();
    nodes.switchNode("sw", 0, 1, {0x5u}).push().group("a").push().pop().group("b").push().pop().pop();
    nodes.dof("dof").translationMatrix(1, 2, 3).push().pop();
    nodes.group("rep").replicate(3).translationMatrix(1, 0, 0).translationMatrix(1, 0, 0).push().pop();
    nodes.instanceDefinition(1).group("def").push().pop();
    nodes.instanceReference(1);
    nodes.externalReference("ref.flt");
    nodes.externalReference("./db.flt");
    nodes.text("label").push().pop();
    nodes.pop();
    save(dir, "nodes.flt", nodes.bytes());

    FltFixture old;
    old.header(1300).push().object("old").push();
    old.face().push();
    for (int i = 0; i < 3; ++i) {
        FltRecordBytes r(9, 40);
        r.i32(4, i).i32(8, i % 2);
        old.add(r);
    }
    old.pop().pop().pop();
    save(dir, "old-vertices.flt", old.bytes());
    std::cout << "wrote the seed corpus to " << dir << "\n";
    return 0;
}
