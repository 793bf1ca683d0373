// External references: nested conversions shared per file within one converter, their
// label, how names are resolved and texture names prefixed, missing files, cycles and deep
// chains (the real databases made of references: RealDatabasesTest's digests).
#include <gtest/gtest.h>

#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoTexture2.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "ConvertSupport.h"
#include "convert/FltReferenceChain.h"
#include "reader/FltReferencePath.h"

namespace fs = std::filesystem;

namespace {

const std::string kLabelPrefix = "From OpenFlight File:  ";

// Several databases in one scratch folder.
struct Folder {
    std::string write(const std::string& relative, FltFixture& db) { return dir.write(relative, db.bytes()); }
    // A database holding one named group, then the references given, at its top level.
    std::string write(const std::string& relative, const std::string& group, const std::vector<std::string>& refs = {})
    {
        FltFixture db;
        db.header().push();
        db.group(group).push().pop();
        for (const std::string& reference : refs) db.externalReference(reference);
        return write(relative, db.pop());
    }
    // Files <stem>0.flt to <stem>(n-1).flt holding groups g0, g1, ..., each referencing the
    // next under every spelling given (the name, prefixed).
    void chain(const std::string& stem, int n, const std::vector<std::string>& spellings)
    {
        for (int i = 0; i < n; ++i) {
            std::vector<std::string> next;
            for (const std::string& prefix : spellings)
                if (i + 1 < n) next.push_back(prefix + stem + std::to_string(i + 1) + ".flt");
            write(stem + std::to_string(i) + ".flt", "g" + std::to_string(i), next);
        }
    }
    ScratchDir dir;
};

std::string labelOf(SoNode* reference) { return childAs<SoLabel>(reference, 0)->label.getValue().getString(); }

// The converted root of a referenced file: the last child of its reference separator, or
// null when there is none.
SoNode* nestedRoot(SoNode* reference)
{
    auto* group = dynamic_cast<SoGroup*>(reference);
    return group ? childAs<SoSeparator>(group, group->getNumChildren() - 1) : nullptr;
}

// A converted file's root, as a tree, up to its hierarchy.
const std::string kRoot = "Separator:root[ShapeHints TextureCoordinateBinding NormalBinding ";

}  // namespace

// ---- Labels, sharing and resolution ----

TEST(ExternalReference, labelledSeparatorHoldsTheReferencedFilesRootAndKeepsTheNameAsWritten)
{
    // Backslashes resolve as slashes; the label keeps the name as the file spells it.
    Folder f;
    f.write("sub/part.flt", "p");
    FltFixture top;
    top.header().push().externalReference(".\\sub\\part.flt").translationMatrix(0, 0, 1);
    Converted c(Converted::File{f.write("top.flt", top.pop())});
    EXPECT_EQ(hierarchy(c), "Separator[Label MatrixTransform " + kRoot + "Separator:p]]");
    EXPECT_EQ(labelOf(hierarchyChild(c, 0)), kLabelPrefix + ".\\sub\\part.flt");
    EXPECT_TRUE(c.messages.empty());
    // The nested conversion writes into the caller's log (aFileSharedOrRefused...), never a
    // log of its own.
    EXPECT_FALSE(fs::exists(f.dir.file("sub/part.flt.log")));
}

TEST(ExternalReference, eachConverterConvertsAFileOnceAndResolvesNamesFromItsOwnFolder)
{
    // top -> sub/mid.flt -> ./leaf.flt (beside mid), ../leaf.flt (beside top) and leaf.flt;
    // top also references sub/leaf.flt after mid: its converter and mid's each convert it
    // once, and reaching it twice without a cycle is no cycle.
    Folder f;
    f.write("sub/leaf.flt", "in_sub");
    f.write("leaf.flt", "at_top");
    f.write("sub/mid.flt", "mid", {"./leaf.flt", "../leaf.flt", "leaf.flt"});
    Converted c(Converted::File{f.write("top.flt", "top", {"sub/mid.flt", "sub/leaf.flt"})});
    const std::string inSub = kRoot + "Separator:in_sub]";
    EXPECT_EQ(hierarchy(c), "Separator:top Separator[Label " + kRoot + "Separator:mid Separator[Label " + inSub +
                                "] Separator[Label " + kRoot + "Separator:at_top]] Separator[Label " + inSub +
                                "]]] Separator[Label " + inSub + "]");
    SoNode* mid = nestedRoot(hierarchyChild(c, 1));
    auto midReference = [&](int i) { return childAs<SoNode>(mid, kHeaderChildren + 1 + i); };
    EXPECT_EQ(nestedRoot(midReference(2)), nestedRoot(midReference(0)));  // "./" dropped: one key, one node
    EXPECT_NE(nestedRoot(hierarchyChild(c, 2)), nestedRoot(midReference(0)));
    EXPECT_TRUE(c.messages.empty());
}

