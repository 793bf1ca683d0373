// qetzflt as a user runs it: usage and exit status of every subcommand, and the output of
// convert, info, deps and stats on good, missing and damaged databases.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "FltFixture.h"
#include "TestSupport.h"
#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

// A small textured database: a group holding one object of two faces, the second textured
// with tex/a.rgb.
std::string smallDatabase(uint8_t units = 0, int32_t flags = 0)
{
    FltFixture db;
    db.header(1570, units, flags, 0, "small");
    db.texturePattern(0, "tex/a.rgb");
    db.vertexPalette();
    FltVertexSpec s;
    auto v = [&](double x, double y, double z) {
        s.x = x, s.y = y, s.z = z;
        return db.vertexColorNormalUv(s);
    };
    const int a = v(0, 0, 0), b = v(4, 0, 0), c = v(4, 2, 0), d = v(0, 2, 1);
    FltFaceSpec textured;
    textured.texturePatternIndex = 0;
    db.push().group("g1").push().object("o1").push();
    db.face().push().vertexList({a, b, c}).pop();
    db.face(textured).push().vertexList({a, c, d}).pop();
    db.pop().pop().pop();
    return db.bytes();
}

// A header, then a record whose declared length runs past the end of the file.
std::string truncatedDatabase()
{
    FltFixture db;
    db.header(1570).push().group("g1");
    db.raw(FltRecordBytes(2, 44).declaredLength(400).bytes());
    return db.bytes();
}

const std::string kNotOpenFlight = "this is not an OpenFlight database, just text.";

class ToolTest : public ::testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes)
    {
        const std::string path = dir.file(name);
        fs::create_directories(fs::path(path).parent_path());
        writeFile(path, bytes);
        return path;
    }
    ScratchDir dir;
};

}  // namespace

TEST(ToolUsageTest, noCommand_printsUsageAndExitsWithUsageStatus)
{
    const RunResult r = runTool({});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(contains(r.err, "usage: qetzflt <command>"));
    EXPECT_TRUE(r.out.empty());
}

TEST(ToolUsageTest, mainHelp_listsEveryCommandOnStandardOutput)
{
    const RunResult r = runTool({"--help"});
    EXPECT_EQ(r.status, 0);
    for (const char* command : {"convert", "info", "deps", "stats", "render"}) EXPECT_TRUE(contains(r.out, command));
}

TEST(ToolUsageTest, unknownCommand_exitsWithUsageStatus)
{
    const RunResult r = runTool({"explode", "x.flt"});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(contains(r.err, "unknown command explode"));
}

TEST(ToolUsageTest, everySubcommandHasHelp)
{
    for (const char* command : {"convert", "info", "deps", "stats", "render"}) {
        const RunResult r = runTool({command, "--help"});
        EXPECT_EQ(r.status, 0) << command;
        EXPECT_TRUE(contains(r.out, std::string("usage: qetzflt ") + command)) << command;
        EXPECT_TRUE(r.err.empty()) << command;
    }
}

TEST(ToolUsageTest, badArguments_exitWithUsageStatusAndSayWhy)
{
    struct Case {
        std::vector<std::string> args;
        const char* message;
    };
    const Case cases[] = {
        {{"convert"}, "expects one input file"},
        {{"convert", "a.flt", "b.flt"}, "expects one input file"},
        {{"convert", "a.flt", "--fast"}, "unknown option --fast"},
        {{"convert", "a.flt", "-o"}, "option -o needs a value"},
        {{"convert", "a.flt", "--binary", "--vrml2"}, "exclude each other"},
        {{"info"}, "expects one input file"},
        {{"deps", "a.flt", "--tree"}, "unknown option --tree"},
        {{"stats", "a.flt", "b.flt"}, "expects one input file"},
        {{"render", "a.flt"}, "needs -o OUT.png"},
        {{"render", "a.flt", "-o", "a.png", "--size", "800"}, "--size takes"},
        {{"render", "a.flt", "-o", "a.png", "--size", "8x8"}, "--size takes"},
        {{"render", "a.flt", "-o", "a.png", "--view", "side"}, "--view is iso, top or front"},
    };
    for (const Case& c : cases) {
        const RunResult r = runTool(c.args);
        EXPECT_EQ(r.status, 2) << c.args[0] << " " << c.message;
        EXPECT_TRUE(contains(r.err, c.message)) << r.err;
    }
}

