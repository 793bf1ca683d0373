// glTF 2.0 written by `qetzflt convert -o OUT.glb|.gltf`, read back with tinygltf: the
// hierarchy, the triangles the as-authored scene draws, materials, embedded images, Y up;
// the refusals; every real database, and the Khronos validator where Node.js has it.
#include <gtest/gtest.h>

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoLOD.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <set>

#include "ConvertSupport.h"
#include "GltfReadBack.h"
#include "QetzFlt/QetzFlt.h"
#include "ToolRunner.h"
#include "tools/FltFixture.h"

namespace fs = std::filesystem;

namespace {

// The triangles an as-authored Inventor graph draws, seen from near: switches by their
// choice, of the levels of detail below one group those with the smallest near distance
// that draw something, shared nodes counted where they appear.
size_t drawnTriangles(SoNode* node);

SoLOD* lodOf(SoNode* node)
{
    if (!node->isOfType(SoSeparator::getClassTypeId())) return nullptr;
    auto* group = static_cast<SoGroup*>(node);
    for (int i = 0; i < group->getNumChildren(); ++i)
        if (group->getChild(i)->isOfType(SoLOD::getClassTypeId())) return static_cast<SoLOD*>(group->getChild(i));
    return nullptr;
}

size_t drawnTriangles(SoNode* node)
{
    if (node->isOfType(SoIndexedFaceSet::getClassTypeId())) {
        const auto* faces = static_cast<SoIndexedFaceSet*>(node);
        size_t triangles = 0;
        int run = 0;
        for (int i = 0; i < faces->coordIndex.getNum(); ++i) {
            if (faces->coordIndex[i] >= 0) ++run;
            else {
                if (run >= 3) triangles += static_cast<size_t>(run - 2);
                run = 0;
            }
        }
        return triangles;
    }
    if (node->isOfType(SoSwitch::getClassTypeId())) {
        auto* choice = static_cast<SoSwitch*>(node);
        const int which = choice->whichChild.getValue();
        if (which == SO_SWITCH_ALL) {
            size_t sum = 0;
            for (int i = 0; i < choice->getNumChildren(); ++i) sum += drawnTriangles(choice->getChild(i));
            return sum;
        }
        return which >= 0 && which < choice->getNumChildren() ? drawnTriangles(choice->getChild(which)) : 0;
    }
    if (node->isOfType(SoLOD::getClassTypeId())) return drawnTriangles(static_cast<SoLOD*>(node)->getChild(1));
    if (!node->isOfType(SoGroup::getClassTypeId())) return 0;
    auto* group = static_cast<SoGroup*>(node);
    // A child under an on switch is the child itself here.
    auto unwrap = [](SoNode* child) -> SoNode* {
        if (!child->isOfType(SoSwitch::getClassTypeId())) return child;
        auto* wrapper = static_cast<SoSwitch*>(child);
        return wrapper->whichChild.getValue() == SO_SWITCH_ALL && wrapper->getNumChildren() == 1 ? wrapper->getChild(0)
                                                                                                 : nullptr;
    };
    float nearest = HUGE_VALF;
    for (int i = 0; i < group->getNumChildren(); ++i) {
        SoNode* child = unwrap(group->getChild(i));
        if (SoLOD* lod = child ? lodOf(child) : nullptr)
            if (drawnTriangles(lod) > 0) nearest = std::min(nearest, lod->range[0]);
    }
    size_t sum = 0;
    for (int i = 0; i < group->getNumChildren(); ++i) {
        SoNode* child = group->getChild(i);
        SoNode* inner = unwrap(child);
        SoLOD* lod = inner ? lodOf(inner) : nullptr;
        if (lod && lod->range[0] > nearest) continue;
        sum += drawnTriangles(child);
    }
    return sum;
}

size_t asAuthoredTriangles(const std::string& database)
{
    const AuthoredFile converted(database);
    return converted.root ? drawnTriangles(converted.root) : 0;
}

// Nothing but the files asked for: no temporary file left beside them.
std::set<std::string> filesIn(const ScratchDir& dir, const std::string& folder)
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir.file(folder))) names.insert(entry.path().filename().string());
    return names;
}

}  // namespace