TEST(ExternalReference, nestedTexturePrefixIsTheNameAsWrittenUpToItsLastSeparator)
{
    EXPECT_EQ(fltpath::nestedTexturePrefix("", "./sub/house.flt"), "./sub/");
    EXPECT_EQ(fltpath::nestedTexturePrefix("../", "../123.flt"), "../../");
    EXPECT_EQ(fltpath::nestedTexturePrefix("x/", "house.flt"), "x/");
    EXPECT_EQ(fltpath::nestedTexturePrefix("", "a\\b/c\\d.flt"), "a\\b/c/");
    EXPECT_EQ(fltpath::externalReference("/data/", "./sub/house.flt"), "/data/sub/house.flt");
    EXPECT_EQ(fltpath::externalReference("/data/", "../up.flt"), "/data/../up.flt");
    EXPECT_EQ(fltpath::externalReference("", ".\\a.flt"), "a.flt");
    EXPECT_EQ(fltpath::externalReference("/data/", "..flt"), "/data/..flt");
}

TEST(ExternalReference, texturesInsideAReferencedFileGetItsRelativePath)
{
    Folder f;
    FltFixture house;
    house.header().texturePattern(0, "tex/wall.rgb").vertexPalette();
    const int a = house.vertexColor(0, 0, 0), b = house.vertexColor(1, 0, 0), c = house.vertexColor(0, 1, 0);
    FltFaceSpec face;
    face.texturePatternIndex = 0;
    house.push().object("o").push().face(face).push().vertexList({a, b, c}).pop().pop();
    f.write("sub/house.flt", house.pop());
    Converted top(Converted::File{f.write("top.flt", "t", {"./sub/house.flt"})});
    std::vector<SoTexture2*> textures = findAll<SoTexture2>(top.root);
    ASSERT_EQ(textures.size(), 1u);
    EXPECT_EQ(std::string(textures[0]->filename.getValue().getString()), "./sub/tex/wall.rgb");
}

// ---- Failures ----

TEST(ExternalReference, emptyMissingOrForeignFilesLeaveTheLabelWithTheirMessages)
{
    Folder f;
    writeFile(f.dir.file("text.flt"), "this is not OpenFlight");
    ASSERT_EQ(mkfifo(f.dir.file("pipe.flt").c_str(), 0600), 0);
    FltFixture top;
    top.header().push();
    top.externalReference("").group("next").push().pop();
    top.externalReference("./gone/missing.flt").group("passed_over").push().pop();
    top.group("after").push().pop();
    top.externalReference("text.flt").externalReference("text.flt");
    top.externalReference("pipe.flt").group("piped").push().pop();
    Converted c(Converted::File{f.write("top.flt", top.pop())});
    // A missing file does not step the walk back: the record after the reference is passed
    // over (kept on purpose); an empty name does, so "next" is converted. A file that is not
    // a database leaves an empty root, shared by both references to it. A named pipe is not
    // waited for: refused as a file that cannot be read, and the walk goes on.
    EXPECT_EQ(hierarchy(c), "Separator[Label] Separator:next Separator[Label] Separator:after "
                            "Separator[Label Separator] Separator[Label Separator] Separator[Label Separator] "
                            "Separator:piped");
    EXPECT_EQ(labelOf(hierarchyChild(c, 0)), kLabelPrefix);
    EXPECT_EQ(nestedRoot(hierarchyChild(c, 5)), nestedRoot(hierarchyChild(c, 4)));
    const std::string missing = "ERROR! CAN'T RESOLVE EXTERNAL REFERENCE: ./gone/missing.flt";
    EXPECT_EQ(c.messages, (Names{missing, "ERROR! Not an Openflight Input !", "ERROR ! FltParser has no INPUT !"}));
    EXPECT_EQ(c.levels, (std::vector<int>{3, 3, 3}));
}

TEST(ExternalReference, externalReferenceCycle_stopsWithMessage)
{
    // a -> a directly; a -> b -> a through another file, spelled differently.
    Folder f;
    Converted self(Converted::File{f.write("self.flt", "self", {"self.flt"})});
    EXPECT_EQ(hierarchy(self), "Separator:self Separator[Label]");
    EXPECT_EQ(self.messages, (Names{"ERROR ! External reference cycle: self.flt leads back to " +
                                    fs::canonical(f.dir.file("self.flt")).string() +
                                    ", which is already being converted; not converted again"}));
    EXPECT_EQ(self.levels, (std::vector<int>{3}));

    f.write("sub/b.flt", "b", {"../sub/../a.flt"});
    Converted a(Converted::File{f.write("a.flt", "a", {"sub/b.flt"})});
    EXPECT_EQ(hierarchy(a), "Separator:a Separator[Label " + kRoot + "Separator:b Separator[Label]]]");
    ASSERT_EQ(a.messages.size(), 1u);
    EXPECT_NE(a.messages[0].find("../sub/../a.flt leads back to"), std::string::npos);
}

