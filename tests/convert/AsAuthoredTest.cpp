// The as-authored conversion: the look of faces by their fields, then fixtures walked into
// scenes (meshes, matrices after faces, padded records, mesh primitives, switches, levels of
// detail, instances, deep hierarchies), textures and references found beside the database,
// and every public real database drawn.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoTexture2.h>

#include <algorithm>
#include <filesystem>

#include "ConvertSupport.h"
#include "convert/FltAuthoredBuilder.h"
#include "convert/FltAuthoredLook.h"
#include "reader/FltOpcode.h"
#include "reader/FltRecordFace.h"

namespace {

constexpr int32_t kHidden = 0x04000000;

FltConversionOptions asAuthored()
{
    FltConversionOptions options;
    options.builder = FltConversionOptions::Builder::AsAuthored;
    return options;
}

// One triangle, or a square, of colour-only vertices at z = 0, faces as given.
struct Geometry {
    explicit Geometry(FltFixture& db) : db(db)
    {
        db.vertexPalette();
        FltVertexSpec s;
        s.flags = 0x1000;  // packed red: drawn only by the vertex colour modes
        s.packed[0] = 255, s.packed[3] = 255;
        const double corners[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        for (const auto& c : corners) {
            s.x = c[0], s.y = c[1];
            v.push_back(db.vertexColor(s));
        }
    }
    FltFixture& triangle(const FltFaceSpec& face) { return db.face(face).push().vertexList({v[0], v[1], v[2]}).pop(); }
    FltFixture& db;
    std::vector<int32_t> v;
};

// The scene of a held conversion, which then ends, so that its messages can be read.
std::shared_ptr<FltScene> sceneOf(HeldConversion& held)
{
    std::shared_ptr<FltScene> scene = held.builder<FltAuthoredBuilder>().walk();
    held.end();
    return scene;
}

const std::vector<FltWarningMessage>& messagesOfTheRun() { return FltWarningMessageConsole::getLastConversionMessages(); }

}  // namespace

TEST(AsAuthored, theLookFollowsLightModeColourMaterialTransparencyAndDrawType)
{
    struct Case {
        const char* what;
        FltFaceSpec face;
        uint16_t object;
        std::string flags;  // as flagsOf spells them
        float rgba[4];
        float diffuse0;  // the appearance's diffuse factor, red
    };
    auto flagsOf = [](const FltAuthoredLook& look) {
        return std::string(look.appearance.lit ? "lit " : "") + (look.appearance.vertexColors ? "vertex " : "") +
               (look.appearance.twoSided ? "two-sided " : "") + (look.hidden ? "hidden" : "");
    };
    auto face = [](uint8_t lightMode, int32_t index, int16_t material = -1) {
        FltFaceSpec f;
        f.lightMode = lightMode;
        f.primaryColorIndex = index;
        f.materialIndex = material;
        return f;
    };
    const int32_t entry5 = 5 * 128 + 127;
    FltFaceSpec packed = face(2, -1), noColor = face(2, entry5, 2), hidden = face(0, 0), white = face(0, 0);
    packed.flags = kPackedColor, packed.packed[0] = 0, packed.packed[1] = 64, packed.packed[3] = 255;
    noColor.flags = kNoColor;
    hidden.flags = kHidden;
    white.texturePatternIndex = 3, white.textureWhite = 1;
    FltFaceSpec clear = face(2, entry5, 2), twoSided = face(0, entry5);
    clear.transparency = 32768;
    twoSided.drawType = 1;
    const float p = 63.0f / 127, t = 1 - 32768 / 65535.0f;
    const Case cases[] = {
        {"flat: the entry at full intensity, unlit", face(0, entry5), 0, "", {0.4f, 0.6f, 1, 1}, 1},
        {"intensity from the low seven bits", face(0, 5 * 128 + 63), 0, "", {0.4f * p, 0.6f * p, p, 1}, 1},
        {"Gouraud: the vertices' colours, unlit", face(1, entry5), 0, "vertex ", {0.4f, 0.6f, 1, 1}, 1},
        {"lit with a material: the colour modulates it", face(2, entry5, 2), 0, "lit ", {0.4f, 0.6f, 1, 0.25f}, 0.5f},
        {"lit Gouraud", face(3, entry5, 2), 0, "lit vertex ", {0.4f, 0.6f, 1, 0.25f}, 0.5f},
        {"unlit with a material: its colour as it is, its opacity kept", face(0, entry5, 2), 0, "",
         {0.4f, 0.6f, 1, 0.25f}, 1},
        {"packed: the alpha byte is not opacity", packed, 0, "lit ", {1, 0, 64 / 255.0f, 1}, 1},
        {"no colour: white under the material", noColor, 0, "lit ", {1, 1, 1, 0.25f}, 0.5f},
        {"texture white", white, 0, "", {1, 1, 1, 1}, 1},
        {"hidden", hidden, 0, "hidden", {}, 0},
        {"face, material and object opacities together", clear, 32768, "lit ", {0.4f, 0.6f, 1, t * 0.25f * t}, 0.5f},
        {"draw type 1: two-sided", twoSided, 0, "two-sided ", {0.4f, 0.6f, 1, 1}, 1},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.what);
        FltFixture db = colourPalettes();
        ParsedPalettes parsed(db.face(k.face));
        const auto& record = parsed.nth<FltRecordFace>(FltOpcode::Face);
        const FltAuthoredLook look = fltAuthoredLook(FltDrawFields::of(record), parsed.palettes, 1570, k.object);
        EXPECT_EQ(flagsOf(look), k.flags);
        if (look.hidden) continue;
        const float actual[4] = {look.color.r, look.color.g, look.color.b, look.color.a};
        for (int i = 0; i < 4; ++i) EXPECT_NEAR(actual[i], k.rgba[i], 1e-5) << "component " << i;
        EXPECT_NEAR(look.appearance.diffuse[0], k.diffuse0, 1e-5);
    }
}