TEST(GltfExport, theDemoDatabaseReadsBackWithItsNodesTrianglesMaterialsImagesAndYUp)
{
    SoDB::init();
    ScratchDir dir;
    const std::string demo = writeDemoDatabase(dir);
    // The roof's attribute file clamps it across u (both directions: word 36) and mirrors
    // it across v (word 44); the other images repeat, having none.
    std::string attr(48, '\0');
    attr[39] = 1, attr[43] = 3, attr[47] = 4;
    writeFile(dir.file("textures/roof.rgb.attr"), attr);
    fs::create_directories(dir.file("out"));
    const RunResult r = runTool({"convert", demo, "-o", dir.file("out/demo.glb")});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(filesIn(dir, "out"), std::set<std::string>{"demo.glb"});

    const GltfReadBack glb(dir.file("out/demo.glb"));
    ASSERT_TRUE(glb.loaded) << glb.error;
    EXPECT_EQ(glb.triangles, asAuthoredTriangles(demo));
    for (const char* name : {"demo", "lamps", "lamp_a", "pavilion", "kiosk"}) EXPECT_TRUE(glb.names.count(name)) << name;
    EXPECT_FALSE(glb.names.count("lamp_b"));  // switched off
    EXPECT_FALSE(glb.names.count("lodA_lo"));  // a farther level
    // The glass pavilion blends at half its colour, unlit as the demo's faces are; the
    // textures are PNGs of their own sizes.
    std::set<std::string> modes;
    for (const tinygltf::Material& m : glb.model.materials) {
        modes.insert(m.alphaMode);
        EXPECT_TRUE(m.extensions.count("KHR_materials_unlit")) << m.name;
        if (m.alphaMode == "BLEND") {
            EXPECT_NEAR(m.pbrMetallicRoughness.baseColorFactor[3], 0.5, 0.01);
        }
    }
    EXPECT_EQ(modes, (std::set<std::string>{"BLEND", "OPAQUE"}));
    std::multiset<std::pair<int, int>> sizes;
    for (const tinygltf::Image& image : glb.model.images) {
        EXPECT_EQ(image.mimeType, "image/png");
        EXPECT_GE(image.bufferView, 0);
        sizes.insert({image.width, image.height});
    }
    EXPECT_EQ(sizes, (std::multiset<std::pair<int, int>>{{32, 32}, {32, 32}, {64, 64}, {64, 64}}));
    std::set<std::pair<int, int>> wraps;
    for (const tinygltf::Sampler& sampler : glb.model.samplers) wraps.insert({sampler.wrapS, sampler.wrapT});
    EXPECT_EQ(wraps, (std::set<std::pair<int, int>>{{TINYGLTF_TEXTURE_WRAP_REPEAT, TINYGLTF_TEXTURE_WRAP_REPEAT},
                                                    {TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE,
                                                     TINYGLTF_TEXTURE_WRAP_MIRRORED_REPEAT}}));
    // The demo stands on the ground (z = 0) and rises along z: in glTF along y.
    EXPECT_NEAR(glb.low[1], 0.0, 1e-3);
    EXPECT_GT(glb.high[1], 1.0);
    EXPECT_LT(glb.low[2], -1.0);

    const GltfValidator validator(dir);
    if (validator.available()) {
        const GltfValidator::Report report = validator.validate(dir.file("out/demo.glb"));
        EXPECT_EQ(report.errors, 0) << report.text;
    } else {
        std::cout << "[ NOTE ] " << validator.why() << ": the file is not validated\n";
    }

    // The text form: the same content, with its buffer and images beside it.
    ASSERT_EQ(runTool({"convert", demo, "-o", dir.file("text/demo.gltf")}).status, 0);
    const std::set<std::string> files = filesIn(dir, "text");
    EXPECT_EQ(files.size(), 2 + glb.model.images.size());
    EXPECT_TRUE(files.count("demo.gltf") && files.count("demo.bin"));
    const GltfReadBack gltf(dir.file("text/demo.gltf"));
    ASSERT_TRUE(gltf.loaded) << gltf.error;
    EXPECT_EQ(gltf.triangles, glb.triangles);
    EXPECT_EQ(gltf.model.images.size(), glb.model.images.size());
}