TEST(ExternalReference, chainsDeeperThanTheLimitStopWithMessage)
{
    // f0 -> f1 -> ... -> f39: the first 32 nested levels are converted, f33 is not. f0 is
    // converted by a name without directory, so that every name resolves alone.
    Folder f;
    f.chain("f", 40, {""});
    const fs::path saved = fs::current_path();
    fs::current_path(f.dir.path());
    Converted c(Converted::File{"f0.flt"});
    fs::current_path(saved);
    int converted = 0;
    // Each level holds its group, then its reference to the next file.
    for (SoNode* level = c.root; (level = nestedRoot(childAs<SoNode>(level, kHeaderChildren + 1)));)
        EXPECT_EQ(tree(childAs<SoNode>(level, kHeaderChildren)), "Separator:g" + std::to_string(++converted));
    EXPECT_EQ(converted, static_cast<int>(FltReferenceChain::kMaxDepth));
    EXPECT_EQ(c.messages,
              (Names{"ERROR ! External references nested more than 32 levels deep: f33.flt is not converted"}));
}

TEST(ExternalReference, filesReferencedUnderSeveralNamesAreConvertedABoundedNumberOfTimes)
{
    // Each level references the next twice under two spellings: 2^k conversions of the last
    // file without a bound. 14 files allow 64 * 14 + 1024 nested conversions.
    Folder f;
    constexpr int kLevels = 14;
    f.chain("L", kLevels, {"", "x/../"});
    fs::create_directories(f.dir.path() / "x");
    Converted c(Converted::File{f.dir.file("L0.flt")});
    const size_t limit = FltReferenceChain::kConversionsPerFile * kLevels + FltReferenceChain::kConversionsMargin;
    size_t conversions = 0;
    for (SoLabel* label : findAll<SoLabel>(c.root))
        if (std::string(label->label.getValue().getString()).rfind(kLabelPrefix, 0) == 0) ++conversions;
    EXPECT_GE(conversions, limit);
    EXPECT_LT(conversions, 2 * limit);
    ASSERT_EQ(c.messages.size(), 1u);
    EXPECT_EQ(c.messages[0].rfind("ERROR ! External references were converted " + std::to_string(limit) +
                                      " times from " + std::to_string(kLevels) + " files: ",
                                  0),
              0u)
        << c.messages[0];
}

TEST(ExternalReference, aFileSharedOrRefusedIsOpenedForTheLogButReadOnce)
{
    // 40 references to a 4 MiB file and one to the database itself, in both conversions: the
    // log tells every opening as before, the process reads the file once (the kernel's count
    // of bytes read), and the nested parse keeps the run's choice of no dump.
    Folder f;
    FltFixture big;
    big.header();
    for (int i = 0; i < 64; ++i) big.add(FltRecordBytes(250, 65532));
    const std::string bigPath = f.write("big.flt", big);
    FltFixture top;
    top.header().push().externalReference("top.flt");
    for (int i = 0; i < 40; ++i) top.externalReference("big.flt");
    const std::string topPath = f.write("top.flt", top.pop());
    auto bytesRead = [] {
        std::ifstream io("/proc/self/io");
        std::string key;
        uint64_t value = 0;
        while (io >> key >> value)
            if (key == "rchar:") return value;
        return uint64_t(0);
    };
    for (unsigned builder : {unsigned(QETZFLT_BUILD_CLASSIC), unsigned(QETZFLT_BUILD_AS_AUTHORED)}) {
        const uint64_t before = bytesRead();
        SoSeparator* root = qetzfltConvert(topPath.c_str(), builder | QETZFLT_LOG_NO_DUMP | QETZFLT_NO_STANDARD_OUTPUT | QETZFLT_NO_ECHO);
        ASSERT_NE(root, nullptr);
        root->ref();
        root->unref();
        const uint64_t read = bytesRead() - before;
        EXPECT_GT(read, 4u << 20) << builder;
        EXPECT_LT(read, 8u << 20) << builder;
        const std::string log = readFile(topPath + ".log");
        EXPECT_EQ(occurrences(log, "Success in opening file: " + bigPath + "\n"), 40u) << builder;
        EXPECT_NE(log.find("Success in opening file: " + topPath + "\n"), std::string::npos) << builder;
        EXPECT_EQ(log.find("HEADER RECORD"), std::string::npos) << builder;
    }
}
