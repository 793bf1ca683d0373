// qetzflt convert on many databases: files and folders into -o DIR, worker processes, one
// line per database, the total, the exit status.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

#include "tools/FltFixture.h"
#include "TestSupport.h"
#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

std::string oneFace(const std::string& name)
{
    FltFixture db;
    db.header(1570, 0, 0, 0, name).vertexPalette();
    const int a = db.vertexColor(0, 0, 0), b = db.vertexColor(1, 0, 0), c = db.vertexColor(1, 1, 0);
    db.push().group("g").push().object("o").push().face().push().vertexList({a, b, c}).pop();
    return db.pop().pop().pop().bytes();
}

// Every file below dir, by its relative name.
std::set<std::string> listing(const std::string& dir)
{
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(dir))
        names.insert(entry.path().lexically_relative(dir).string());
    return names;
}

}  // namespace

TEST(ToolBatchTest, folderAndFiles_oneLineEachOutputsInTheLayoutAndFailuresCounted)
{
    ScratchDir dir;
    dir.write("in/a.flt", oneFace("a"));
    dir.write("in/sub/b.flt", oneFace("b"));
    dir.write("in/readme.txt", "not a database: left out of a folder's batch");
    const std::set<std::string> before = listing(dir.file("in"));

    const RunResult folder = runTool({"convert", dir.file("in"), "-o", dir.file("out"), "--jobs", "2"});
    EXPECT_EQ(folder.status, 0) << folder.out << folder.err;
    EXPECT_EQ(linesStartingWith(folder.out, "ok      "), 2u) << folder.out;
    EXPECT_TRUE(contains(folder.out, dir.file("in/sub/b.flt") + " -> " + dir.file("out/in/sub/b.iv") + "  1 face  "))
        << folder.out;
    EXPECT_TRUE(contains(folder.out, "total: 2 databases, 2 written, 0 failed, 2 faces, ")) << folder.out;
    EXPECT_TRUE(fs::exists(dir.file("out/in/a.iv")));
    EXPECT_EQ(listing(dir.file("in")), before);  // no log, nothing beside the inputs

    // A refused file given by name fails the batch, the others are written all the same.
    dir.write("bad.flt", "no database");
    const RunResult files = runTool({"convert", dir.file("in/a.flt"), dir.file("bad.flt"), dir.file("in/sub/b.flt"),
                                     "-o", dir.file("glb"), "--format", "glb", "--log-dir", dir.file("logs")});
    EXPECT_EQ(files.status, 1);
    EXPECT_TRUE(contains(files.out, "FAILED  " + dir.file("bad.flt") + "\n        " + dir.file("bad.flt") +
                                        ": not an OpenFlight database\n"))
        << files.out;
    EXPECT_TRUE(contains(files.out, "total: 3 databases, 2 written, 1 failed")) << files.out;
    EXPECT_TRUE(contains(files.out, " -> " + dir.file("glb/b.glb") + "  1 face  ")) << files.out;
    for (const char* written : {"glb/a.glb", "glb/b.glb", "logs/a.flt.log", "logs/b.flt.log"})
        EXPECT_TRUE(fs::exists(dir.file(written))) << written;
    EXPECT_FALSE(fs::exists(dir.file("bad.flt.log")));

    // A database that stops at a damaged record is written, with an error: --strict fails it.
    FltFixture cut;
    cut.header(1570).push().group("g1").add(FltRecordBytes(2, 44).declaredLength(400));
    dir.write("cut/cut.flt", cut.bytes());
    for (const bool strict : {false, true}) {
        std::vector<std::string> args{"convert", dir.file("cut"), "-o", dir.file("cutout"), "--classic"};
        if (strict) args.push_back("--strict");
        const RunResult r = runTool(args);
        EXPECT_EQ(r.status, strict ? 1 : 0) << r.out << r.err;
        EXPECT_TRUE(contains(r.out, "messages: 1 error, ")) << r.out;
    }
}

TEST(ToolBatchTest, sharedPublicDatabases_twoWorkersOneLineEachNothingBesideTheInputs)
{
    const std::string data = sharedDataDir();
    if (data.empty() || !fs::is_directory(data + "/public"))
        GTEST_SKIP() << "../shared/data/public is absent: the public databases cannot be converted";
    const std::string input = data + "/public";
    const std::set<std::string> before = listing(input);
    ScratchDir out;
    for (const bool strict : {false, true}) {
        std::vector<std::string> args{"convert", input, "-o", out.file(strict ? "s" : "n"), "--jobs", "2"};
        if (strict) args.push_back("--strict");
        const RunResult r = runTool(args);
        // Some of them carry level-3 messages: only --strict fails for them.
        EXPECT_EQ(r.status, strict ? 1 : 0) << r.out << r.err;
        EXPECT_EQ(linesStartingWith(r.out, "ok      "), 26u) << r.out;
        EXPECT_TRUE(contains(r.out, "total: 26 databases, 26 written, 0 failed, ")) << r.out;
    }
    EXPECT_EQ(listing(input), before);
}
