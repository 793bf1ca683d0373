// A database that holds every record type of the opcode table (and a few unknown opcodes),
// in a plausible order, with every field filled from a fixed byte pattern. Its log, scene and
// messages pin the whole output of the library: any change to a dump line or a node shows.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/FltFixture.h"

namespace everyrecord {

// A record of the given length whose body bytes follow a fixed pseudo-random pattern.
inline FltRecordBytes patterned(uint16_t opcode, size_t length)
{
    FltRecordBytes r(opcode, length);
    uint32_t state = 0x9E3779B9u ^ opcode;
    for (size_t i = 4; i < length; ++i) {
        state = state * 1664525u + 1013904223u;
        r.u8(i, static_cast<uint8_t>(state >> 24));
    }
    return r;
}

inline std::string build()
{
    FltFixture db;
    db.add(patterned(1, 324).i32(12, 1570).u32(64, 0x80000000u).i16(60, 0).u8(62, 0));

    db.add(patterned(32, 4232 + 20).i32(4228, 1).u16(4232, 20).i16(4236, 3).chars(4240, "sky blue", 12));
    db.add(patterned(64, 216).chars(4, "tex/pattern.rgb", 200).i32(204, 1));
    db.add(patterned(66, 4 + 64 * 184));
    db.add(patterned(113, 84).i32(4, 1));
    db.add(patterned(114, 10 + 2 * 14)
               .i32(4, 2).u16(8, 3)
               .i32(10, 14).u16(14, 1).chars(16, "first!", 8)
               .i32(24, 14).u16(28, 2).chars(30, "second", 8));
    db.add(patterned(97, 12).i16(4, 1));
    db.add(patterned(102, 240));
    db.add(patterned(83, 4008));
    db.add(patterned(93, 56).i32(4, 1).i32(12, 2));
    db.add(patterned(93, 24).i32(4, 2).i32(8, 8));
    db.add(patterned(112, 168 + 200).i32(32, 1).i32(36, 1));

    db.vertexPalette();
    FltVertexSpec v;
    v.flags = 0x1000;
    v.packed[0] = 255, v.packed[1] = 10, v.packed[2] = 20, v.packed[3] = 30;
    std::vector<int32_t> color, colorNormal, colorUv, colorNormalUv;
    for (int i = 0; i < 3; ++i) {
        v.x = i, v.y = i * 2, v.z = 1;
        color.push_back(db.vertexColor(v));
        colorNormal.push_back(db.vertexColorNormal(v));
        colorUv.push_back(db.vertexColorUv(v));
        colorNormalUv.push_back(db.vertexColorNormalUv(v));
    }

    db.push();
    db.add(patterned(2, 44).chars(4, "group1", 8));
    db.add(patterned(31, 4 + 12).chars(4, "one\ntwo\r\nend", 12));
    db.longId("the_first_group");
    for (const auto& [opcode, length] : std::vector<std::pair<uint16_t, size_t>>{
             {74, 56}, {51, 28}, {105, 16}, {106, 24}, {108, 32}, {109, 32}, {100, 40},
             {50, 16}, {76, 60}, {78, 56}, {79, 44}, {80, 48}, {82, 156}, {94, 68}})
        db.add(patterned(opcode, length));
    db.translationMatrix(1, 2, 3);
    db.push();

    db.add(patterned(4, 28).chars(4, "object1", 8).u16(18, 0));
    db.push();
    FltFaceSpec face;
    face.primaryColorIndex = 127;
    db.face(face).push().vertexList(color).add(patterned(52, 4 + 4 + 16)).pop();
    face.texturePatternIndex = 1;
    face.materialIndex = 1;
    db.face(face).push().vertexList(colorUv).pop();
    db.pushSubface();
    face.flags = 0x10000000;
    db.face(face).push().vertexList(colorNormal).pop();
    db.popSubface();
    FltRecordBytes morph(89, 4 + 8 * 3);
    for (int i = 0; i < 3; ++i) morph.i32(4 + 8 * i, colorNormalUv[i]).i32(8 + 8 * i, colorNormalUv[i]);
    db.face().push().add(morph).pop();
    db.pop();

    db.add(patterned(3, 40));
    db.push().add(patterned(7, 24)).pop();
    db.add(patterned(73, 80).chars(4, "lod1", 8).f64(16, 500).f64(24, 0).f64(40, 0).f64(48, 0).f64(56, 0)).push();
    db.add(FltRecordBytes(4, 28).chars(4, "oldverts", 8)).push();
    db.face().push().add(patterned(9, 40)).add(patterned(9, 40)).add(patterned(9, 40)).pop();
    db.face().push().add(patterned(8, 28)).add(patterned(8, 28)).add(patterned(8, 28)).pop();
    db.pop();
    db.pop();

    db.switchNode("switch1", 0, 1, {0x00000005u, 0xFFFFFFFFu});
    db.push().group("on0").push().pop().group("off1").push().pop().group("on2").push().pop().pop();
    db.add(patterned(14, 384).chars(4, "dof1", 8)).translationMatrix(0, 0, 5).push().pop();
    db.instanceDefinition(7).group("shared").push().pop();
    db.instanceReference(7);
    db.group("copies").replicate(2).translationMatrix(1, 0, 0).translationMatrix(2, 0, 0).push().pop();
    db.add(patterned(98, 280).chars(4, "clip1", 8).u8(18, 1).u8(19, 0).u8(20, 1).u8(21, 0).u8(22, 0)).push().pop();
    db.add(patterned(95, 320).chars(4, "label1", 8)).push().pop();
    db.externalReference("missing/part.flt");
    db.add(patterned(91, 88)).add(patterned(101, 64)).add(patterned(111, 156));
    db.add(patterned(21, 24)).add(patterned(22, 24));
    db.add(patterned(53, 16)).add(patterned(99, 8)).add(patterned(200, 12)).add(patterned(65535, 4));
    db.pop();
    db.pop();
    db.pop();
    return db.bytes();
}

}  // namespace everyrecord