TEST(AsAuthored, facesBecomeMeshesByAppearanceMovedByTheMatricesAfterThemCulledOrTwoSided)
{
    // Padded push and pop records (one writer pads every record to 8 bytes) pass quietly.
    // Draw type 0 culls back faces, draw type 1 draws both sides as they are.
    FltFixture db = colourPalettes();
    Geometry g(db);
    const auto push8 = [&] { db.add(FltRecordBytes(10, 8)); };
    const auto pop8 = [&] { db.add(FltRecordBytes(11, 8)); };
    push8();
    db.object("o", 0);
    push8();
    FltFaceSpec flat, gouraud, twoSided;
    flat.primaryColorIndex = 5 * 128 + 127;
    gouraud.lightMode = 1;
    twoSided.drawType = 1;
    g.triangle(flat);
    db.face(flat).translationMatrix(10, 0, 0).push().vertexList({g.v[0], g.v[2], g.v[3]}).pop();
    g.triangle(gouraud);
    g.triangle(twoSided);
    pop8();
    pop8();
    HeldConversion held(db, asAuthored());
    std::vector<std::pair<int, int>> hints;
    for (SoShapeHints* h : findAll<SoShapeHints>(held.root))
        hints.emplace_back(h->vertexOrdering.getValue(), h->shapeType.getValue());
    const std::pair<int, int> culled{SoShapeHints::COUNTERCLOCKWISE, SoShapeHints::SOLID};
    EXPECT_EQ(hints, (std::vector<std::pair<int, int>>{
                         culled, culled, {SoShapeHints::UNKNOWN_ORDERING, SoShapeHints::UNKNOWN_SHAPE_TYPE}}));
    const auto scene = sceneOf(held);
    EXPECT_TRUE(messagesOfTheRun().empty());
    ASSERT_EQ(scene->meshes.size(), 3u);  // flat faces together, the Gouraud and two-sided ones apart
    const FltSceneMesh& faces = scene->meshes[0];
    EXPECT_EQ(faces.polygonSizes, (std::vector<uint32_t>{3, 3}));
    EXPECT_EQ(faces.colors.size(), 8u);  // a colour per polygon
    // Vertices 0 and 2 are shared within a transform; the moved face has its own.
    EXPECT_EQ(faces.vertexCount(), 6u);
    EXPECT_FLOAT_EQ(faces.positions[3 * 3], 10.0f);
    const FltSceneMesh& vertexColoured = scene->meshes[1];
    ASSERT_EQ(vertexColoured.colors.size(), 12u);  // a colour per vertex: the vertices' red
    EXPECT_FLOAT_EQ(vertexColoured.colors[0], 1.0f);
    EXPECT_FLOAT_EQ(vertexColoured.colors[1], 0.0f);
}

