// qetzflt as a user runs it: usage and exit status of every subcommand, and the output of
// convert, info, deps and stats on good, missing and damaged databases.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "tools/FltFixture.h"
#include "TestSupport.h"
#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

// In feet and packed colour mode, a group holding one object of two faces over four
// vertices, the second face textured with tex/a.rgb.
std::string smallDatabase()
{
    FltFixture db;
    db.header(1570, 4, 0x40000000, 0, "small").texturePattern(0, "tex/a.rgb").vertexPalette();
    const int a = db.vertexColor(0, 0, 0), b = db.vertexColor(4, 0, 0), c = db.vertexColor(4, 2, 0),
              d = db.vertexColor(0, 2, 1);
    FltFaceSpec textured;
    textured.texturePatternIndex = 0;
    db.push().group("g1").push().object("o1").push();
    db.face().push().vertexList({a, b, c}).pop().face(textured).push().vertexList({a, c, d}).pop();
    return db.pop().pop().pop().bytes();
}

class ToolTest : public ::testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes) { return dir.write(name, bytes); }
    ScratchDir dir;
};

}  // namespace

TEST(ToolUsageTest, helpOnStandardOutput_badUsageExitsTwoAndSaysWhy)
{
    ScratchDir demoDir;
    for (const char* option : {"--help", "--bogus"}) {
        const RunResult demo = runProgram(QETZFLT_DEMO_PATH, {option}, {}, demoDir.path().string());
        EXPECT_EQ(demo.status, option == std::string("--help") ? 0 : 2);
        EXPECT_TRUE(contains(demo.out + demo.err, "usage: qetzflt-demo OUT.flt"));
        EXPECT_FALSE(fs::exists(demoDir.file(option))) << option;  // never a database of that name
    }
    const RunResult help = runTool({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option : {"--classic", "--log", "--log-dir DIR", "--no-log", "--version", "--jobs N", "--strict"})
        EXPECT_TRUE(contains(help.out, option)) << option;
    const RunResult version = runTool({"--version"});
    EXPECT_TRUE(contains(version.out, "Skerrymoor 8.6.3, ") && contains(version.out, "Coin ")) << version.out;
    for (const char* command : {"convert", "info", "deps", "stats", "render"}) {
        EXPECT_TRUE(contains(help.out, std::string("  ") + command + " IN.flt")) << command;
        const RunResult r = runTool({command, "--help"});
        EXPECT_EQ(r.status, 0) << command;
        EXPECT_TRUE(contains(r.out, std::string("usage: qetzflt ") + command)) << command;
        EXPECT_TRUE(r.err.empty()) << command;
    }
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "usage: qetzflt <command>"},
        {{"explode", "x.flt"}, "unknown command explode"},
        {{"convert"}, "expects an input file"},
        {{"convert", "a.flt", "b.flt"}, "a batch needs -o DIR"},
        {{"convert", "a.flt", "b.flt", "-o", "out", "--jobs", "0"}, "--jobs takes a number"},
        {{"convert", "a.flt", "b.flt", "-o", "out", "--format", "obj"}, "--format is iv, ivb, wrl or glb"},
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
    for (const auto& [args, message] : cases) {
        const RunResult r = runTool(args);
        EXPECT_EQ(r.status, 2) << message;
        EXPECT_TRUE(contains(r.err, message)) << r.err;
        EXPECT_TRUE(r.out.empty()) << message;
    }
}

