// qetzflt render: pictures that show the scene, in its colours, framed by the camera, from
// databases, Inventor and VRML files.
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
RunResult runRender(const std::vector<std::string>& args, Environment env = {})
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

    // The share of the picture the demo database covers: seen from the front it is a thin
    // band. Its VRML file, drawn from above, shows the same model with its PNG textures, read
    // without complaint (no name refused, every texture loaded).
    const std::string demo = writeDemoDatabase(dir), wrl = dir.file("vrml/demo.wrl");
    ASSERT_EQ(runTool({"convert", demo, "--vrml2", "-o", wrl}).status, 0);
    const struct {
        std::string input;
        const char* view;
        double least;
    } cases[] = {{demo, "iso", 0.2}, {demo, "front", 0.02}, {demo, "top", 0.3}, {wrl, "top", 0.3}};
    for (const auto& k : cases) {
        SCOPED_TRACE(k.input + " " + k.view);
        const std::string png = k.input + "-" + k.view + ".png";
        const RunResult r = runRender({"render", k.input, "-o", png, "--size", "320x240", "--view", k.view});
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_FALSE(contains(r.err, "Coin read error") || contains(r.err, "could not be read")) << r.err;
        ASSERT_TRUE(readPng(png, picture));
        EXPECT_GT(modelPixels(picture), k.least * 320 * 240);
        EXPECT_LT(modelPixels(picture), 0.98 * 320 * 240);
        if (std::string(k.view) != "top") continue;
        // Seen from above, the grass texture of the terrain near its south-west corner.
        const unsigned char* grass = picture.at(70, 200);
        EXPECT_GT(grass[1], grass[0] + 20) << int(grass[0]) << " " << int(grass[1]) << " " << int(grass[2]);
        EXPECT_GT(grass[1], grass[2] + 20);
    }
}

TEST(RenderTest, unreachableDisplay_failsWithReason)
{
    ScratchDir dir;
    writeFile(dir.file("box.iv"), kRedBox);
    const RunResult r = runRender({"render", dir.file("box.iv"), "-o", dir.file("box.png")}, {{"DISPLAY", ":987"}});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(contains(r.err, "cannot open X display :987")) << r.err;
}
