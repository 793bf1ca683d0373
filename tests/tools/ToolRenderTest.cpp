// qetzflt render: pictures that show the scene, in its colours, framed by the camera.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "TestSupport.h"
#include "ToolRunner.h"

namespace {

// A red box seen from above fills the middle of the picture.
const char* const kRedBox =
    "#Inventor V2.1 ascii\n"
    "Separator { Material { diffuseColor 0.9 0.1 0.1 } Cube { width 4 height 4 depth 1 } }\n";

// The OpenGL driver that a render loads and unloads keeps allocations that the leak checker
// of the sanitizer build cannot attribute; our own code's leaks are checked by the other tests.
RunResult runRender(const std::vector<std::string>& args, std::vector<std::pair<std::string, std::string>> env = {})
{
    env.push_back({"ASAN_OPTIONS", "detect_leaks=0"});
    return runTool(args, "", env);
}

}  // namespace

TEST(RenderTest, pictureShowsTheSceneInItsColoursFramedByEachView)
{
    ScratchDir dir;
    // An Inventor file is told by its header, whatever its name.
    writeFile(dir.file("box.ivb"), kRedBox);
    const RunResult box = runRender({"render", dir.file("box.ivb"), "-o", dir.file("box.png"), "--size", "200x160",
                                     "--view", "top"});
    if (failedForWantOfDisplay(box)) GTEST_SKIP() << "no X server could be started for rendering: " << box.err;
    ASSERT_EQ(box.status, 0) << box.err;
    EXPECT_TRUE(contains(box.out, "(200x160, top view)"));
    PngPicture picture;
    ASSERT_TRUE(readPng(dir.file("box.png"), picture));
    EXPECT_EQ(picture.width, 200);
    EXPECT_EQ(picture.height, 160);
    const unsigned char* middle = picture.at(100, 80);
    EXPECT_GT(middle[0], 2 * middle[1]) << int(middle[0]) << " " << int(middle[1]) << " " << int(middle[2]);
    EXPECT_GT(middle[0], 2 * middle[2]);
    EXPECT_TRUE(isBackground(picture.at(1, 1)));
    EXPECT_TRUE(isBackground(picture.at(198, 158)));

    // The share of the picture the demo database covers: seen from the front it is a thin band.
    const std::string demo = writeDemoDatabase(dir);
    for (const auto& [view, least] : {std::pair<const char*, double>{"iso", 0.2}, {"top", 0.3}, {"front", 0.02}}) {
        const std::string png = dir.file(std::string("demo-") + view + ".png");
        const RunResult r = runRender({"render", demo, "-o", png, "--size", "320x240", "--view", view});
        ASSERT_EQ(r.status, 0) << view << ": " << r.err;
        ASSERT_TRUE(readPng(png, picture)) << view;
        int drawn = 0;
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x) drawn += isBackground(picture.at(x, y)) ? 0 : 1;
        EXPECT_GT(drawn, least * 320 * 240) << view;
        EXPECT_LT(drawn, 0.98 * 320 * 240) << view;
    }
    // Seen from above, the grass texture of the terrain near its south-west corner.
    ASSERT_TRUE(readPng(dir.file("demo-top.png"), picture));
    const unsigned char* grass = picture.at(70, 200);
    EXPECT_GT(grass[1], grass[0] + 20) << int(grass[0]) << " " << int(grass[1]) << " " << int(grass[2]);
    EXPECT_GT(grass[1], grass[2] + 20);
}

TEST(RenderTest, unreachableDisplay_failsWithReason)
{
    ScratchDir dir;
    writeFile(dir.file("box.iv"), kRedBox);
    const RunResult r = runRender({"render", dir.file("box.iv"), "-o", dir.file("box.png")}, {{"DISPLAY", ":987"}});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(contains(r.err, "cannot open X display :987")) << r.err;
}

// The demo written as VRML97 and drawn from that file: the model with its PNG textures.
TEST(RenderTest, vrmlFileReadBackShowsTheModel)
{
    ScratchDir dir;
    const std::string demo = writeDemoDatabase(dir);
    const std::string wrl = dir.file("vrml/demo.wrl"), png = dir.file("vrml.png");
    const RunResult convert = runTool({"convert", demo, "--vrml2", "-o", wrl});
    ASSERT_EQ(convert.status, 0) << convert.err;
    const RunResult r = runRender({"render", wrl, "-o", png, "--size", "320x240", "--view", "top"});
    for (const char* reason : {"X server", "X display", "GLX", "OpenGL"})
        if (r.status != 0 && contains(r.err, reason)) GTEST_SKIP() << "no X server could be started: " << r.err;
    ASSERT_EQ(r.status, 0) << r.err;
    // Read without complaint: no name refused, every texture loaded.
    EXPECT_FALSE(contains(r.err, "Coin read error")) << r.err;
    EXPECT_FALSE(contains(r.err, "could not be read")) << r.err;
    PngPicture picture;
    ASSERT_TRUE(readPng(png, picture));
    int drawn = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) drawn += isBackground(picture.at(x, y)) ? 0 : 1;
    EXPECT_GT(drawn, 0.3 * 320 * 240);
    EXPECT_LT(drawn, 0.98 * 320 * 240);
    // The grass texture, from grass.png, near the terrain's south-west corner.
    const unsigned char* grass = picture.at(70, 200);
    EXPECT_GT(grass[1], grass[0] + 20) << int(grass[0]) << " " << int(grass[1]) << " " << int(grass[2]);
    EXPECT_GT(grass[1], grass[2] + 20);
}