TEST_F(ToolTest, convert_writesAsciiInventorNextToTheInputAndTheLog)
{
    const std::string input = write("db.flt", smallDatabase());
    const RunResult r = runTool({"convert", input});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "wrote " + dir.file("db.iv")));
    const std::string written = readFile(dir.file("db.iv"));
    EXPECT_EQ(written.rfind("#Inventor V2.1 ascii", 0), 0u);
    EXPECT_TRUE(contains(written, "DEF root Separator"));
    EXPECT_TRUE(contains(written, "DEF g1 "));
    EXPECT_TRUE(contains(written, "IndexedFaceSet"));
    EXPECT_TRUE(contains(readFile(input + ".log"), "end of parsing"));
}

TEST_F(ToolTest, convert_noLogKeepsTheProgressButNotTheRecordDump)
{
    const std::string input = write("db.flt", smallDatabase());
    ASSERT_EQ(runTool({"convert", input, "--no-log"}).status, 0);
    const std::string quiet = readFile(input + ".log");
    EXPECT_TRUE(contains(quiet, "beginning of parsing\nOpenFlight file version: 1570\n"));
    EXPECT_TRUE(contains(quiet, "end of parsing"));
    EXPECT_FALSE(contains(quiet, "HEADER RECORD"));
    ASSERT_EQ(runTool({"convert", input}).status, 0);
    EXPECT_TRUE(contains(readFile(input + ".log"), "\n HEADER RECORD \n"));
}

TEST_F(ToolTest, convert_binaryYupAndVrml2)
{
    const std::string input = write("db.flt", smallDatabase());
    ASSERT_EQ(runTool({"convert", input, "--binary", "-o", dir.file("b.iv")}).status, 0);
    EXPECT_EQ(readFile(dir.file("b.iv")).rfind("#Inventor V2.1 binary", 0), 0u);

    ASSERT_EQ(runTool({"convert", input, "--yup", "-o", dir.file("y.iv")}).status, 0);
    const std::string yup = readFile(dir.file("y.iv"));
    EXPECT_TRUE(contains(yup, "Rotation {"));
    // A quarter turn about x, so that +z goes to +y.
    EXPECT_TRUE(contains(yup, "rotation -1 -0 -0  1.5707964")) << yup.substr(0, 200);
    EXPECT_LT(yup.find("Rotation {"), yup.find("DEF root"));

    const RunResult vrml = runTool({"convert", input, "--vrml2"});
    ASSERT_EQ(vrml.status, 0) << vrml.err;
    const std::string wrl = readFile(dir.file("db.wrl"));
    EXPECT_EQ(wrl.rfind("#VRML V2.0 utf8", 0), 0u);
    EXPECT_TRUE(contains(wrl, "IndexedFaceSet"));
}

TEST_F(ToolTest, convert_textureNamesResolveFromTheOutputFile)
{
    const std::string input = write("in/db.flt", smallDatabase());
    ASSERT_EQ(runTool({"convert", input, "-o", dir.file("out/deep/db.iv")}).status, 0);
    EXPECT_TRUE(contains(readFile(dir.file("out/deep/db.iv")), "filename \"../../in/tex/a.rgb\""));

    // Written beside the input, the name stays as the database gives it.
    ASSERT_EQ(runTool({"convert", input}).status, 0);
    EXPECT_TRUE(contains(readFile(dir.file("in/db.iv")), "filename \"tex/a.rgb\""));

    // Relative input and output names, from another working directory.
    fs::create_directories(dir.file("work"));
    ASSERT_EQ(runTool({"convert", "../in/db.flt", "-o", "x.iv"}, dir.file("work")).status, 0);
    EXPECT_TRUE(contains(readFile(dir.file("work/x.iv")), "filename \"../in/tex/a.rgb\""));
}