TEST(AsAuthored, meshPrimitivesBecomePolygons)
{
    FltFixture db = colourPalettes();
    FltFaceSpec spec;
    spec.lightMode = 2;
    spec.primaryColorIndex = 5 * 128 + 127;
    std::vector<std::vector<double>> points;
    for (int i = 0; i < 7; ++i) points.push_back({double(i % 2), double(i / 2), 0});
    db.push().mesh(spec, points,
                   {{1, {0, 1, 2, 3, 4}}, {2, {0, 1, 2, 3, 4}}, {3, {0, 1, 2, 3, 4, 5}}, {4, {0, 1, 3, 2, 4}},
                    {2, {0, 1, 9}}});  // the last names a vertex the pool does not hold
    HeldConversion held(db.pop(), asAuthored());
    const auto scene = sceneOf(held);
    ASSERT_EQ(scene->meshes.size(), 1u);
    EXPECT_EQ(scene->meshes[0].polygonSizes, (std::vector<uint32_t>{3, 3, 3, 3, 3, 3, 4, 4, 5}));
    // A strip keeps one winding: its second triangle is (2, 1, 3).
    EXPECT_EQ(std::vector<uint32_t>(scene->meshes[0].indices.begin() + 3, scene->meshes[0].indices.begin() + 6),
              (std::vector<uint32_t>{2, 1, 3}));
    EXPECT_EQ(messagesOfTheRun().size(), 1u);
}

TEST(AsAuthored, switchMasksLevelsOfDetailAndInstances)
{
    FltFixture db = colourPalettes();
    Geometry g(db);
    FltFaceSpec flat;
    db.push().switchNode("s", 0, 1, {0x5}).push();
    for (int i = 0; i < 3; ++i) g.triangle(flat);
    db.pop().lod("l", 500, 20, 1, 2, 3).push();
    g.triangle(flat);
    db.pop().instanceDefinition(7).push().group("shared").push();
    g.triangle(flat);
    db.pop().pop().group("a").push().instanceReference(7).pop().group("b").push().instanceReference(7).pop();
    db.instanceDefinition(8).push().instanceReference(8).pop();  // inside itself: refused
    HeldConversion held(db.pop(), asAuthored());
    const auto scene = sceneOf(held);
    const FltSceneNode& root = scene->nodes[0];
    ASSERT_EQ(root.children.size(), 4u);
    const FltSceneNode& sw = scene->nodes[root.children[0]];
    EXPECT_EQ(sw.kind, FltSceneNode::Kind::Switch);
    ASSERT_EQ(sw.children.size(), 3u);  // each face a child of its own
    EXPECT_EQ(std::vector<bool>(sw.childOn.begin(), sw.childOn.begin() + 3), (std::vector<bool>{true, false, true}));
    const FltSceneNode& lod = scene->nodes[root.children[1]];
    EXPECT_EQ(lod.kind, FltSceneNode::Kind::LevelOfDetail);
    EXPECT_EQ(lod.lodNear, 20.0f);
    EXPECT_EQ(lod.lodFar, 500.0f);
    EXPECT_EQ(lod.lodCenter[2], 3.0f);
    const int a = root.children[2], b = root.children[3];
    ASSERT_EQ(scene->nodes[a].children.size(), 1u);
    EXPECT_EQ(scene->nodes[a].children, scene->nodes[b].children);  // one definition, shown twice
    const auto& messages = messagesOfTheRun();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_NE(messages[0].message.find(") stands inside its own definition"), std::string::npos);
    EXPECT_EQ(messages[0].message.rfind("WARNING ! Instance reference 8 (byte offset ", 0), 0u);
}

