// qetzflt render: pictures that show the scene, in its colours, framed by the camera.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "TestSupport.h"
#include "ToolRunner.h"

namespace {

const unsigned char kBackground[3] = {158, 184, 212};

bool isBackground(const unsigned char* p)
{
    return std::abs(p[0] - kBackground[0]) < 4 && std::abs(p[1] - kBackground[1]) < 4 &&
           std::abs(p[2] - kBackground[2]) < 4;
}

double sceneShare(const PngPicture& picture)
{
    int drawn = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) drawn += isBackground(picture.at(x, y)) ? 0 : 1;
    return static_cast<double>(drawn) / (picture.width * picture.height);
}

// A red box seen from above fills the middle of the picture.
const char* const kRedBox =
    "#Inventor V2.1 ascii\n"
    "Separator { Material { diffuseColor 0.9 0.1 0.1 } Cube { width 4 height 4 depth 1 } }\n";

// The OpenGL driver that a render loads and unloads keeps allocations that the leak checker
// of the sanitizer build cannot attribute; our own code's leaks are checked by the other tests.
RunResult runRender(const std::vector<std::string>& args,
                    std::vector<std::pair<std::string, std::string>> env = {})
{
    env.push_back({"ASAN_OPTIONS", "detect_leaks=0"});
    return runTool(args, "", env);
}

class RenderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        // Probe once: a picture of a box, or the reason no X server could be had.
        const std::string scene = dir.file("box.iv");
        writeFile(scene, kRedBox);
        probe = runRender({"render", scene, "-o", dir.file("box.png"), "--size", "200x160", "--view", "top"});
        if (probe.status != 0 && (contains(probe.err, "X server") || contains(probe.err, "X display") ||
                                  contains(probe.err, "GLX") || contains(probe.err, "OpenGL")))
            GTEST_SKIP() << "no X server could be started for rendering: " << probe.err;
    }
    ScratchDir dir;
    RunResult probe;
};

}  // namespace

TEST_F(RenderTest, inventorScene_drawsItsColourInTheMiddleAndBackgroundAtTheCorners)
{
    ASSERT_EQ(probe.status, 0) << probe.err;
    EXPECT_TRUE(contains(probe.out, "(200x160, top view)"));
    PngPicture picture;
    ASSERT_TRUE(readPng(dir.file("box.png"), picture));
    EXPECT_EQ(picture.width, 200);
    EXPECT_EQ(picture.height, 160);
    const unsigned char* middle = picture.at(100, 80);
    EXPECT_GT(middle[0], 2 * middle[1]) << int(middle[0]) << " " << int(middle[1]) << " " << int(middle[2]);
    EXPECT_GT(middle[0], 2 * middle[2]);
    EXPECT_TRUE(isBackground(picture.at(1, 1)));
    EXPECT_TRUE(isBackground(picture.at(198, 158)));
}

TEST_F(RenderTest, demoDatabase_isFramedLitAndTextured)
{
    const std::string demo = writeDemoDatabase(dir);
    // The share of the picture the scene covers: the flat database seen from the front is a thin band.
    const std::pair<const char*, double> views[] = {{"iso", 0.2}, {"top", 0.3}, {"front", 0.02}};
    for (const auto& [view, least] : views) {
        const std::string png = dir.file(std::string("demo-") + view + ".png");
        const RunResult r = runRender({"render", demo, "-o", png, "--size", "320x240", "--view", view});
        ASSERT_EQ(r.status, 0) << view << ": " << r.err;
        PngPicture picture;
        ASSERT_TRUE(readPng(png, picture)) << view;
        const double share = sceneShare(picture);
        EXPECT_GT(share, least) << view;
        EXPECT_LT(share, 0.98) << view;
        if (std::string(view) == "top") {
            // Seen from above, the grass texture of the terrain near its south-west corner.
            const unsigned char* grass = picture.at(70, 200);
            EXPECT_GT(grass[1], grass[0] + 20) << int(grass[0]) << " " << int(grass[1]) << " " << int(grass[2]);
            EXPECT_GT(grass[1], grass[2] + 20);
        }
    }
}

TEST_F(RenderTest, missingAndDamagedInputs_exitOneWithoutPicture)
{
    const RunResult missing = runTool({"render", dir.file("none.flt"), "-o", dir.file("none.png")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(contains(missing.err, "no such file"));
    writeFile(dir.file("text.flt"), "no OpenFlight here");
    const RunResult text = runTool({"render", dir.file("text.flt"), "-o", dir.file("text.png")});
    EXPECT_EQ(text.status, 1);
    EXPECT_FALSE(std::filesystem::exists(dir.file("text.png")));
    writeFile(dir.file("bad.iv"), "#Inventor V2.1 ascii\nSeparator { Cube { width } \n");
    EXPECT_EQ(runTool({"render", dir.file("bad.iv"), "-o", dir.file("bad.png")}).status, 1);
}

TEST(RenderDisplayTest, unreachableDisplay_failsWithReason)
{
    ScratchDir dir;
    writeFile(dir.file("box.iv"), kRedBox);
    const RunResult r = runRender({"render", dir.file("box.iv"), "-o", dir.file("box.png")}, {{"DISPLAY", ":987"}});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(contains(r.err, "cannot open X display :987")) << r.err;
}
