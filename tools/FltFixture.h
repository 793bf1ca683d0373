// Fixture writer: builds OpenFlight byte streams record by record, for the demo database,
// the benchmark, the fuzzer's seeds and the tests.
//
// FltRecordBytes is one record of a fixed length, zero-filled, whose fields are set by
// absolute offset exactly as the reader decodes them (big-endian). FltFixture strings
// records into a database and offers a builder for the records that tests use most:
//
//     FltFixture db;
//     db.header(1570).push().group("g1").push();
//     db.vertexPalette();
//     int a = db.vertexColor(0, 0, 0), b = db.vertexColor(1, 0, 0), c = db.vertexColor(0, 1, 0);
//     db.face().push().vertexList({a, b, c}).pop();
//     db.pop().pop();
//     db.save(path);
#pragma once

#include <cstdint>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

class FltRecordBytes {
public:
    FltRecordBytes(uint16_t opcode, size_t length) : bytes_(length < 4 ? 4 : length, '\0')
    {
        u16(0, opcode);
        u16(2, static_cast<uint16_t>(length));
    }

    // Overrides the declared length only, for damaged-record tests.
    FltRecordBytes& declaredLength(uint16_t length) { return u16(2, length); }

    FltRecordBytes& u8(size_t offset, uint8_t value)
    {
        at(offset, 1)[0] = static_cast<char>(value);
        return *this;
    }
    FltRecordBytes& i8(size_t offset, int8_t value) { return u8(offset, static_cast<uint8_t>(value)); }
    FltRecordBytes& u16(size_t offset, uint16_t value) { return be(offset, value, 2); }
    FltRecordBytes& i16(size_t offset, int16_t value) { return be(offset, static_cast<uint16_t>(value), 2); }
    FltRecordBytes& u32(size_t offset, uint32_t value) { return be(offset, value, 4); }
    FltRecordBytes& i32(size_t offset, int32_t value) { return be(offset, static_cast<uint32_t>(value), 4); }
    FltRecordBytes& f32(size_t offset, float value)
    {
        uint32_t bits;
        std::memcpy(&bits, &value, 4);
        return be(offset, bits, 4);
    }
    FltRecordBytes& f64(size_t offset, double value)
    {
        uint64_t bits;
        std::memcpy(&bits, &value, 8);
        return be(offset, bits, 8);
    }
    // Copies at most n bytes of text; the rest of the n bytes are set to zero.
    FltRecordBytes& chars(size_t offset, const std::string& text, size_t n)
    {
        char* p = at(offset, n);
        const size_t copied = text.size() < n ? text.size() : n;
        std::memcpy(p, text.data(), copied);
        std::memset(p + copied, 0, n - copied);
        return *this;
    }
    // A packed colour as the file stores it: alpha, blue, green, red.
    FltRecordBytes& abgr(size_t offset, uint8_t a, uint8_t b, uint8_t g, uint8_t r)
    {
        char* p = at(offset, 4);
        p[0] = static_cast<char>(a);
        p[1] = static_cast<char>(b);
        p[2] = static_cast<char>(g);
        p[3] = static_cast<char>(r);
        return *this;
    }

    size_t size() const { return bytes_.size(); }
    const std::string& bytes() const { return bytes_; }

private:
    char* at(size_t offset, size_t n)
    {
        if (offset + n > bytes_.size()) throw std::out_of_range("fixture field outside its record");
        return &bytes_[offset];
    }
    FltRecordBytes& be(size_t offset, uint64_t value, size_t n)
    {
        char* p = at(offset, n);
        for (size_t i = 0; i < n; ++i) p[i] = static_cast<char>((value >> (8 * (n - 1 - i))) & 0xFF);
        return *this;
    }

    std::string bytes_;
};

// Options of a face record (opcode 5, 80 bytes).
struct FltFaceSpec {
    std::string id = "f";
    int8_t drawType = 0;   // 0 solid culled, 1 solid two-sided
    uint8_t lightMode = 0;  // 0 flat, 1 vertex colours, 2 lit, 3 lit vertex colours
    int32_t flags = 0;
    uint16_t colorNameIndex = 0;
    int16_t texturePatternIndex = -1;
    int16_t materialIndex = -1;
    uint16_t transparency = 0;
    int8_t textureWhite = 0;
    uint8_t packed[4] = {0, 0, 0, 0};  // alpha, blue, green, red
    int32_t primaryColorIndex = 0;
    int32_t alternateColorIndex = 0;
};

