// External references: nested conversions shared per file within one converter, their
// label, how names are resolved and texture names prefixed, missing files, cycles and deep
// chains; and the real databases made of references.
#include <gtest/gtest.h>

#include <Inventor/SoInput.h>
#include <Inventor/SoOutput.h>
#include <Inventor/actions/SoWriteAction.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoMatrixTransform.h>
#include <Inventor/nodes/SoTexture2.h>

#include <filesystem>
#include <set>

#include "ConvertSupport.h"

namespace fs = std::filesystem;

namespace {

using Types = std::vector<std::string>;
using Names = std::vector<std::string>;

constexpr int kHeaderChildren = 3;
const std::string kLabelPrefix = "From OpenFlight File:  ";

// Several databases in one scratch folder; one of them converted as the host would.
class ConvertedFiles {
public:
    ~ConvertedFiles()
    {
        if (root) {
            root->ref();
            root->unref();
        }
    }

    // Writes a database under the folder, making the folders on its way.
    void write(const std::string& relative, FltFixture& db)
    {
        const fs::path path = dir.path() / relative;
        fs::create_directories(path.parent_path());
        writeFile(path.string(), db.bytes());
    }

    void convert(const std::string& relative) { convertPath((dir.path() / relative).string()); }

    void convertPath(const std::string& path)
    {
        SoDB::init();
        const size_t before = FltWarningMessageConsole::getMessages().size();
        {
            CaptureStream out(std::cout), err(std::cerr);
            root = convertFrom(path.c_str());
            errors = err.text();
        }
        const auto& all = FltWarningMessageConsole::getMessages();
        for (size_t i = before; i < all.size(); ++i) {
            messages.push_back(all[i].message);
            levels.push_back(all[i].level);
        }
    }

    ScratchDir dir;
    SoSeparator* root = nullptr;
    std::string errors;
    std::vector<std::string> messages;
    std::vector<int> levels;
};

// A database holding one named group, and the references given, at its top level.
FltFixture database(const std::string& group, const std::vector<std::string>& references = {})
{
    FltFixture db;
    db.header().push();
    db.group(group).push().pop();
    for (const std::string& reference : references) db.externalReference(reference);
    db.pop();
    return db;
}

// The reference separators directly under a group: those whose first child is the label.
std::vector<SoSeparator*> referencesUnder(SoNode* node)
{
    std::vector<SoSeparator*> found;
    auto* group = dynamic_cast<SoGroup*>(node);
    for (int i = 0; group && i < group->getNumChildren(); ++i) {
        auto* separator = childAs<SoSeparator>(group, i);
        if (separator && childAs<SoLabel>(separator, 0)) found.push_back(separator);
    }
    return found;
}

std::string labelOf(SoSeparator* reference)
{
    auto* label = childAs<SoLabel>(reference, 0);
    return label ? label->label.getValue().getString() : "";
}

// The converted root of a referenced file: the last child of its reference separator.
SoSeparator* nestedRoot(SoSeparator* reference)
{
    if (!reference || reference->getNumChildren() < 2) return nullptr;
    return childAs<SoSeparator>(reference, reference->getNumChildren() - 1);
}

// The names of the groups a converted file holds below its root's header nodes.
Names groupsOf(SoNode* root)
{
    Names names = childNames(root);
    names.erase(names.begin(), names.begin() + std::min<size_t>(kHeaderChildren, names.size()));
    return names;
}

}  // namespace

// ---- Labels, sharing and resolution ----

TEST(ExternalReference, labelledSeparatorHoldsTheReferencedFilesRoot)
{
    ConvertedFiles f;
    FltFixture part = database("p");
    f.write("part.flt", part);
    FltFixture top;
    top.header().push();
    top.externalReference("part.flt").translationMatrix(0, 0, 1);
    top.pop();
    f.write("top.flt", top);
    f.convert("top.flt");

    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 1u);
    EXPECT_EQ(labelOf(references[0]), kLabelPrefix + "part.flt");
    EXPECT_EQ(childTypes(references[0]), (Types{"Label", "MatrixTransform", "Separator"}));
    SoSeparator* nested = nestedRoot(references[0]);
    EXPECT_EQ(nested->getName(), SbName("root"));
    EXPECT_EQ(groupsOf(nested), (Names{"p"}));
    EXPECT_TRUE(f.messages.empty());
    // The nested conversion writes into the caller's log, never a log of its own.
    EXPECT_FALSE(fs::exists(f.dir.file("part.flt.log")));
    EXPECT_NE(readFile(f.dir.file("top.flt.log")).find("part.flt"), std::string::npos);
}