TEST_F(ToolTest, missingNonOpenFlightAndUnwritableFiles_exitOneWithoutOutputFiles)
{
    const std::string none = dir.file("none.flt"), text = write("text.flt", "not an OpenFlight database, just text.");
    const std::string good = write("db.flt", smallDatabase());
    const std::string badIv = write("bad.iv", "#Inventor V2.1 ascii\nSeparator { Cube { width } \n");
    fs::create_directory(dir.file("taken.iv"));
    struct Case {
        std::vector<std::string> args;
        std::string err;
    };
    const Case cases[] = {
        {{"convert", text, "--log"}, "text.flt: not an OpenFlight database\n"},
        {{"convert", none}, "none.flt: no such file"},
        {{"info", none}, "none.flt: no such file"},
        {{"deps", none}, "none.flt: no such file"},
        {{"stats", none}, "none.flt: no such file"},
        {{"render", none, "-o", dir.file("none.png")}, "none.flt: no such file"},
        {{"convert", text}, "text.flt: not an OpenFlight database\n"},
        {{"convert", text, "-o", dir.file("text.glb")}, "text.flt: not an OpenFlight database\n"},
        {{"info", text}, "text.flt: not an OpenFlight database\n"},
        {{"convert", dir.path().string()}, "a batch needs -o DIR"},
        {{"info", dir.path().string()}, ": is a directory\n"},
        {{"deps", text}, "text.flt: not an OpenFlight database"},
        {{"stats", text}, "not an OpenFlight database, no statistics written"},
        {{"render", text, "-o", dir.file("text.png")}, "text.flt: not an OpenFlight database"},
        {{"render", badIv, "-o", dir.file("bad.png")}, "bad.iv: not a readable Inventor file"},
        {{"convert", good, "-o", good + "/x.iv"}, "cannot write " + good + "/x.iv: Not a directory"},
        {{"convert", good, "-o", dir.file("taken.iv")}, "cannot write " + dir.file("taken.iv") + ": Is a directory"},
    };
    for (const Case& c : cases) {
        const RunResult r = runTool(c.args);
        EXPECT_EQ(r.status, c.err == "a batch needs -o DIR" ? 2 : 1) << c.args[0] << " " << c.args[1];
        EXPECT_TRUE(contains(r.err, c.err)) << r.err;
        // Each fault said once by the tool ("qetzflt: ...", "qetzflt convert: ..."), with its reason.
        EXPECT_EQ(linesStartingWith(r.err, "qetzflt"), 1u) << r.err;
        EXPECT_EQ(r.out, "") << c.args[0] << " " << c.args[1];
    }
    for (const char* file : {"none.iv", "text.iv", "text.flt.stat", "none.png", "text.png", "bad.png", "text.flt.log"})
        EXPECT_FALSE(fs::exists(dir.file(file))) << file;
    // Outputs are written whole under a temporary name, then renamed: none is left behind,
    // and an output name that is a link is replaced, its target untouched.
    for (const auto& entry : fs::directory_iterator(dir.path()))
        EXPECT_EQ(entry.path().filename().string().find("taken.iv."), std::string::npos) << entry.path();
    const std::string mine = write("mine.txt", "the user's own");
    fs::create_symlink(mine, dir.file("linked.iv"));
    EXPECT_EQ(runTool({"convert", good, "-o", dir.file("linked.iv")}).status, 0);
    EXPECT_EQ(readFile(mine), "the user's own");
    EXPECT_FALSE(fs::is_symlink(dir.file("linked.iv")));

    // What the file system refuses ends every command with its reason, never an abort; a
    // statistics file that cannot be written is told apart from a file that is no database.
    fs::create_symlink("loop.flt", dir.file("loop.flt"));
    fs::create_directory(good + ".stat");
    const std::string longName = dir.file(std::string(300, 'a') + ".flt");
    for (const std::string command : {"convert", "info", "deps", "stats", "render"})
        for (const auto& [input, reason] : {std::pair<std::string, std::string>{dir.file("loop.flt"), "symbolic links"},
                                            {longName, "File name too long"}}) {
            std::vector<std::string> args{command, input};
            if (command == "render") args.insert(args.end(), {"-o", dir.file("x.png")});
            const RunResult r = runTool(args);
            EXPECT_EQ(r.status, 1) << command << " " << reason;
            EXPECT_TRUE(contains(r.err, reason)) << r.err;
        }
    // A file that begins as a database but is refused: the library's reason, in one line.
    const std::string old = write("old.flt", std::string("\0\1\0\4", 4));
    for (const std::string output : {"old.iv", "old.glb"}) {
        const RunResult refused = runTool({"convert", old, "-o", dir.file(output)});
        EXPECT_EQ(refused.status, 1);
        EXPECT_TRUE(contains(refused.err, "old.flt not converted: ERROR ! Openflight Format Revision not supported !\n") ||
                    contains(refused.err, "old.flt: not converted: ERROR ! Openflight Format Revision not supported !\n"))
            << refused.err;
        EXPECT_EQ(std::count(refused.err.begin(), refused.err.end(), '\n'), 1) << refused.err;
    }
    const RunResult stats = runTool({"stats", good});
    EXPECT_EQ(stats.status, 1);
    EXPECT_TRUE(contains(stats.err, "db.flt.stat not written: WARNING ! The statistics file")) << stats.err;
}

