// Real databases written by other tools: every face record of the file reaches a face set,
// and the written scene reads back.
#include <gtest/gtest.h>

#include <Inventor/SoInput.h>
#include <Inventor/SoOutput.h>
#include <Inventor/actions/SoWriteAction.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>

#include <filesystem>

#include "ConvertSupport.h"
#include "MemoryInput.h"
#include "reader/FltCreationVisitor.h"

namespace {

// The number of face records in a database, counted by a parse of its bytes.
int faceRecords(const std::string& bytes)
{
    ParsedBytes p(bytes);
    dynamic_cast<Flt_15_7_CreationVisitor*>(p.parser.creationVisitor)->setDumpStream(nullptr);
    CaptureStream out(std::cout), err(std::cerr);
    p.parser.run();
    int faces = 0;
    for (const FltRecord* r : p.parser.records) faces += r->getOpcode() == 5;
    return faces;
}

// The faces held by every face set of a scene (each face is closed by -1).
int facesInFaceSets(SoNode* root)
{
    int faces = 0;
    for (SoIndexedFaceSet* set : findAll<SoIndexedFaceSet>(root))
        for (int i = 0; i < set->coordIndex.getNum(); ++i) faces += set->coordIndex[i] == -1;
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
    const std::string bytes = readFile(data + "/osg/scene-15.7.flt");
    Converted c(bytes, "scene.flt");
    const std::string iv = c.dir.file("scene.iv");
    SoOutput out;
    ASSERT_TRUE(out.openFile(iv.c_str()));
    SoWriteAction(&out).apply(c.root);
    out.closeFile();
    SoInput in;
    ASSERT_TRUE(in.openFile(iv.c_str()));
    SoSeparator* back = SoDB::readAll(&in);
    ASSERT_NE(back, nullptr);
    back->ref();
    EXPECT_EQ(facesInFaceSets(back), facesInFaceSets(c.root));
    EXPECT_NE(findNamed(back, "vertexColorNormalUVProperty"), nullptr);
    back->unref();
}
