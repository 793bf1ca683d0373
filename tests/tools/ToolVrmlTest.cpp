// qetzflt convert --vrml2: VRML97 files that Coin reads back, with node names that are
// identifiers and the textures as PNG files beside them.
#include <gtest/gtest.h>

#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/VRMLnodes/SoVRMLImageTexture.h>
#include <Inventor/VRMLnodes/SoVRMLIndexedFaceSet.h>
#include <Inventor/fields/SoMFNode.h>
#include <Inventor/fields/SoSFNode.h>
#include <Inventor/lists/SoFieldList.h>
#include <Inventor/misc/SoChildList.h>
#include <Inventor/nodes/SoSeparator.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "ToolRunner.h"
#include "tools/FltFixture.h"

namespace fs = std::filesystem;

namespace {

// A .wrl file read back with Coin: the nodes of a type, each once.
class ReadBack {
public:
    explicit ReadBack(const std::string& path)
    {
        if (!SoDB::isInitialized()) SoDB::init();
        SoInput in;
        if (in.openFile(path.c_str())) root = SoDB::readAll(&in);
        if (root) root->ref();
    }
    ~ReadBack()
    {
        if (root) root->unref();
    }
    ReadBack(const ReadBack&) = delete;
    ReadBack& operator=(const ReadBack&) = delete;

    // Below the root, through groups' children and node fields (a VRML shape's appearance
    // and geometry are no children a path shows).
    template <class Node>
    std::vector<Node*> all() const
    {
        std::vector<Node*> nodes;
        std::set<SoNode*> seen;
        std::vector<SoNode*> pending;
        if (root) pending.push_back(root);
        while (!pending.empty()) {
            SoNode* node = pending.back();
            pending.pop_back();
            if (!node || !seen.insert(node).second) continue;
            if (node->isOfType(Node::getClassTypeId())) nodes.push_back(static_cast<Node*>(node));
            SoFieldList fields;
            node->getFields(fields);
            for (int i = 0; i < fields.getLength(); ++i) {
                if (fields[i]->isOfType(SoSFNode::getClassTypeId())) {
                    pending.push_back(static_cast<SoSFNode*>(fields[i])->getValue());
                } else if (fields[i]->isOfType(SoMFNode::getClassTypeId())) {
                    auto* list = static_cast<SoMFNode*>(fields[i]);
                    for (int k = 0; k < list->getNum(); ++k) pending.push_back((*list)[k]);
                }
            }
            if (SoChildList* children = node->getChildren())
                for (int k = 0; k < children->getLength(); ++k) pending.push_back((*children)[k]);
        }
        return nodes;
    }
    // Every url of every image texture.
    std::vector<std::string> textureUrls() const
    {
        std::vector<std::string> urls;
        for (SoVRMLImageTexture* texture : all<SoVRMLImageTexture>())
            for (int i = 0; i < texture->url.getNum(); ++i) urls.push_back(texture->url[i].getString());
        return urls;
    }

    SoSeparator* root = nullptr;
};

// The names after DEF in a written file.
std::set<std::string> defNames(const std::string& wrl)
{
    std::set<std::string> names;
    for (size_t at = wrl.find("DEF "); at != std::string::npos; at = wrl.find("DEF ", at + 4)) {
        const size_t end = wrl.find_first_of(" \n", at + 4);
        names.insert(wrl.substr(at + 4, end - at - 4));
    }
    return names;
}

}  // namespace

TEST(ToolVrmlTest, demoReadsBackWithItsTexturesAsPngBesideTheFile)
{
    ScratchDir dir;
    const std::string demo = writeDemoDatabase(dir);
    for (const char* classic : {"", "--classic"}) {
        SCOPED_TRACE(*classic ? "classic" : "as authored");
        const std::string out = dir.file(std::string("out") + classic + "/demo.wrl");
        std::vector<std::string> args{"convert", demo, "--vrml2", "--yup", "-o", out};
        if (*classic) args.push_back(classic);
        const RunResult r = runTool(args);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_FALSE(contains(r.err, "left out")) << r.err;

        const std::string wrl = readFile(out);
        for (const std::string& name : defNames(wrl))
            EXPECT_EQ(name.find_first_of("\"#'(),.[\\]{|}"), std::string::npos) << name;
        const ReadBack back(out);
        ASSERT_NE(back.root, nullptr);
        // Every face set written is read: the file was read to its end.
        EXPECT_EQ(back.all<SoVRMLIndexedFaceSet>().size(), occurrences(wrl, "IndexedFaceSet {"));
        EXPECT_GE(back.all<SoVRMLIndexedFaceSet>().size(), 10u);

        std::set<std::string> pngs;
        for (const std::string& url : back.textureUrls()) {
            EXPECT_EQ(fs::path(url).extension(), ".png") << url;
            EXPECT_TRUE(fs::is_regular_file(fs::path(out).parent_path() / url)) << url;
            pngs.insert(url);
        }
        EXPECT_EQ(pngs, (std::set<std::string>{"brick.png", "grass.png", "roof.png", "stripes.png"}));
        PngPicture grass;
        ASSERT_TRUE(readPng(fs::path(out).parent_path() / "grass.png", grass));
        EXPECT_EQ(grass.width, 64);
        EXPECT_GT(grass.at(10, 10)[1], grass.at(10, 10)[0] + 20);  // green
    }
    // The classic scene's switch is named "lamps_(flt_switch)" there: the parentheses go.
    EXPECT_TRUE(contains(readFile(dir.file("out--classic/demo.wrl")), "DEF lamps__flt_switch_ "));
}