TEST_F(ToolTest, truncatedDatabase_keepsWhatCameBeforeTheDamageAndSaysSo)
{
    FltFixture db;
    db.header(1570).push().group("g1").add(FltRecordBytes(2, 44).declaredLength(400));
    const std::string input = write("cut.flt", db.bytes());
    for (const char* mode : {"--no-log", "--classic"}) {
        const RunResult converted = runTool({"convert", input, mode});
        EXPECT_EQ(converted.status, 0) << converted.err;
        EXPECT_TRUE(contains(converted.err, "ERROR")) << converted.err;
    }
    // --strict fails it, written all the same.
    const RunResult strict = runTool({"convert", input, "--strict", "-o", dir.file("strict.glb")});
    EXPECT_EQ(strict.status, 1);
    EXPECT_TRUE(contains(strict.err, "cut.flt: the conversion reported an error (--strict)")) << strict.err;
    // The empty group stands in the classic scene, written last; as authored it draws nothing.
    EXPECT_TRUE(contains(readFile(dir.file("cut.iv")), "DEF g1 "));

    const RunResult info = runTool({"info", input});
    EXPECT_EQ(info.status, 0);
    EXPECT_TRUE(contains(info.out, "messages: 1\n  [level 3] ERROR")) << info.out;
    // The console's echo is held back: the messages are reported once, on standard output.
    EXPECT_FALSE(contains(info.err, "Warning Level")) << info.err;
}

TEST_F(ToolTest, convert_writesInventorOrVrmlAndTheLogOnlyWhenAsked)
{
    const std::string input = write("db.flt", smallDatabase());
    const RunResult r = runTool({"convert", input});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "wrote " + dir.file("db.iv")));
    const std::string ascii = readFile(dir.file("db.iv"));
    EXPECT_EQ(ascii.rfind("#Inventor V2.1 ascii", 0), 0u);
    for (const char* part : {"DEF root Separator", "DEF g1 ", "IndexedFaceSet"}) EXPECT_TRUE(contains(ascii, part));
    EXPECT_FALSE(fs::exists(input + ".log"));

    ASSERT_EQ(runTool({"convert", input, "--log", "--binary", "-o", dir.file("b.iv")}).status, 0);
    EXPECT_EQ(readFile(dir.file("b.iv")).rfind("#Inventor V2.1 binary", 0), 0u);
    EXPECT_TRUE(contains(readFile(input + ".log"), "\n HEADER RECORD \n"));
    fs::remove(input + ".log");
    for (const char* output : {"l.iv", "l.glb"}) {
        ASSERT_EQ(runTool({"convert", input, "--log-dir", dir.file("logs"), "-o", dir.file(output)}).status, 0) << output;
        EXPECT_TRUE(contains(readFile(dir.file("logs/db.flt.log")), "HEADER RECORD")) << output;
        EXPECT_FALSE(fs::exists(input + ".log")) << output;
        fs::remove(dir.file("logs/db.flt.log"));
    }
    ASSERT_EQ(runTool({"info", input, "--no-log"}).status, 0);
    EXPECT_FALSE(fs::exists(input + ".log"));

    ASSERT_EQ(runTool({"convert", input, "--yup", "-o", dir.file("y.iv")}).status, 0);
    const std::string yup = readFile(dir.file("y.iv"));
    // A quarter turn about x in front of the root, so that +z goes to +y.
    EXPECT_TRUE(contains(yup, "rotation -1 -0 -0  1.5707964")) << yup.substr(0, 200);
    EXPECT_LT(yup.find("Rotation {"), yup.find("DEF root"));
    // VRML (db.wrl beside the input without -o): ToolVrmlTest.
}