// Options of a current vertex record (opcodes 68 to 71).
struct FltVertexSpec {
    double x = 0, y = 0, z = 0;
    float i = 0, j = 0, k = 1;
    float u = 0, v = 0;
    uint16_t colorNameIndex = 0;
    uint16_t flags = 0x2000;  // "No Color" unless the test chooses a colour
    uint8_t packed[4] = {0, 0, 0, 0};
    int32_t vertexColorIndex = 0;
};

class FltFixture {
public:
    // Appends any record.
    FltFixture& add(const FltRecordBytes& record)
    {
        closePalette();
        data_ += record.bytes();
        return *this;
    }
    // Appends raw bytes, for damaged files.
    FltFixture& raw(const std::string& bytes)
    {
        closePalette();
        data_ += bytes;
        return *this;
    }

    // Header, opcode 1, 324 bytes (the 15.8 layout; older readers stop earlier).
    FltFixture& header(int32_t revision = 1570, uint8_t units = 0, int32_t flags = 0, int16_t multiplier = 0,
                       const std::string& id = "db")
    {
        FltRecordBytes r(1, 324);
        r.chars(4, id, 8).i32(12, revision).i16(60, multiplier).u8(62, units).i32(64, flags);
        return add(r);
    }
    FltFixture& push() { return add(FltRecordBytes(10, 4)); }
    FltFixture& pop() { return add(FltRecordBytes(11, 4)); }
    FltFixture& pushSubface() { return add(FltRecordBytes(19, 4)); }
    FltFixture& popSubface() { return add(FltRecordBytes(20, 4)); }

    FltFixture& group(const std::string& id)
    {
        FltRecordBytes r(2, 44);
        r.chars(4, id, 8);
        return add(r);
    }
    FltFixture& object(const std::string& id, uint16_t transparency = 0)
    {
        FltRecordBytes r(4, 28);
        r.chars(4, id, 8).u16(18, transparency);
        return add(r);
    }
    FltFixture& comment(const std::string& text) { return add(textRecord(31, text)); }
    FltFixture& longId(const std::string& text) { return add(textRecord(33, text)); }

    FltFixture& face(const FltFaceSpec& spec = FltFaceSpec())
    {
        FltRecordBytes r(5, 80);
        r.chars(4, spec.id, 8)
            .i8(18, spec.drawType)
            .i8(19, spec.textureWhite)
            .u16(20, spec.colorNameIndex)
            .i16(28, spec.texturePatternIndex)
            .i16(30, spec.materialIndex)
            .u16(40, spec.transparency)
            .i32(44, spec.flags)
            .u8(48, spec.lightMode)
            .abgr(56, spec.packed[0], spec.packed[1], spec.packed[2], spec.packed[3])
            .i16(64, -1)
            .i32(68, spec.primaryColorIndex)
            .i32(72, spec.alternateColorIndex);
        return add(r);
    }
    // Mesh, opcode 84, 84 bytes: a face's fields 4 bytes further on. Then its local vertex
    // pool of positions (each corner given as x, y, z) with normal (0, 0, 1), a push level,
    // its primitives (1 strip, 2 fan, 3 quadrilateral strip, 4 polygon) and a pop level.
    FltFixture& mesh(const FltFaceSpec& spec, const std::vector<std::vector<double>>& positions,
                     const std::vector<std::pair<int16_t, std::vector<uint32_t>>>& primitives)
    {
        FltRecordBytes m(84, 84);
        m.chars(4, spec.id, 8)
            .i8(22, spec.drawType)
            .i8(23, spec.textureWhite)
            .i16(32, spec.texturePatternIndex)
            .i16(34, spec.materialIndex)
            .u16(44, spec.transparency)
            .i32(48, spec.flags)
            .u8(52, spec.lightMode)
            .abgr(60, spec.packed[0], spec.packed[1], spec.packed[2], spec.packed[3])
            .i32(72, spec.primaryColorIndex);
        add(m);
        FltRecordBytes pool(85, 12 + 36 * positions.size());
        pool.u32(4, static_cast<uint32_t>(positions.size())).u32(8, 0x90000000u);
        for (size_t v = 0; v < positions.size(); ++v) {
            for (size_t c = 0; c < 3 && c < positions[v].size(); ++c) pool.f64(12 + 36 * v + 8 * c, positions[v][c]);
            pool.f32(12 + 36 * v + 32, 1.0f);
        }
        add(pool).push();
        for (const auto& [type, indices] : primitives) {
            FltRecordBytes p(86, 12 + 4 * indices.size());
            p.i16(4, type).u16(6, 4).u32(8, static_cast<uint32_t>(indices.size()));
            for (size_t i = 0; i < indices.size(); ++i) p.u32(12 + 4 * i, indices[i]);
            add(p);
        }
        return pop();
    }
    FltFixture& vertexList(std::initializer_list<int32_t> offsets) { return vertexList(std::vector<int32_t>(offsets)); }
    FltFixture& vertexList(const std::vector<int32_t>& offsets)
    {
        FltRecordBytes r(72, 4 + 4 * offsets.size());
        for (size_t i = 0; i < offsets.size(); ++i) r.i32(4 + 4 * i, offsets[i]);
        return add(r);
    }