TEST(ToolVrmlTest, invalidNamesBecomeDistinctIdentifiersAndAMissingTextureIsLeftOut)
{
    ScratchDir dir;
    FltFixture db;
    db.header().texturePattern(0, "tex/gone.rgb").texturePattern(1, "tex/text.rgb").vertexPalette();
    const int a = db.vertexColor(0, 0, 0), b = db.vertexColor(4, 0, 0), c = db.vertexColor(4, 2, 0);
    FltFaceSpec gone, text;
    gone.texturePatternIndex = 0;
    text.texturePatternIndex = 1;
    db.push();
    for (const char* name : {"a_b", "a(b", "a)b", "9lives", "x+y", "NULL"}) {
        db.group(name).push().object("o").push();
        db.face(gone).push().vertexList({a, b, c}).pop().face(text).push().vertexList({a, c, b}).pop();
        db.pop().pop();
    }
    const std::string input = dir.write("db.flt", db.pop().bytes());
    dir.write("tex/text.rgb", "not an image");

    const RunResult r = runTool({"convert", input, "--vrml2", "--classic"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.err, "qetzflt convert: texture tex/gone.rgb left out of the VRML file: Cannot read the image " +
                                    dir.file("tex/gone.rgb") + ": No such file or directory"))
        << r.err;
    EXPECT_TRUE(contains(r.err, "qetzflt convert: texture tex/text.rgb left out of the VRML file")) << r.err;
    const std::string wrl = readFile(dir.file("db.wrl"));
    EXPECT_FALSE(contains(wrl, ".rgb"));
    const std::set<std::string> names = defNames(wrl);
    for (const char* name : {"a_b", "a_b_2", "a_b_3", "_9lives", "x_y", "NULL_"})
        EXPECT_EQ(names.count(name), 1u) << name << " in " << wrl.substr(0, 400);
    const ReadBack back(dir.file("db.wrl"));
    ASSERT_NE(back.root, nullptr);
    EXPECT_EQ(back.all<SoVRMLIndexedFaceSet>().size(), occurrences(wrl, "IndexedFaceSet {"));
    EXPECT_TRUE(back.textureUrls().empty());
}

// Every database of ../shared/data, in a copy of the folder (the logs go beside the copies),
// as authored and classic: each .wrl reads back whole, with the face sets it holds, and its
// textures name PNG files that exist; the as-authored one draws.
TEST(ToolVrmlSharedDataTest, everyDatabaseReadsBackFromVrml)
{
    ScratchDir copy;
    if (copyOfSharedData(copy).empty())
        GTEST_SKIP() << "../shared/data is absent: the real databases cannot be converted";
    const std::vector<std::string> databases = databasesBelow(copy.path().string());
    ASSERT_FALSE(databases.empty());
    // Databases without a face.
    const std::set<std::string> empty{"real/switch/switch.flt"};
    int withTextures = 0;
    bool display = true;
    for (const std::string& name : databases) {
        for (const char* classic : {"", "--classic"}) {
            SCOPED_TRACE(name + " " + classic);
            const std::string out = copy.file(std::string("out") + classic + "/" + name + ".wrl");
            std::vector<std::string> args{"convert", copy.file(name), "--vrml2", "--no-log", "-o", out};
            if (*classic) args.push_back(classic);
            const RunResult r = runTool(args);
            ASSERT_EQ(r.status, 0) << r.err;
            const std::string wrl = readFile(out);
            const ReadBack back(out);
            ASSERT_NE(back.root, nullptr) << r.err;
            const size_t faceSets = back.all<SoVRMLIndexedFaceSet>().size();
            EXPECT_EQ(faceSets, occurrences(wrl, "IndexedFaceSet {"));
            EXPECT_EQ(faceSets == 0, empty.count(name) == 1) << faceSets << " face sets";
            // And it draws: some of a small picture is model.
            if (!*classic && faceSets > 0 && display) {
                // The OpenGL driver's allocations escape the sanitizer build's leak checker, as
                // in the render tests.
                const RunResult drawn = runTool({"render", out, "-o", out + ".png", "--size", "80x60"}, "",
                                                {{"ASAN_OPTIONS", "detect_leaks=0"}});
                display = !failedForWantOfDisplay(drawn);
                PngPicture picture;
                if (display) {
                    ASSERT_TRUE(drawn.status == 0 && readPng(out + ".png", picture)) << drawn.err;
                    EXPECT_GT(modelPixels(picture), 0) << "nothing drawn";
                }
            }
            const std::vector<std::string> urls = back.textureUrls();
            withTextures += urls.empty() ? 0 : 1;
            for (const std::string& url : urls) {
                EXPECT_EQ(fs::path(url).extension(), ".png") << url;
                EXPECT_TRUE(fs::is_regular_file(fs::path(out).parent_path() / url)) << url;
            }
        }
    }
    EXPECT_GT(withTextures, 10);
    if (!display) std::cout << "[ NOTE ] no X server or OpenGL: the VRML files were read back but not drawn\n";
}