TEST_F(ToolTest, convert_missingAndDamagedInputs)
{
    const RunResult missing = runTool({"convert", dir.file("none.flt")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(contains(missing.err, "none.flt: no such file"));
    EXPECT_FALSE(fs::exists(dir.file("none.iv")));

    const RunResult text = runTool({"convert", write("text.flt", kNotOpenFlight)});
    EXPECT_EQ(text.status, 1);
    EXPECT_TRUE(contains(text.err, "ERROR! Not an Openflight Input !"));
    EXPECT_TRUE(contains(text.err, "not converted"));
    EXPECT_FALSE(fs::exists(dir.file("text.iv")));

    // A truncated database keeps what came before the damage, and says where it stopped.
    const RunResult truncated = runTool({"convert", write("cut.flt", truncatedDatabase())});
    EXPECT_EQ(truncated.status, 0) << truncated.err;
    EXPECT_TRUE(contains(truncated.err, "ERROR")) << truncated.err;
    EXPECT_TRUE(contains(readFile(dir.file("cut.iv")), "DEF g1 "));

    const std::string good = write("db.flt", smallDatabase());
    const RunResult unwritable = runTool({"convert", good, "-o", good + "/x.iv"});
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_TRUE(contains(unwritable.err, "cannot write"));
}

TEST_F(ToolTest, info_reportsHeaderRecordsSceneAndMessages)
{
    const std::string input = write("db.flt", smallDatabase(4, 0x40000000));
    const RunResult r = runTool({"info", input});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "name: small\n"));
    EXPECT_TRUE(contains(r.out, "format revision: 1570\n"));
    EXPECT_TRUE(contains(r.out, "units: feet\n"));
    EXPECT_TRUE(contains(r.out, "packed colour mode: yes\n"));
    EXPECT_TRUE(contains(r.out, "records: 23\n")) << r.out;
    EXPECT_TRUE(contains(r.out, "     2  GROUP RECORD                             1\n")) << r.out;
    EXPECT_TRUE(contains(r.out, "    10  PUSH LEVEL RECORD                        5\n")) << r.out;
    EXPECT_TRUE(contains(r.out, "  faces: 2\n")) << r.out;
    EXPECT_TRUE(contains(r.out, "  triangles: 2\n"));
    EXPECT_TRUE(contains(r.out, "  vertices: 4\n"));
    EXPECT_TRUE(contains(r.out, "  textures: 1\n"));
    EXPECT_TRUE(contains(r.out, "messages: none\n"));
    EXPECT_FALSE(contains(r.out, "tree:"));
    // The library's own progress lines are not the tool's output.
    EXPECT_FALSE(contains(r.out, "Success in opening file"));
}

TEST_F(ToolTest, info_boundingBoxIsInMetres)
{
    const RunResult r = runTool({"info", write("db.flt", smallDatabase(4))});
    ASSERT_EQ(r.status, 0) << r.err;
    // Feet scaled to metres by the root: 4 ft = 1.2192 m.
    EXPECT_TRUE(contains(r.out, "bounding box: (0, 0, 0) to (1.2192, 0.6096, 0.3048)")) << r.out;
}

TEST_F(ToolTest, info_treeShowsTheNamedHierarchy)
{
    const RunResult r = runTool({"info", write("db.flt", smallDatabase()), "--tree"});
    ASSERT_EQ(r.status, 0) << r.err;
    const size_t tree = r.out.find("tree:\n");
    ASSERT_NE(tree, std::string::npos);
    const size_t root = r.out.find("  Separator \"root\"\n", tree);
    const size_t group = r.out.find("    Separator \"g1\"\n", tree);
    const size_t object = r.out.find("      Separator \"o1\"\n", tree);
    EXPECT_NE(root, std::string::npos) << r.out;
    EXPECT_LT(root, group);
    EXPECT_LT(group, object);
    EXPECT_NE(object, std::string::npos) << r.out;
    EXPECT_TRUE(contains(r.out.substr(object), " face\n")) << r.out;
}