TEST(GltfExport, aLitTwoSidedFaceIsAShadedDoubleSidedMaterialOfItsColour)
{
    ScratchDir dir;
    FltFixture db;
    db.header().vertexPalette();
    const int32_t a = db.vertexColorNormal(vertexAt(0, 0)), b = db.vertexColorNormal(vertexAt(1, 0)),
                  c = db.vertexColorNormal(vertexAt(0, 1));
    FltFaceSpec face;
    face.drawType = 1;
    face.lightMode = 2;
    face.flags = kPackedColor;
    face.packed[0] = 255, face.packed[3] = 255;  // opaque red
    db.face(face).push().vertexList({a, b, c}).pop();
    db.save(dir.file("lit.flt"));
    ASSERT_EQ(runTool({"convert", dir.file("lit.flt"), "-o", dir.file("lit.glb")}).status, 0);
    const GltfReadBack glb(dir.file("lit.glb"));
    ASSERT_TRUE(glb.loaded) << glb.error;
    EXPECT_EQ(glb.triangles, 1u);
    ASSERT_EQ(glb.model.materials.size(), 1u);
    const tinygltf::Material& m = glb.model.materials[0];
    EXPECT_TRUE(m.doubleSided);
    EXPECT_FALSE(m.extensions.count("KHR_materials_unlit"));
    EXPECT_EQ(m.pbrMetallicRoughness.baseColorFactor, (std::vector<double>{1, 0, 0, 1}));
    EXPECT_TRUE(glb.model.meshes[0].primitives[0].attributes.count("NORMAL"));
}

TEST(GltfExport, refusalsSayWhyAndLeaveNothingBehind)
{
    SoDB::init();
    ScratchDir dir;
    FltFixture empty;
    empty.header().push().pop();
    empty.save(dir.file("empty.flt"));
    writeFile(dir.file("text.flt"), "not a database");
    const std::string demo = writeDemoDatabase(dir);
    fs::create_directories(dir.file("taken.glb"));
    const struct {
        std::vector<std::string> args;
        const char* says;
    } cases[] = {
        {{"convert", dir.file("empty.flt"), "-o", dir.file("empty.glb")}, "draws nothing"},
        {{"convert", dir.file("text.flt"), "-o", dir.file("text.glb")}, "not an OpenFlight database"},
        {{"convert", demo, "-o", dir.file("taken.glb")}, "cannot write"},
        {{"convert", demo, "-o", dir.file("x.glb"), "--classic"}, "--classic does not apply to glTF"},
    };
    for (const auto& k : cases) {
        const RunResult r = runTool(k.args);
        EXPECT_NE(r.status, 0) << k.says;
        EXPECT_TRUE(contains(r.err, k.says)) << r.err;
    }
    for (const auto& entry : fs::directory_iterator(dir.path())) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(name.find(".glb") == std::string::npos || name == "taken.glb") << name;
    }
    EXPECT_TRUE(fs::is_empty(dir.file("taken.glb")));
}

TEST(RealDatabases, everyDatabaseWritesAGlbThatDrawsTheAsAuthoredTrianglesAndValidates)
{
    const std::string data = sharedDataDir();
    if (data.empty()) GTEST_SKIP() << "../shared/data is absent: the real databases are not in this checkout";
    SoDB::init();
    ScratchDir dir;
    const GltfValidator validator(dir);
    if (!validator.available()) std::cout << "[ NOTE ] " << validator.why() << ": the files are not validated\n";
    const std::vector<std::string> databases = databasesBelow(data);
    for (size_t n = 0; n < databases.size(); ++n) {
        const std::string path = data + "/" + databases[n], out = dir.file(std::to_string(n) + ".glb");
        SCOPED_TRACE(path);
        const unsigned quiet = QETZFLT_LOG_NONE | QETZFLT_NO_STANDARD_OUTPUT | QETZFLT_NO_ECHO;
        ASSERT_EQ(qetzfltWriteGltf(path.c_str(), out.c_str(), quiet), 0);
        const GltfReadBack glb(out);
        ASSERT_TRUE(glb.loaded) << glb.error;
        EXPECT_EQ(glb.triangles, asAuthoredTriangles(path));
        if (validator.available()) {
            const GltfValidator::Report report = validator.validate(out);
            EXPECT_EQ(report.errors, 0) << report.text;
        }
    }
    EXPECT_FALSE(databases.empty());
}
