// qetzflt-fuzz-corpus: writes the fuzzer's seed corpus with the project's own writer: a
// database of every record type and small databases of each conversion area.
//
//   qetzflt-fuzz-corpus DIR
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "EveryRecordDatabase.h"
#include "tools/FltFixture.h"

namespace {

struct VertexKind {
    int opcode;
    int32_t (FltFixture::*write)(const FltVertexSpec&);
};

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: qetzflt-fuzz-corpus DIR\n";
        return 2;
    }
    const std::string dir = argv[1];
    std::filesystem::create_directories(dir);
    std::ofstream(dir + "/every-record.flt", std::ios::binary) << everyrecord::build();

    // Per vertex kind: a textured face with a material and its subface over three vertices
    // (no colour, packed colour, colour index), in an object under a commented group.
    const VertexKind kinds[] = {{68, &FltFixture::vertexColor},
                                {69, &FltFixture::vertexColorNormal},
                                {70, &FltFixture::vertexColorNormalUv},
                                {71, &FltFixture::vertexColorUv}};
    for (const VertexKind& kind : kinds) {
        FltFixture db;
        const float diffuse[3] = {1, 0.5f, 0.25f};
        db.header(kind.opcode == 68 ? 1420 : 1570).texturePattern(1, "t.rgb").material(0, diffuse, 32, 0.5f);
        db.vertexPalette();
        std::vector<int32_t> v;
        for (int i = 0; i < 3; ++i) {
            FltVertexSpec s;
            s.x = i, s.y = i % 2;
            s.flags = static_cast<uint16_t>(i == 0 ? 0x2000 : i == 1 ? 0x1000 : 0);
            s.vertexColorIndex = 16384 * i + 127;
            v.push_back((db.*kind.write)(s));
        }
        FltFaceSpec face;
        face.texturePatternIndex = 1;
        face.materialIndex = 0;
        db.push().group("g").comment("a\nb").push().object("o", 1000).push();
        db.face(face).push().vertexList(v).pop().pushSubface();
        face.flags = 0x10000000;
        db.face(face).push().vertexList(v).pop().popSubface().pop().pop().pop();
        db.save(dir + "/faces-" + std::to_string(kind.opcode) + ".flt");
    }

    FltFixture nodes;
    nodes.header().push();
    nodes.lod("lod", 100, 0).push().group("near").push().pop().pop();
    nodes.switchNode("sw", 0, 1, {0x5u}).push().group("a").push().pop().group("b").push().pop().pop();
    nodes.dof("dof").translationMatrix(1, 2, 3).push().pop();
    nodes.group("rep").replicate(3).translationMatrix(1, 0, 0).translationMatrix(1, 0, 0).push().pop();
    nodes.instanceDefinition(1).group("def").push().pop();
    nodes.instanceReference(1).externalReference("ref.flt").externalReference("./db.flt");
    nodes.text("label").push().pop().pop().save(dir + "/nodes.flt");

    // Faces of each light mode and draw type, and a mesh of every primitive type.
    FltFixture modes;
    modes.header().vertexPalette();
    std::vector<int32_t> corners;
    for (int i = 0; i < 3; ++i) corners.push_back(modes.vertexColor(i, i % 2, 0));
    modes.push();
    for (uint8_t mode = 0; mode < 4; ++mode) {
        FltFaceSpec face;
        face.lightMode = mode;
        face.drawType = static_cast<int8_t>(mode % 2);
        face.primaryColorIndex = 5 * 128 + 100;
        modes.face(face).translationMatrix(1, 0, 0).push().vertexList(corners).pop();
    }
    modes.mesh(FltFaceSpec(), {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
               {{1, {0, 1, 2, 3}}, {2, {0, 1, 2, 3}}, {3, {0, 1, 3, 2}}, {4, {0, 1, 2, 3}}});
    modes.pop().save(dir + "/modes-and-mesh.flt");

    // A revision 13 face over old vertex records (opcode 9, with texture coordinates).
    FltFixture old;
    old.header(1300).push().object("old").push().face().push();
    for (int i = 0; i < 3; ++i) old.add(FltRecordBytes(9, 40).i32(4, i).i32(8, i % 2));
    old.pop().pop().pop().save(dir + "/old-vertices.flt");
    std::cout << "wrote the seed corpus to " << dir << "\n";
    return 0;
}
