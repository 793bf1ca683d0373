// Real databases written by other tools: every face record of the file reaches a face set,
// the written scene reads back, and every database converts exactly as recorded.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include "ConvertSupport.h"
#include "MemoryInput.h"

namespace {

// The number of face records in a database, counted by a parse of its bytes.
int faceRecords(const std::string& bytes)
{
    ParsedBytes p(bytes);
    p.parser.setDumpStream(nullptr);
    CaptureStream out(std::cout), err(std::cerr);
    p.parser.run();
    int faces = 0;
    for (const FltRecord* r : p.parser.records) faces += r->getOpcode() == 5;
    return faces;
}

std::vector<std::string> databasesWithoutReferences(const std::string& data)
{
    return {data + "/osg/scene-15.7.flt", data + "/osg/scene-16.1.flt", data + "/osg/spider-15.7.flt",
            data + "/real/switch/switch.flt"};
}

}  // namespace

TEST(RealDatabases, everyFaceRecordReachesAFaceSet)
{
    const std::string data = sharedDataDir();
    if (data.empty()) GTEST_SKIP() << "../shared/data is absent: the real databases are not in this checkout";
    for (const std::string& path : databasesWithoutReferences(data)) {
        SCOPED_TRACE(path);
        const std::string bytes = readFile(path);
        ASSERT_FALSE(bytes.empty());
        Converted c(bytes, std::filesystem::path(path).filename().string());
        EXPECT_EQ(facesInFaceSets(c.root), faceRecords(bytes));
        EXPECT_EQ(c.root->getRefCount(), 1);
        for (size_t i = 0; i < c.messages.size(); ++i) EXPECT_LT(c.levels[i], 3) << c.messages[i];
    }
}

TEST(RealDatabases, writtenSceneReadsBackWithTheSameFaces)
{
    const std::string data = sharedDataDir();
    if (data.empty()) GTEST_SKIP() << "../shared/data is absent: the real databases are not in this checkout";
    Converted c(readFile(data + "/osg/scene-15.7.flt"), "scene.flt");
    SoSeparator* back = readBack(c.root);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(facesInFaceSets(back), facesInFaceSets(c.root));
    EXPECT_NE(findNamed(back, "vertexColorNormalUVProperty"), nullptr);
    back->unref();
}

namespace {

// 64-bit FNV-1a, as sixteen hexadecimal digits.
std::string digest(const std::string& text)
{
    uint64_t h = 1469598103934665603ull;
    for (unsigned char c : text) h = (h ^ c) * 1099511628211ull;
    char hex[17];
    std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(h));
    return hex;
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace

// The scene, log and messages of every database, in a copy of the folder (references and
// textures resolve as in the original), held against digests recorded from an earlier
// revision: any change to the classic conversion of a real file shows here. With
// QETZFLT_UPDATE_GOLDEN set, the digests are recorded again.
TEST(RealDatabases, everyDatabaseConvertsAsRecorded)
{
    const std::string data = sharedDataDir();
    if (data.empty()) GTEST_SKIP() << "../shared/data is absent: the real databases are not in this checkout";
    ScratchDir copy;
    namespace fs = std::filesystem;
    std::vector<std::string> databases;
    for (const auto& entry : fs::recursive_directory_iterator(data)) {
        const fs::path relative = fs::relative(entry.path(), data);
        if (entry.is_directory()) {
            fs::create_directories(copy.path() / relative);
        } else if (entry.is_regular_file()) {
            fs::copy_file(entry.path(), copy.path() / relative);
            std::string extension = relative.extension().string();
            std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
            if (extension == ".flt") databases.push_back(relative.generic_string());
        }
    }
    std::sort(databases.begin(), databases.end());
    ASSERT_FALSE(databases.empty());

    std::string actual;
    const std::string prefix = copy.path().string();
    for (const std::string& name : databases) {
        Converted c(Converted::File{copy.file(name)});
        std::string messages;
        for (size_t i = 0; i < c.messages.size(); ++i)
            messages += "[" + std::to_string(c.levels[i]) + "] " + c.messages[i] + "\n";
        const std::string all = sceneText(c.root) + '\0' + c.log() + '\0' + messages + '\0' +
                                std::to_string(c.root->getRefCount());
        actual += digest(replaceAll(all, prefix, "DATA")) + "  " + name + "\n";
    }
    const std::string golden = QETZFLT_SOURCE_DIR "/tests/golden/real-databases.digests";
    if (std::getenv("QETZFLT_UPDATE_GOLDEN")) {
        writeFile(golden, actual);
        GTEST_SKIP() << "rewrote " << golden;
    }
    const std::string expected = readFile(golden);
    ASSERT_FALSE(expected.empty()) << golden << " is missing";
    // One line per database: a difference names the file.
    EXPECT_EQ(actual, expected);
}