    // The vertex palette: vertex records follow; each returns its offset in the palette.
    FltFixture& vertexPalette()
    {
        closePalette();
        paletteStart_ = data_.size();
        FltRecordBytes r(67, 8);
        data_ += r.bytes();
        paletteOpen_ = true;
        return *this;
    }
    int32_t vertexColor(const FltVertexSpec& s) { return vertex(68, 40, s); }
    int32_t vertexColorNormal(const FltVertexSpec& s) { return vertex(69, 56, s); }
    int32_t vertexColorNormalUv(const FltVertexSpec& s) { return vertex(70, 64, s); }
    int32_t vertexColorUv(const FltVertexSpec& s) { return vertex(71, 48, s); }
    int32_t vertexColor(double x, double y, double z)
    {
        FltVertexSpec s;
        s.x = x, s.y = y, s.z = z;
        return vertexColor(s);
    }

    FltFixture& matrix(const float m[16])
    {
        FltRecordBytes r(49, 68);
        for (int i = 0; i < 16; ++i) r.f32(4 + 4 * i, m[i]);
        return add(r);
    }
    FltFixture& translationMatrix(float x, float y, float z)
    {
        const float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
        return matrix(m);
    }
    FltFixture& replicate(int32_t count)
    {
        FltRecordBytes r(60, 12);
        r.i32(4, count);
        return add(r);
    }

    FltFixture& lod(const std::string& id, double switchIn, double switchOut, double cx = 0, double cy = 0,
                    double cz = 0)
    {
        FltRecordBytes r(73, 80);
        r.chars(4, id, 8).f64(16, switchIn).f64(24, switchOut).f64(40, cx).f64(48, cy).f64(56, cz);
        return add(r);
    }
    // Masks: numberOfMasks x wordsPerMask words, mask after mask.
    FltFixture& switchNode(const std::string& id, int32_t currentMask, int32_t wordsPerMask,
                           const std::vector<uint32_t>& maskWords)
    {
        const int32_t masks = wordsPerMask > 0 ? static_cast<int32_t>(maskWords.size()) / wordsPerMask : 0;
        FltRecordBytes r(96, 28 + 4 * maskWords.size());
        r.chars(4, id, 8).i32(16, currentMask).i32(20, masks).i32(24, wordsPerMask);
        for (size_t i = 0; i < maskWords.size(); ++i) r.u32(28 + 4 * i, maskWords[i]);
        return add(r);
    }
    FltFixture& dof(const std::string& id)
    {
        FltRecordBytes r(14, 384);
        r.chars(4, id, 8);
        return add(r);
    }
    // Clip region, opcode 98, 280 bytes: planes[i] = {A, B, C, D} of A*x + B*y + C*z + D = 0.
    FltFixture& clipRegion(const std::string& id, const std::vector<std::vector<double>>& planes,
                           const std::vector<bool>& enabled)
    {
        FltRecordBytes r(98, 280);
        r.chars(4, id, 8);
        for (size_t i = 0; i < planes.size() && i < 5; ++i) {
            r.u8(18 + i, i < enabled.size() && enabled[i] ? 1 : 0);
            for (size_t c = 0; c < 4 && c < planes[i].size(); ++c) r.f64(120 + 40 * c + 8 * i, planes[i][c]);
        }
        return add(r);
    }
    FltFixture& externalReference(const std::string& path, int32_t flags = 0)
    {
        FltRecordBytes r(63, 216);
        r.chars(4, path, 199).i32(208, flags);
        return add(r);
    }
    FltFixture& instanceDefinition(int16_t number)
    {
        FltRecordBytes r(62, 8);
        r.i16(6, number);
        return add(r);
    }
    FltFixture& instanceReference(int16_t number)
    {
        FltRecordBytes r(61, 8);
        r.i16(6, number);
        return add(r);
    }
    FltFixture& text(const std::string& id)
    {
        FltRecordBytes r(95, 320);
        r.chars(4, id, 8);
        return add(r);
    }
    // Old LOD, opcode 3, 40 bytes: integer distances and centre.
    FltFixture& oldLod(const std::string& id, uint32_t switchIn, uint32_t switchOut, int32_t cx = 0, int32_t cy = 0,
                       int32_t cz = 0)
    {
        FltRecordBytes r(3, 40);
        r.chars(4, id, 8).u32(12, switchIn).u32(16, switchOut).i32(28, cx).i32(32, cy).i32(36, cz);
        return add(r);
    }
    // Clip region, opcode 98, 280 bytes: five planes A*x + B*y + C*z + D = 0 and their
    // enable bytes (1 = on).
    FltFixture& clipRegion(const std::string& id, const uint8_t enabled[5], const double planes[5][4])
    {
        FltRecordBytes r(98, 280);
        r.chars(4, id, 8);
        for (int p = 0; p < 5; ++p) {
            r.u8(18 + p, enabled[p]);
            for (int c = 0; c < 4; ++c) r.f64(120 + 40 * c + 8 * p, planes[p][c]);
        }
        return add(r);
    }