TEST_F(ToolTest, convert_drawsAProgressBarOnATerminalOnlyOnceTheConversionHasRunAWhile)
{
    const std::string input = write("db.flt", smallDatabase());
    const std::string cleared = "\r\033[K", bar = cleared + "converting [";
    const struct {
        bool terminal;
        const char* delay;  // seconds before the bar shows; "" for the tool's own
        const char* output;
        bool drawn;
    } cases[] = {
        {true, "0", "db.iv", true},
        {true, "0", "db.glb", true},
        {true, "", "db.iv", false},  // a small database is converted before the bar would show
        {false, "0", "db.iv", false},
    };
    for (const auto& k : cases) {
        const std::vector<std::string> args{"convert", input, "-o", dir.file(k.output)};
        const Environment env{{"QETZFLT_PROGRESS_DELAY", k.delay}};
        const RunResult r = k.terminal ? runToolOnTerminal(args, env) : runTool(args, "", env);
        EXPECT_EQ(r.status, 0) << k.output;
        EXPECT_EQ(contains(r.err, bar), k.drawn) << k.terminal << k.delay << k.output;
        // The line is cleared at the end: the messages (the missing texture's) begin on it.
        if (k.drawn) {
            EXPECT_TRUE(contains(r.err, cleared + "WARNING !")) << k.output;
        }
    }
}

TEST_F(ToolTest, convert_textureNamesResolveFromTheOutputFile)
{
    const std::string input = write("in/db.flt", smallDatabase());
    write("in/tex/a.rgb", "image");
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

TEST_F(ToolTest, info_reportsHeaderRecordsSceneAndTree)
{
    const std::string input = write("db.flt", smallDatabase());
    write("tex/a.rgb", "image");
    const RunResult r = runTool({"info", input});
    ASSERT_EQ(r.status, 0) << r.err;
    for (const char* line : {"name: small\n", "format revision: 1570\n", "units: feet\n", "packed colour mode: yes\n",
                             "records: 23\n", "     2  GROUP RECORD                             1\n",
                             "    10  PUSH LEVEL RECORD                        5\n", "conversion: as-authored\n",
                             "  faces: 2\n", "  triangles: 2\n", "  vertices: 6\n", "  textures: 1\n",
                             "messages: none\n",
                             // Feet scaled to metres by the root: 4 ft = 1.2192 m.
                             "bounding box: (0, 0, 0) to (1.2192, 0.6096, 0.3048)\n"})
        EXPECT_TRUE(contains(r.out, line)) << line << r.out;
    // The classic conversion shares the four vertices among its faces.
    const std::string classic = runTool({"info", input, "--classic"}).out;
    EXPECT_TRUE(contains(classic, "conversion: classic\n"));
    EXPECT_TRUE(contains(classic, "  vertices: 4\n")) << classic;
    EXPECT_FALSE(contains(r.out, "tree:"));
    // The library's own progress lines are not the tool's output.
    EXPECT_FALSE(contains(r.out, "Success in opening file"));

    const std::string tree = runTool({"info", input, "--tree"}).out;
    EXPECT_TRUE(contains(tree, "tree:\n  Separator \"root\"\n")) << tree;
    const size_t object = tree.find("    Separator \"g1\"\n      Separator \"o1\"\n");
    ASSERT_NE(object, std::string::npos) << tree;
    EXPECT_TRUE(contains(tree.substr(object), " face\n")) << tree;
}

TEST_F(ToolTest, info_saysARepeatedMessageOnceWithItsCount)
{
    // Control records padded to 8 bytes: the classic conversion reports each one.
    FltFixture db;
    db.header(1570);
    for (int i = 0; i < 3; ++i) db.add(FltRecordBytes(10, 8)).group("g" + std::to_string(i)).add(FltRecordBytes(11, 8));
    const RunResult r = runTool({"info", write("padded.flt", db.bytes()), "--classic"});
    EXPECT_TRUE(contains(r.out, "messages: 6\n  [level 1] WARNING ! this ControlRecord hasn t the correct length !\n"
                                "  ... and 5 more like this\n"))
        << r.out;
}

TEST_F(ToolTest, deps_listsTheFilesOfEveryReferencedDatabaseOnceAndCountsTheMissing)
{
    FltFixture child, top;
    // The child refers back to the top: the cycle is listed once and ends.
    child.header(1570, 0, 0, 0, "child").texturePattern(3, "wood.rgb").push().externalReference("../top.flt").pop();
    write("parts/child.flt", child.bytes());
    write("parts/wood.rgb", "image");
    write("tex/a.rgb", "image");
    top.header(1570).texturePattern(0, "tex/a.rgb").texturePattern(1, "gone.rgb").push();
    top.externalReference("./parts/child.flt").externalReference("sub/gone.flt").pop();
    const std::string input = write("top.flt", top.bytes());
    const RunResult r = runTool({"deps", input});
    EXPECT_EQ(r.status, 1);
    for (const std::string& lines :
         {"texture    tex/a.rgb  ->  " + dir.file("tex/a.rgb") + "  found\n",
          "texture    gone.rgb  ->  " + dir.file("gone.rgb") + "  MISSING\n",
          "reference  ./parts/child.flt  ->  " + dir.file("parts/child.flt") + "  found\n  texture    wood.rgb  ->  " +
              dir.file("parts/wood.rgb") + "  found\n  reference  ../top.flt  ->  " + input +
              "  found\n    (listed above)\n",
          "reference  sub/gone.flt  ->  " + dir.file("sub/gone.flt") + "  MISSING\n"})
        EXPECT_TRUE(contains(r.out, lines)) << lines << r.out;
    EXPECT_TRUE(contains(r.out, "2 files are missing\n"));
    EXPECT_EQ(r.err, "");  // the summary is said once, on standard output
    EXPECT_FALSE(fs::exists(dir.file("top.flt.log")));  // nothing is written next to the databases

    write("gone.rgb", "image");
    write("sub/gone.flt", FltFixture().header().bytes());
    const RunResult found = runTool({"deps", input});
    EXPECT_EQ(found.status, 0) << found.err;
    EXPECT_TRUE(contains(found.out, "all files found\n"));
}

TEST_F(ToolTest, deps_knowsAFileUnderAnyNameAndStopsAtTheLibrarysDepth)
{
    // A file that names itself through a link to its own folder, and a chain of 40 files:
    // listed as far as a conversion follows it, with bounded indentation.
    FltFixture self;
    write("self.flt", self.header().push().externalReference("link/self.flt").pop().bytes());
    fs::create_directory_symlink(".", dir.file("link"));
    const RunResult r = runTool({"deps", dir.file("self.flt")});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "found\n  (listed above)\nall files found\n")) << r.out;
    for (int i = 0; i < 40; ++i) {
        FltFixture link;
        link.header().push();
        if (i + 1 < 40) link.externalReference("c" + std::to_string(i + 1) + ".flt");
        write("c" + std::to_string(i) + ".flt", link.pop().bytes());
    }
    const RunResult chain = runTool({"deps", dir.file("c0.flt")});
    EXPECT_EQ(chain.status, 0) << chain.err;
    EXPECT_TRUE(contains(chain.out, std::string(64, ' ') + "reference  c33.flt  ->  " + dir.file("c33.flt") +
                                        "  found\n" + std::string(66, ' ') + "(nested more than 32 levels deep"))
        << chain.out;
    EXPECT_FALSE(contains(chain.out, "c34.flt"));
}