TEST(ExternalReference, referencesToOneFileFromOneFileShareOneConversion)
{
    ConvertedFiles f;
    FltFixture part = database("p");
    f.write("part.flt", part);
    FltFixture top = database("t", {"part.flt", "./part.flt", "part.flt"});
    f.write("top.flt", top);
    f.convert("top.flt");

    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 3u);
    EXPECT_EQ(labelOf(references[1]), kLabelPrefix + "./part.flt");
    SoSeparator* shared = nestedRoot(references[0]);
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(nestedRoot(references[1]), shared);
    EXPECT_EQ(nestedRoot(references[2]), shared);
    EXPECT_EQ(groupsOf(f.root), (Names{"t", "", "", ""}));
}

TEST(ExternalReference, aReferencedFilesReferencesAreItsOwnToConvert)
{
    // top -> sub/mid.flt -> ./leaf.flt (beside mid) and ../leaf.flt (beside top); top also
    // references sub/leaf.flt itself: its converter and mid's each convert it once.
    ConvertedFiles f;
    FltFixture leafBesideMid = database("in_sub");
    f.write("sub/leaf.flt", leafBesideMid);
    FltFixture leafBesideTop = database("at_top");
    f.write("leaf.flt", leafBesideTop);
    FltFixture mid = database("mid", {"./leaf.flt", "../leaf.flt", "leaf.flt"});
    f.write("sub/mid.flt", mid);
    FltFixture top = database("top", {"sub/mid.flt", "sub/leaf.flt"});
    f.write("top.flt", top);
    f.convert("top.flt");

    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 2u);
    SoSeparator* midRoot = nestedRoot(references[0]);
    ASSERT_NE(midRoot, nullptr);
    std::vector<SoSeparator*> midReferences = referencesUnder(midRoot);
    ASSERT_EQ(midReferences.size(), 3u);
    EXPECT_EQ(groupsOf(nestedRoot(midReferences[0])), (Names{"in_sub"}));
    EXPECT_EQ(groupsOf(nestedRoot(midReferences[1])), (Names{"at_top"}));
    EXPECT_EQ(nestedRoot(midReferences[2]), nestedRoot(midReferences[0]));  // "./" dropped: one key

    SoSeparator* topsLeaf = nestedRoot(references[1]);
    EXPECT_EQ(groupsOf(topsLeaf), (Names{"in_sub"}));
    EXPECT_NE(topsLeaf, nestedRoot(midReferences[0]));
    EXPECT_TRUE(f.messages.empty());
}

TEST(ExternalReference, aFileNamedWithoutDirectoryResolvesNamesAlone)
{
    ConvertedFiles f;
    FltFixture part = database("p");
    f.write("part.flt", part);
    FltFixture top = database("t", {"part.flt"});
    f.write("top.flt", top);
    const fs::path saved = fs::current_path();
    fs::current_path(f.dir.path());
    f.convertPath("top.flt");
    fs::current_path(saved);
    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 1u);
    EXPECT_EQ(groupsOf(nestedRoot(references[0])), (Names{"p"}));
}

TEST(ExternalReference, namesWrittenWithBackslashesResolveAndKeepTheirSpelling)
{
    ConvertedFiles f;
    FltFixture part = database("p");
    f.write("sub/part.flt", part);
    FltFixture top = database("t", {".\\sub\\part.flt"});
    f.write("top.flt", top);
    f.convert("top.flt");
    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 1u);
    EXPECT_EQ(labelOf(references[0]), kLabelPrefix + ".\\sub\\part.flt");
    EXPECT_EQ(groupsOf(nestedRoot(references[0])), (Names{"p"}));
}

TEST(ExternalReference, nestedRelativePathIsTheNameAsWrittenUpToItsLastSeparator)
{
    EXPECT_EQ(FltToInventor::nestedRelativePath("", "./sub/house.flt"), "./sub/");
    EXPECT_EQ(FltToInventor::nestedRelativePath("../", "../123.flt"), "../../");
    EXPECT_EQ(FltToInventor::nestedRelativePath("x/", "house.flt"), "x/");
    EXPECT_EQ(FltToInventor::nestedRelativePath("", "a\\b/c\\d.flt"), "a\\b/c/");
    EXPECT_EQ(FltToInventor::externalReferencePath("/data/", "./sub/house.flt"), "/data/sub/house.flt");
    EXPECT_EQ(FltToInventor::externalReferencePath("/data/", "../up.flt"), "/data/../up.flt");
    EXPECT_EQ(FltToInventor::externalReferencePath(nullptr, ".\\a.flt"), "a.flt");
    EXPECT_EQ(FltToInventor::externalReferencePath("/data/", "..flt"), "/data/..flt");
}