TEST(AsAuthored, hierarchiesDeeperThanTheLimitAreDrawnAtItWithOneMessage)
{
    FltFixture db = colourPalettes();
    Geometry g(db);
    db.push();
    for (int i = 0; i < 700; ++i) db.group("d").push();
    g.triangle(FltFaceSpec());
    for (int i = 0; i < 700; ++i) db.pop();
    HeldConversion held(db.pop(), asAuthored());
    const auto scene = sceneOf(held);
    ASSERT_EQ(scene->meshes.size(), 1u);
    EXPECT_EQ(scene->meshes[0].polygonSizes.size(), 1u);
    int depth = 0;
    for (int node = 0; !scene->nodes[node].children.empty(); node = scene->nodes[node].children[0]) ++depth;
    EXPECT_LE(depth, FltAuthoredBuilder::kMaxDepth);
    EXPECT_EQ(messagesOfTheRun().size(), 1u);
}

TEST(AsAuthored, texturesAndReferencesAreFoundBesideTheDatabaseThatNamesThem)
{
    ScratchDir dir;
    namespace fs = std::filesystem;
    fs::create_directories(dir.path() / "parts" / "maps");
    writeFile(dir.file("parts/maps/wood.rgb"), "image");
    writeFile(dir.file("parts/brick.rgb"), "image");
    // The part names its textures relative to itself, by an authoring machine's absolute
    // path whose last part lies beside it, and by a name found nowhere (twice: one message).
    FltFixture part = colourPalettes();
    part.texturePattern(0, "maps/wood.rgb").texturePattern(1, "C:/Work/brick.rgb").texturePattern(2, "gone.rgb");
    Geometry g(part);
    part.push();
    for (int16_t pattern : {0, 1, 2, 2}) {
        FltFaceSpec face;
        face.texturePatternIndex = pattern;
        g.triangle(face);
    }
    part.pop().save(dir.file("parts/part.flt"));
    FltFixture top = colourPalettes();
    top.push().externalReference("parts/part.flt").pop().save(dir.file("top.flt"));

    AuthoredFile converted(dir.file("top.flt"));
    ASSERT_NE(converted.root, nullptr);
    std::vector<std::string> files;
    for (SoTexture2* texture : findAll<SoTexture2>(converted.root)) files.push_back(texture->filename.getValue().getString());
    std::sort(files.begin(), files.end());
    files.erase(std::unique(files.begin(), files.end()), files.end());
    EXPECT_EQ(files, (std::vector<std::string>{dir.file("parts/brick.rgb"), dir.file("parts/maps/wood.rgb")}));
    EXPECT_EQ(facesInFaceSets(converted.root), 4);
    ASSERT_EQ(converted.messages.size(), 1u);
    EXPECT_NE(converted.messages[0].find("Texture pattern 2 names gone.rgb"), std::string::npos);
    EXPECT_EQ(converted.levels[0], 2);
}

TEST(RealDatabases, everyPublicDatabaseDrawsItsFacesAsAuthored)
{
    const std::string data = sharedDataDir();
    if (data.empty()) GTEST_SKIP() << "../shared/data is absent: the real databases are not in this checkout";
    const std::vector<std::string> databases = databasesBelow(data + "/public");
    for (const std::string& name : databases) {
        const std::string path = data + "/public/" + name;
        SCOPED_TRACE(path);
        // Read where it lies, so that textures resolve; without a log, nothing is written.
        AuthoredFile converted(path);
        ASSERT_NE(converted.root, nullptr);
        EXPECT_EQ(converted.root->getRefCount(), 1);
        // One file ends with a stray byte, which the parse reports; nothing else is an error.
        for (size_t i = 0; i < converted.levels.size(); ++i) {
            if (converted.messages[i].find("too few for a record header") == std::string::npos) {
                EXPECT_LT(converted.levels[i], 3) << converted.messages[i];
            }
        }
        const int faces = ParsedPalettes(readFile(path)).count(FltOpcode::Face);
        // Every face is drawn, but those whose vertex lists name no vertex (one file has such).
        EXPECT_GE(facesInFaceSets(converted.root), faces * 9 / 10);
    }
    EXPECT_EQ(databases.size(), 26u);
}
