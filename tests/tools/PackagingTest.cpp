// The library as installed: its files and the names it exports, two hosts built against the
// install (by its CMake package and by its pkg-config file) and the Python recipe, each on
// the demo database.
#include <gtest/gtest.h>

#include <Inventor/SoDB.h>
#include <Inventor/actions/SoCallbackAction.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShape.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "ConvertSupport.h"
#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

SoCallbackAction::Response countShape(void* count, SoCallbackAction*, const SoNode*)
{
    ++*static_cast<int*>(count);
    return SoCallbackAction::CONTINUE;
}

class PackagingTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        scratch_ = new ScratchDir;
        prefix_ = scratch_->file("prefix");
        installed_ = runProgram(QETZFLT_CMAKE_COMMAND, {"--install", QETZFLT_BUILD_DIR, "--prefix", prefix_});
        demo_ = writeDemoDatabase(*scratch_);
        // What every reader of the demo should report: the shapes of the as-authored scene,
        // counted as the hosts count them.
        const AuthoredFile converted(demo_);
        shapes_ = 0;
        if (!converted.root) return;
        SoCallbackAction walk;
        walk.addPreCallback(SoShape::getClassTypeId(), countShape, &shapes_);
        walk.apply(converted.root);
    }
    static void TearDownTestSuite()
    {
        delete scratch_;
        scratch_ = nullptr;
    }
    void SetUp() override
    {
        ASSERT_EQ(installed_.status, 0) << installed_.err;
        ASSERT_GT(shapes_, 0);
    }
    // A library built with sanitizers needs their run time loaded first, which a plain host
    // (or Python) does not do.
    static bool hostsCanLoadIt() { return !QETZFLT_SANITIZED; }
    static std::string libDir() { return prefix_ + "/" QETZFLT_INSTALL_LIBDIR; }
    static std::string hostLine() { return "Skerrymoor 8.6.3 shapes " + std::to_string(shapes_) + "\n"; }

    static inline ScratchDir* scratch_ = nullptr;
    static inline std::string prefix_, demo_;
    static inline RunResult installed_;
    static inline int shapes_ = 0;
};

TEST_F(PackagingTest, install_isTheVersionedLibraryChainExportingThePublicFunctionsOnlyAndThePublicHeaderOnly)
{
    EXPECT_EQ(fs::read_symlink(libDir() + "/libQetzFlt.so"), "libQetzFlt.so.8");
    EXPECT_EQ(fs::read_symlink(libDir() + "/libQetzFlt.so.8"), "libQetzFlt.so.8.6.3");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(libDir() + "/libQetzFlt.so.8.6.3")));
    std::vector<std::string> headers;
    for (const auto& entry : fs::recursive_directory_iterator(prefix_ + "/include"))
        if (!entry.is_directory()) headers.push_back(fs::relative(entry.path(), prefix_ + "/include").string());
    EXPECT_EQ(headers, std::vector<std::string>{"QetzFlt/QetzFlt.h"});

    if (!*QETZFLT_NM || !*QETZFLT_READELF) GTEST_SKIP() << "nm or readelf not found (Debian: binutils)";
    const std::string library = libDir() + "/libQetzFlt.so.8.6.3";
    const RunResult names = runProgram(QETZFLT_NM, {"-D", "--defined-only", library});
    ASSERT_EQ(names.status, 0) << names.err;
    std::istringstream lines(names.out);
    int count = 0;
    for (std::string line; std::getline(lines, line);) ++count;
    EXPECT_LE(count, 60) << names.out;
    EXPECT_TRUE(contains(names.out, " T qetzfltWriteGltf\n")) << names.out;
    const RunResult dynamic = runProgram(QETZFLT_READELF, {"-d", library});
    EXPECT_TRUE(contains(dynamic.out, "Library soname: [libQetzFlt.so.8]")) << dynamic.out;
}

TEST_F(PackagingTest, cmakePackage_buildsAHostThatConvertsTheDemo)
{
    if (!hostsCanLoadIt()) GTEST_SKIP() << "the library is built with sanitizers: a plain host cannot load it";
    const std::string build = scratch_->file("cmake-host");
    const RunResult configure = runProgram(QETZFLT_CMAKE_COMMAND,
        {"-S", QETZFLT_SOURCE_DIR "/tests/hosts/installed", "-B", build, "-DCMAKE_PREFIX_PATH=" + prefix_,
         "-DCMAKE_CXX_COMPILER=" QETZFLT_CXX_COMPILER});
    ASSERT_EQ(configure.status, 0) << configure.out << configure.err;
    const RunResult compiled = runProgram(QETZFLT_CMAKE_COMMAND, {"--build", build});
    ASSERT_EQ(compiled.status, 0) << compiled.out << compiled.err;
    const RunResult host = runProgram(build + "/qetzflt-installed-host", {demo_});
    EXPECT_EQ(host.status, 0) << host.err;
    EXPECT_EQ(host.out, hostLine());
}

TEST_F(PackagingTest, pkgConfig_buildsAHostThatConvertsTheDemo)
{
    if (!hostsCanLoadIt()) GTEST_SKIP() << "the library is built with sanitizers: a plain host cannot load it";
    if (!*QETZFLT_PKG_CONFIG) GTEST_SKIP() << "pkg-config not found (Debian: pkg-config)";
    const RunResult flags = runProgram(QETZFLT_PKG_CONFIG, {"--cflags", "--libs", "qetzflt"},
                                       {{"PKG_CONFIG_PATH", libDir() + "/pkgconfig"}});
    ASSERT_EQ(flags.status, 0) << flags.err;
    const std::string host = scratch_->file("pkg-config-host");
    std::vector<std::string> args{"-std=c++17", QETZFLT_SOURCE_DIR "/tests/hosts/InstalledHost.cpp", "-o", host};
    std::istringstream words(flags.out);
    for (std::string word; words >> word;) args.push_back(word);
    const RunResult compiled = runProgram(QETZFLT_CXX_COMPILER, args);
    ASSERT_EQ(compiled.status, 0) << compiled.err;
    const RunResult run = runProgram(host, {demo_}, {{"LD_LIBRARY_PATH", libDir()}});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, hostLine());
}

TEST_F(PackagingTest, pythonRecipe_readsTheDemoThroughTheKitWithPivy)
{
    if (!hostsCanLoadIt()) GTEST_SKIP() << "the library is built with sanitizers: a plain host cannot load it";
    const char* python = "/usr/bin/python3";  // Debian's, for which python3-pivy is built
    if (!fs::exists(python) || runProgram(python, {"-c", "import pivy.coin"}).status != 0)
        GTEST_SKIP() << "python3-pivy is not installed (Debian: python3-pivy); the Python recipe is not tried";
    const RunResult r = runProgram(python,
        {prefix_ + "/" QETZFLT_INSTALL_DATADIR "/qetzflt/python/qetzflt_pivy.py", "--kit-dir", libDir(), demo_});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "shapes " + std::to_string(shapes_) + " triangles ")) << r.out << r.err;
}

}  // namespace