TEST(ExternalReference, texturesInsideAReferencedFileGetItsRelativePath)
{
    ConvertedFiles f;
    FltFixture house;
    house.header();
    house.texturePattern(0, "tex/wall.rgb");
    house.vertexPalette();
    const int a = house.vertexColor(0, 0, 0), b = house.vertexColor(1, 0, 0), c = house.vertexColor(0, 1, 0);
    house.push();
    FltFaceSpec face;
    face.texturePatternIndex = 0;
    house.object("o").push().face(face).push().vertexList({a, b, c}).pop().pop();
    house.pop();
    f.write("sub/house.flt", house);
    FltFixture top = database("t", {"./sub/house.flt"});
    f.write("top.flt", top);
    f.convert("top.flt");
    std::vector<SoTexture2*> textures = findAll<SoTexture2>(f.root);
    ASSERT_FALSE(textures.empty());
    for (SoTexture2* texture : textures)
        EXPECT_EQ(std::string(texture->filename.getValue().getString()), "./sub/tex/wall.rgb");
}

// ---- Failures ----

TEST(ExternalReference, missingFileLeavesTheLabelAndReportsTheNameAsWritten)
{
    ConvertedFiles f;
    FltFixture top;
    top.header().push();
    top.externalReference("./gone/missing.flt");
    top.group("passed_over").push().pop();
    top.group("after").push().pop();
    top.pop();
    f.write("top.flt", top);
    f.convert("top.flt");
    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 1u);
    EXPECT_EQ(childTypes(references[0]), (Types{"Label"}));
    const std::string message = "ERROR! CAN'T RESOLVE EXTERNAL REFERENCE: ./gone/missing.flt";
    EXPECT_EQ(f.messages, (Names{message}));
    EXPECT_EQ(f.levels, (std::vector<int>{3}));
    EXPECT_NE(f.errors.find(message + "\n(Warning Level: 3)\n\n"), std::string::npos);
    // The walk is not stepped back on this way out: the record after the reference is
    // passed over, and the conversion goes on after it.
    EXPECT_EQ(groupsOf(f.root), (Names{"", "after"}));
}

TEST(ExternalReference, emptyNameLeavesTheLabelAndTheNextRecordConverted)
{
    ConvertedFiles f;
    FltFixture top;
    top.header().push();
    top.externalReference("");
    top.group("next").push().pop();
    top.pop();
    f.write("top.flt", top);
    f.convert("top.flt");
    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 1u);
    EXPECT_EQ(labelOf(references[0]), kLabelPrefix);
    EXPECT_EQ(childTypes(references[0]), (Types{"Label"}));
    EXPECT_EQ(groupsOf(f.root), (Names{"", "next"}));
    EXPECT_TRUE(f.messages.empty());
}

TEST(ExternalReference, aFileThatIsNotADatabaseLeavesAnEmptyRoot)
{
    ConvertedFiles f;
    writeFile(f.dir.file("text.flt"), "this is not OpenFlight");
    FltFixture top = database("t", {"text.flt", "text.flt"});
    f.write("top.flt", top);
    f.convert("top.flt");
    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 2u);
    SoSeparator* empty = nestedRoot(references[0]);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->getNumChildren(), 0);
    EXPECT_EQ(nestedRoot(references[1]), empty);
    EXPECT_EQ(f.messages, (Names{"ERROR! Not an Openflight Input !"}));
}