    // Colour palette of a 15.x file: 1024 colours given as alpha, blue, green, red words.
    FltFixture& colorPalette(const std::vector<uint32_t>& abgrWords)
    {
        FltRecordBytes r(32, 4228);
        for (size_t i = 0; i < abgrWords.size() && i < 1024; ++i) r.u32(132 + 4 * i, abgrWords[i]);
        return add(r);
    }
    FltFixture& material(int32_t index, const float diffuse[3], float shininess = 0, float alpha = 1,
                         const std::string& name = "m")
    {
        FltRecordBytes r(113, 84);
        r.i32(4, index).chars(8, name, 12);
        for (int c = 0; c < 3; ++c) r.f32(24 + 4 * c, diffuse[c] * 0.5f).f32(36 + 4 * c, diffuse[c]);
        r.f32(72, shininess).f32(76, alpha);
        return add(r);
    }
    FltFixture& texturePattern(int32_t index, const std::string& fileName)
    {
        FltRecordBytes r(64, 216);
        r.chars(4, fileName, 199).i32(204, index);
        return add(r);
    }

    std::string bytes()
    {
        closePalette();
        return data_;
    }
    void save(const std::string& path)
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        const std::string all = bytes();
        out.write(all.data(), static_cast<std::streamsize>(all.size()));
    }

private:
    static FltRecordBytes textRecord(uint16_t opcode, const std::string& text)
    {
        FltRecordBytes r(opcode, 4 + text.size());
        r.chars(4, text, text.size());
        return r;
    }

    int32_t vertex(uint16_t opcode, size_t length, const FltVertexSpec& s)
    {
        if (!paletteOpen_) throw std::logic_error("vertex outside a vertex palette");
        const int32_t offset = static_cast<int32_t>(data_.size() - paletteStart_);
        FltRecordBytes r(opcode, length);
        r.u16(4, s.colorNameIndex).u16(6, s.flags).f64(8, s.x).f64(16, s.y).f64(24, s.z);
        size_t tail = 32;  // the packed colour, then the colour index
        if (opcode == 69 || opcode == 70) {
            r.f32(32, s.i).f32(36, s.j).f32(40, s.k);
            tail = 44;
        }
        if (opcode == 70) {
            r.f32(44, s.u).f32(48, s.v);
            tail = 52;
        }
        if (opcode == 71) {
            r.f32(32, s.u).f32(36, s.v);
            tail = 40;
        }
        r.abgr(tail, s.packed[0], s.packed[1], s.packed[2], s.packed[3]).i32(tail + 4, s.vertexColorIndex);
        data_ += r.bytes();
        return offset;
    }

    // Writes the palette's total length once its vertices are known.
    void closePalette()
    {
        if (!paletteOpen_) return;
        const uint32_t total = static_cast<uint32_t>(data_.size() - paletteStart_);
        for (int i = 0; i < 4; ++i) data_[paletteStart_ + 4 + i] = static_cast<char>((total >> (24 - 8 * i)) & 0xFF);
        paletteOpen_ = false;
    }

    std::string data_;
    size_t paletteStart_ = 0;
    bool paletteOpen_ = false;
};
