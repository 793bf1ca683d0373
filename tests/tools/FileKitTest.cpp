// libSoFLTFileKit.so: an unmodified Coin application opens .flt databases with
// SoDB::readAll once the module is on its library path.
#include <gtest/gtest.h>

#include <string>

#include "FltFixture.h"
#include "TestSupport.h"
#include "ToolRunner.h"

namespace {

RunResult runHost(const std::string& file, bool withKit = true)
{
    return runProgram(QETZFLT_HOST_PATH, {file}, {{"LD_LIBRARY_PATH", withKit ? QETZFLT_KIT_DIR : ""}});
}

}  // namespace

TEST(FileKitTest, readAll_opensTheDemoDatabaseThroughTheKit)
{
    ScratchDir dir;
    const std::string demo = writeDemoDatabase(dir);
    const RunResult r = runHost(demo);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "SoFLTFileKit {"));
    EXPECT_TRUE(contains(r.out, "DEF root Separator"));
    EXPECT_TRUE(contains(r.out, "DEF terrain Separator"));
    EXPECT_TRUE(contains(r.out, "IndexedFaceSet"));
    // Texture names stay as the library gives them; the kit loads them from the database's folder.
    EXPECT_TRUE(contains(r.out, "filename \"textures/grass.rgb\""));
    EXPECT_FALSE(contains(r.err, "grass.rgb")) << r.err;
    EXPECT_TRUE(contains(r.out, "bounding box: -45 -45 0 45 45 ")) << r.out.substr(r.out.size() - 200);
}

TEST(FileKitTest, readAll_withoutTheModule_doesNotKnowTheFormat)
{
    ScratchDir dir;
    FltFixture db;
    db.header(1570).push().group("g1").pop();
    db.save(dir.file("db.flt"));
    const RunResult r = runHost(dir.file("db.flt"), false);
    EXPECT_EQ(r.status, 1);
    EXPECT_FALSE(contains(r.out, "SoFLTFileKit"));
}

TEST(FileKitTest, readAll_damagedDatabase_isRefusedWithoutCrash)
{
    ScratchDir dir;
    writeFile(dir.file("text.flt"), "not an OpenFlight database at all");
    const RunResult r = runHost(dir.file("text.flt"));
    EXPECT_EQ(r.status, 1) << r.out;
    EXPECT_TRUE(contains(r.err, "cannot read")) << r.err;
}