TEST(ExternalReference, externalReferenceCycle_stopsWithMessage)
{
    // a -> a directly; a -> b -> a through another file, spelled differently.
    ConvertedFiles f;
    FltFixture self = database("self", {"self.flt"});
    f.write("self.flt", self);
    f.convert("self.flt");
    std::vector<SoSeparator*> selfReferences = referencesUnder(f.root);
    ASSERT_EQ(selfReferences.size(), 1u);
    EXPECT_EQ(childTypes(selfReferences[0]), (Types{"Label"}));
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0], "ERROR ! External reference cycle: self.flt leads back to " +
                                 fs::canonical(f.dir.file("self.flt")).string() +
                                 ", which is already being converted; not converted again");
    EXPECT_EQ(f.levels, (std::vector<int>{3}));

    ConvertedFiles g;
    FltFixture a = database("a", {"sub/b.flt"});
    g.write("a.flt", a);
    FltFixture b = database("b", {"../sub/../a.flt"});
    g.write("sub/b.flt", b);
    g.convert("a.flt");
    SoSeparator* bRoot = nestedRoot(referencesUnder(g.root).at(0));
    ASSERT_NE(bRoot, nullptr);
    EXPECT_EQ(groupsOf(bRoot), (Names{"b", ""}));
    EXPECT_EQ(childTypes(referencesUnder(bRoot).at(0)), (Types{"Label"}));
    ASSERT_EQ(g.messages.size(), 1u);
    EXPECT_NE(g.messages[0].find("../sub/../a.flt leads back to"), std::string::npos);
}

TEST(ExternalReference, aFileReachedTwiceWithoutACycleIsNoCycle)
{
    // a -> b, a -> c, b -> c: c is converted by a's converter and by b's, silently.
    ConvertedFiles f;
    FltFixture c = database("c");
    f.write("c.flt", c);
    FltFixture b = database("b", {"c.flt"});
    f.write("b.flt", b);
    FltFixture a = database("a", {"b.flt", "c.flt"});
    f.write("a.flt", a);
    f.convert("a.flt");
    std::vector<SoSeparator*> references = referencesUnder(f.root);
    ASSERT_EQ(references.size(), 2u);
    EXPECT_EQ(groupsOf(nestedRoot(references[1])), (Names{"c"}));
    EXPECT_EQ(groupsOf(nestedRoot(referencesUnder(nestedRoot(references[0])).at(0))), (Names{"c"}));
    EXPECT_TRUE(f.messages.empty());
}

TEST(ExternalReference, chainsDeeperThanTheLimitStopWithMessage)
{
    // f0 -> f1 -> ... -> f39: the first 32 nested levels are converted, f33 is not.
    ConvertedFiles f;
    constexpr int kFiles = 40;
    for (int i = 0; i < kFiles; ++i) {
        std::vector<std::string> next;
        if (i + 1 < kFiles) next.push_back("f" + std::to_string(i + 1) + ".flt");
        FltFixture db = database("g" + std::to_string(i), next);
        f.write("f" + std::to_string(i) + ".flt", db);
    }
    f.convert("f0.flt");
    int converted = 0;
    SoNode* level = f.root;
    while (true) {
        std::vector<SoSeparator*> references = referencesUnder(level);
        if (references.empty()) break;
        SoSeparator* nested = nestedRoot(references[0]);
        if (!nested) break;
        ++converted;
        EXPECT_EQ(groupsOf(nested).at(0), "g" + std::to_string(converted));
        level = nested;
    }
    EXPECT_EQ(converted, static_cast<int>(FltToInventor::kMaxExternalReferenceDepth));
    EXPECT_EQ(f.messages, (Names{"ERROR ! External references nested more than 32 levels deep: f33.flt is not converted"}));
}

// ---- The real databases made of references ----

namespace {

// A copy of a shared folder of real databases in a scratch folder (the logs are written
// beside the files), or empty when the shared data is absent.
std::string copyOfSharedData(const ScratchDir& dir, const std::string& relative)
{
    const std::string shared = sharedDataDir();
    if (shared.empty()) return "";
    const fs::path source = fs::path(shared) / relative;
    if (!fs::is_directory(source)) return "";
    const fs::path target = dir.path() / relative;
    fs::create_directories(target);
    fs::copy(source, target, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    for (const auto& entry : fs::recursive_directory_iterator(target))
        fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add);
    fs::permissions(target, fs::perms::owner_write, fs::perm_options::add);
    return target.string();
}

// Every label of a reference below root, in traversal order.
Names referenceLabels(SoNode* root)
{
    Names labels;
    for (SoLabel* label : findAll<SoLabel>(root)) {
        const std::string text = label->label.getValue().getString();
        if (text.rfind(kLabelPrefix, 0) == 0) labels.push_back(text.substr(kLabelPrefix.size()));
    }
    return labels;
}

}  // namespace

