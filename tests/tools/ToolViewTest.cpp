// qetzflt view: the viewer's first frame shows the model, its keys change what it draws, and
// qetzflt says so when the viewer was not built or cannot open a file.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "ToolRunner.h"

namespace {

#ifdef QETZFLT_VIEWER_BUILT
constexpr bool kViewerBuilt = true;
#else
constexpr bool kViewerBuilt = false;
#endif

// The first frame of the demo database in the viewer, 320x240, as a PNG under dir.
RunResult screenshot(const ScratchDir& dir, const std::string& name, std::vector<std::string> options)
{
    std::vector<std::string> args{"view", writeDemoDatabase(dir), "--size", "320x240", "--screenshot", dir.file(name)};
    args.insert(args.end(), options.begin(), options.end());
    // Qt and the OpenGL driver keep allocations the sanitizer build's leak checker cannot
    // attribute; our own code's leaks are checked by the other tests.
    return runTool(args, "", {{"ASAN_OPTIONS", "detect_leaks=0"}});
}

}  // namespace

#define SKIP_WITHOUT_VIEWER() \
    if (!kViewerBuilt) GTEST_SKIP() << "qetzflt-view was not built (SoQt was not found): nothing to test"

#define SKIP_WITHOUT_DISPLAY(run) \
    if (failedForWantOfDisplay(run)) GTEST_SKIP() << "no X server could be started for the viewer: " << (run).err

TEST(ViewTest, screenshotShowsTheDemoDatabase_keysCAndTDrawTheClassicConversionWithoutTextures)
{
    SKIP_WITHOUT_VIEWER();
    ScratchDir dir;
    const RunResult r = screenshot(dir, "demo.png", {});
    SKIP_WITHOUT_DISPLAY(r);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "demo.flt   as authored   237 faces   0 messages")) << r.out;
    PngPicture picture;
    ASSERT_TRUE(readPng(dir.file("demo.png"), picture));
    ASSERT_EQ(picture.width, 320);
    ASSERT_EQ(picture.height, 240);
    int drawn = 0;
    std::set<int> colours;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const unsigned char* p = picture.at(x, y);
            if (isBackground(p)) continue;
            ++drawn;
            colours.insert(p[0] << 16 | p[1] << 8 | p[2]);
        }
    EXPECT_GT(drawn, 0.2 * 320 * 240);
    EXPECT_GT(colours.size(), 1u);

    const RunResult pressed = screenshot(dir, "pressed.png", {"--press", "ct"});
    ASSERT_EQ(pressed.status, 0) << pressed.err;
    EXPECT_TRUE(contains(pressed.out, "demo.flt   classic   237 faces   0 messages   textures off")) << pressed.out;
    const RunResult started = screenshot(dir, "started.png", {"--classic", "--no-textures"});
    ASSERT_EQ(started.status, 0) << started.err;
    PngPicture a, b;
    ASSERT_TRUE(readPng(dir.file("pressed.png"), a));
    ASSERT_TRUE(readPng(dir.file("started.png"), b));
    EXPECT_TRUE(a.rgb == b.rgb);
}

TEST(ViewTest, fileCoinCannotRead_isRefusedByItsKind)
{
    SKIP_WITHOUT_VIEWER();
    ScratchDir dir;
    const RunResult r = runTool({"view", dir.write("model.glb", "glTF")});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(contains(r.err, "the viewer cannot open .glb files")) << r.err;
}

TEST(ViewTest, withoutTheViewerBeside_saysItWasNotBuilt)
{
    ScratchDir dir;
    std::filesystem::copy_file(QETZFLT_TOOL_PATH, dir.file("qetzflt"));
    const RunResult r = runProgram(dir.file("qetzflt"), {"view", "demo.flt"});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(contains(r.err, "the viewer was not built")) << r.err;
}