TEST_F(ToolTest, stats_writesTheStatisticsFileAndPrintsIt)
{
    const std::string input = write("db.flt", smallDatabase());
    const RunResult r = runTool({"stats", input});
    ASSERT_EQ(r.status, 0) << r.err;
    // The file's lines: Statistics.countsEachOpcodeOnce...
    const std::string stat = readFile(input + ".stat");
    EXPECT_TRUE(contains(stat, input + "\n \n Opcode 1:  1 ")) << stat;
    EXPECT_EQ(r.out, stat + "\n");
}

TEST(ToolSharedDataTest, deps_realNestedReferencesWithTexturesAllResolve)
{
    const std::string data = sharedDataDir();
    if (data.empty()) GTEST_SKIP() << "../shared/data is absent: the real databases cannot be read";
    const RunResult r = runTool({"deps", data + "/real/nested_references2/db/1/12/123/1234/1234.flt"});
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    for (int level = 1; level <= 4; ++level)
        EXPECT_TRUE(contains(r.out, "t_dig" + std::to_string(level) + ".rgb  found\n")) << r.out;
    const RunResult chain = runTool({"deps", data + "/real/nested_references/master/master.flt"});
    EXPECT_EQ(chain.status, 0) << chain.out;
    EXPECT_TRUE(contains(chain.out, "  reference  ./b.flt  ->  "));
}