TEST(RealReferences, chainAcrossFoldersConvertsEveryFileOnce)
{
    ConvertedFiles f;
    const std::string folder = copyOfSharedData(f.dir, "real/nested_references");
    if (folder.empty()) GTEST_SKIP() << "../shared/data/real/nested_references is absent";
    f.convertPath(folder + "/master/master.flt");
    ASSERT_NE(f.root, nullptr);
    EXPECT_EQ(referenceLabels(f.root), (Names{"../shared/a.flt", "./b.flt"}));
    // Three converted roots: master's and one per referenced file.
    int roots = 0;
    for (SoSeparator* separator : findAll<SoSeparator>(f.root))
        if (separator->getName() == SbName("root")) ++roots;
    EXPECT_EQ(roots, 3);
    for (const std::string& message : f.messages) EXPECT_EQ(message.rfind("ERROR", 0), std::string::npos) << message;
}

TEST(RealReferences, texturesOfEveryLevelNamedFromTheTopFile)
{
    ConvertedFiles f;
    const std::string folder = copyOfSharedData(f.dir, "real/nested_references2");
    if (folder.empty()) GTEST_SKIP() << "../shared/data/real/nested_references2 is absent";
    const std::string top = folder + "/db/1/12/123/1234/1234.flt";
    f.convertPath(top);
    ASSERT_NE(f.root, nullptr);
    EXPECT_EQ(referenceLabels(f.root), (Names{"../123.flt", "../12.flt", "../1.flt"}));
    for (const std::string& message : f.messages) EXPECT_EQ(message.rfind("ERROR", 0), std::string::npos) << message;

    std::vector<SoTexture2*> textures = findAll<SoTexture2>(f.root);
    std::set<std::string> names;
    for (SoTexture2* texture : textures) names.insert(texture->filename.getValue().getString());
    const std::set<std::string> expected{"../t_com/t_dig4.rgb", "../../t_com/t_dig3.rgb", "../../../t_com/t_dig2.rgb",
                                         "../../../../t_com/t_dig1.rgb"};
    EXPECT_EQ(names, expected);
    // Read from the top file's folder, each name reaches its image.
    for (const std::string& name : expected) EXPECT_TRUE(fs::exists(fs::path(top).parent_path() / name)) << name;
}

TEST(RealReferences, writtenAsAnInventorFileAndReadBackTheSceneKeepsItsShape)
{
    ConvertedFiles f;
    const std::string folder = copyOfSharedData(f.dir, "real/nested_references");
    if (folder.empty()) GTEST_SKIP() << "../shared/data/real/nested_references is absent";
    f.convertPath(folder + "/master/master.flt");
    ASSERT_NE(f.root, nullptr);

    const std::string ivPath = f.dir.file("master.iv");
    {
        SoOutput out;
        ASSERT_TRUE(out.openFile(ivPath.c_str()));
        SoWriteAction write(&out);
        write.apply(f.root);
        out.closeFile();
    }
    const std::string text = readFile(ivPath);
    EXPECT_NE(text.find("label \"From OpenFlight File:  ../shared/a.flt\""), std::string::npos);
    EXPECT_NE(text.find("label \"From OpenFlight File:  ./b.flt\""), std::string::npos);

    SoInput in;
    ASSERT_TRUE(in.openFile(ivPath.c_str()));
    SoSeparator* read = SoDB::readAll(&in);
    ASSERT_NE(read, nullptr);
    read->ref();
    EXPECT_EQ(referenceLabels(read), (Names{"../shared/a.flt", "./b.flt"}));
    // Reference separators read back as label, matrix (master's only) and nested root.
    SoNode* scene = read->getNumChildren() == 1 ? read->getChild(0) : read;
    std::vector<std::string> shapes;
    for (SoSeparator* separator : findAll<SoSeparator>(scene))
        if (childAs<SoLabel>(separator, 0)) {
            std::string shape;
            for (const std::string& type : childTypes(separator)) shape += type + " ";
            shapes.push_back(shape);
        }
    EXPECT_EQ(shapes, (Names{"Label MatrixTransform Separator ", "Label Separator "}));
    // Nothing lost on the way: as many face sets, transforms and labels as converted.
    EXPECT_EQ(findAll<SoIndexedFaceSet>(read).size(), findAll<SoIndexedFaceSet>(f.root).size());
    EXPECT_FALSE(findAll<SoIndexedFaceSet>(read).empty());
    EXPECT_EQ(findAll<SoMatrixTransform>(read).size(), findAll<SoMatrixTransform>(f.root).size());
    EXPECT_EQ(findAll<SoLabel>(read).size(), findAll<SoLabel>(f.root).size());
    read->unref();
}