TEST_F(ToolTest, info_missingAndDamagedInputs)
{
    const RunResult missing = runTool({"info", dir.file("none.flt")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(contains(missing.err, "no such file"));
    EXPECT_TRUE(missing.out.empty());

    const RunResult text = runTool({"info", write("text.flt", kNotOpenFlight)});
    EXPECT_EQ(text.status, 1);
    EXPECT_TRUE(contains(text.out, "scene: not converted\n"));
    EXPECT_TRUE(contains(text.out, "[level 3] ERROR! Not an Openflight Input !\n")) << text.out;

    const RunResult truncated = runTool({"info", write("cut.flt", truncatedDatabase())});
    EXPECT_EQ(truncated.status, 0);
    EXPECT_TRUE(contains(truncated.out, "messages: 1\n")) << truncated.out;
    EXPECT_TRUE(contains(truncated.out, "[level 3] ERROR")) << truncated.out;
    // The console's echo is held back: the messages are reported once, on standard output.
    EXPECT_FALSE(contains(truncated.err, "Warning Level")) << truncated.err;
}

TEST_F(ToolTest, deps_listsReferencesAndTexturesOfEveryReferencedFile)
{
    FltFixture child;
    child.header(1570, 0, 0, 0, "child").texturePattern(3, "wood.rgb");
    write("parts/child.flt", child.bytes());
    write("parts/wood.rgb", "image");
    write("tex/a.rgb", "image");
    FltFixture top;
    top.header(1570).texturePattern(0, "tex/a.rgb").push().externalReference("./parts/child.flt").pop();
    const RunResult r = runTool({"deps", write("top.flt", top.bytes())});
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    EXPECT_TRUE(contains(r.out, "texture    tex/a.rgb  ->  " + dir.file("tex/a.rgb") + "  found\n")) << r.out;
    EXPECT_TRUE(contains(r.out, "reference  ./parts/child.flt  ->  " + dir.file("parts/child.flt") + "  found\n"));
    EXPECT_TRUE(contains(r.out, "  texture    wood.rgb  ->  " + dir.file("parts/wood.rgb") + "  found\n")) << r.out;
    EXPECT_TRUE(contains(r.out, "all files found\n"));
    // Nothing is written next to the databases.
    EXPECT_FALSE(fs::exists(dir.file("top.flt.log")));
}

TEST_F(ToolTest, deps_missingFilesGiveStatusOne)
{
    FltFixture top;
    top.header(1570).texturePattern(0, "gone.rgb").push().externalReference("sub/gone.flt").pop();
    const RunResult r = runTool({"deps", write("top.flt", top.bytes())});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(contains(r.out, "gone.rgb  ->  " + dir.file("gone.rgb") + "  MISSING\n")) << r.out;
    EXPECT_TRUE(contains(r.out, "sub/gone.flt  ->  " + dir.file("sub/gone.flt") + "  MISSING\n"));
    EXPECT_TRUE(contains(r.err, "2 files are missing"));
}

TEST_F(ToolTest, deps_referenceCycle_listedOnceAndEnds)
{
    FltFixture a, b;
    a.header(1570, 0, 0, 0, "a").push().externalReference("b.flt").pop();
    b.header(1570, 0, 0, 0, "b").push().externalReference("a.flt").pop();
    write("b.flt", b.bytes());
    const RunResult r = runTool({"deps", write("a.flt", a.bytes())});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "  reference  a.flt  ->  " + dir.file("a.flt") + "  found\n    (listed above)\n"))
        << r.out;
}

TEST_F(ToolTest, deps_missingAndDamagedInputs)
{
    EXPECT_EQ(runTool({"deps", dir.file("none.flt")}).status, 1);
    const RunResult text = runTool({"deps", write("text.flt", kNotOpenFlight)});
    EXPECT_EQ(text.status, 1);
    EXPECT_TRUE(contains(text.err, "not an OpenFlight database"));
}

TEST_F(ToolTest, stats_writesTheStatisticsFileAndPrintsIt)
{
    const std::string input = write("db.flt", smallDatabase());
    const RunResult r = runTool({"stats", input});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string stat = readFile(input + ".stat");
    EXPECT_EQ(stat.rfind("#Openflight Statistics File\n\n\n************************\n" + input + "\n", 0), 0u) << stat;
    EXPECT_TRUE(contains(stat, " \n Opcode 2:  1 "));
    EXPECT_TRUE(contains(stat, " \n Opcode 5:  2 "));
    EXPECT_EQ(r.out, stat + "\n");
}

TEST_F(ToolTest, stats_missingAndDamagedInputs)
{
    EXPECT_EQ(runTool({"stats", dir.file("none.flt")}).status, 1);
    const RunResult text = runTool({"stats", write("text.flt", kNotOpenFlight)});
    EXPECT_EQ(text.status, 1);
    EXPECT_TRUE(contains(text.err, "no statistics written"));
}

TEST(ToolSharedDataTest, deps_realNestedReferencesWithTexturesAllResolve)
{
    const std::string data = sharedDataDir();
    if (data.empty()) GTEST_SKIP() << "../shared/data is absent: the real databases cannot be read";
    const std::string deepest = data + "/real/nested_references2/db/1/12/123/1234/1234.flt";
    const RunResult r = runTool({"deps", deepest});
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    for (int level = 1; level <= 4; ++level)
        EXPECT_TRUE(contains(r.out, "t_dig" + std::to_string(level) + ".rgb  found\n")) << r.out;
    const RunResult chain = runTool({"deps", data + "/real/nested_references/master/master.flt"});
    EXPECT_EQ(chain.status, 0) << chain.out;
    EXPECT_TRUE(contains(chain.out, "  reference  ./b.flt  ->  "));
}
