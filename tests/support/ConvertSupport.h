// Converting fixture databases in-process and looking at the resulting scene graph.
#pragma once

#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/SoOutput.h>
#include <Inventor/actions/SoSearchAction.h>
#include <Inventor/actions/SoWriteAction.h>
#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoSeparator.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "tools/FltFixture.h"
#include "TestSupport.h"
#include "MemoryInput.h"
#include "QetzFlt/QetzFlt.h"
#include "convert/FltConversion.h"
#include "convert/FltPalettes.h"
#include "convert/FltToInventor.h"
#include "reader/FltRecordColorPalette.h"
#include "reader/FltRecordMaterial.h"
#include "diagnostics/FltWarningMessageConsole.h"

// A vertex at this position, its other fields as the fixture leaves them.
inline FltVertexSpec vertexAt(double x, double y, double z = 0)
{
    FltVertexSpec s;
    s.x = x, s.y = y, s.z = z;
    return s;
}

// Face flags the colour rules read.
constexpr int32_t kNoColor = 0x40000000;
constexpr int32_t kPackedColor = 0x10000000;

// A header of this revision, a colour palette whose entry 5 is (0.4, 0.6, 1.0) and a material
// 2 of diffuse (0.5, 0.25, 1.0), half that ambient, shininess 64 of 128 and alpha 0.25: what
// the colour and look tests give their faces.
inline FltFixture colourPalettes(int32_t revision = 1570)
{
    FltFixture db;
    db.header(revision);
    std::vector<uint32_t> colors(1024, 0);
    colors[5] = 0xFFFF9966u;  // alpha, blue, green, red
    db.colorPalette(colors);
    const float diffuse[3] = {0.5f, 0.25f, 1.0f};
    db.material(2, diffuse, 64.0f, 0.25f);
    return db;
}

// One conversion of a fixture: the root (released at the end), what went to standard
// output and error, the console messages it added and the log file's text.
class Converted {
public:
    Converted(FltFixture& db, const std::string& name = "db.flt") { run(db.bytes(), name); }
    explicit Converted(const std::string& bytes, const std::string& name = "db.flt") { run(bytes, name); }
    // A file written elsewhere (or absent), converted under the path given.
    struct File {
        std::string path;
    };
    explicit Converted(const File& file) { convert(file.path); }
    ~Converted()
    {
        if (root) {
            root->ref();
            root->unref();
        }
    }
    Converted(const Converted&) = delete;
    Converted& operator=(const Converted&) = delete;

    std::string log() const { return readFile(path + ".log"); }
    // The messages, one line each: "[level] text".
    std::string messageLines() const
    {
        std::string lines;
        for (size_t i = 0; i < messages.size(); ++i)
            lines += "[" + std::to_string(levels[i]) + "] " + messages[i] + "\n";
        return lines;
    }

    ScratchDir dir;
    std::string path;
    SoSeparator* root = nullptr;
    std::string printed;
    std::string errors;
    std::vector<std::string> messages;
    std::vector<int> levels;

private:
    void run(const std::string& bytes, const std::string& name)
    {
        writeFile(dir.file(name), bytes);
        convert(dir.file(name));
    }
    void convert(const std::string& file)
    {
        SoDB::init();
        path = file;
        const size_t before = FltWarningMessageConsole::getMessages().size();
        {
            CaptureStream out(std::cout), err(std::cerr);
            root = convertFrom(path.c_str());
            printed = out.text();
            errors = err.text();
        }
        const auto& all = FltWarningMessageConsole::getMessages();
        for (size_t i = before; i < all.size(); ++i) {
            messages.push_back(all[i].message);
            levels.push_back(all[i].level);
        }
    }
};

// A database file converted as authored, with nothing on the standard streams.
struct AuthoredFile {
    explicit AuthoredFile(const std::string& path)
    {
        SoDB::init();
        root = qetzfltConvert(path.c_str(), QETZFLT_BUILD_AS_AUTHORED | QETZFLT_LOG_NONE | QETZFLT_NO_STANDARD_OUTPUT |
                                                QETZFLT_NO_ECHO);
        for (int i = 0; i < qetzfltLastMessageCount(); ++i) {
            messages.push_back(qetzfltLastMessageText(i));
            levels.push_back(qetzfltLastMessageLevel(i));
        }
    }
    ~AuthoredFile()
    {
        if (root) root->unref();
    }
    AuthoredFile(const AuthoredFile&) = delete;
    AuthoredFile& operator=(const AuthoredFile&) = delete;
    SoSeparator* root = nullptr;
    std::vector<std::string> messages;
    std::vector<int> levels;
};

// A quiet parse of a database's bytes: its records, and the palettes they fill in file order.
struct ParsedPalettes {
    explicit ParsedPalettes(FltFixture& db) : ParsedPalettes(db.bytes()) {}
    explicit ParsedPalettes(const std::string& bytes) : parsed(bytes)
    {
        parsed.parser.setDumpStream(nullptr);
        parsed.parser.setProgressStream(nullptr);
        {
            CaptureStream out(std::cout), err(std::cerr);
            parsed.parser.run();
        }
        for (const FltRecord* r : parsed.parser.records) {
            if (const auto* colors = fltRecordCast<FltRecordColorPalette>(r)) palettes.setColorPalette(*colors);
            if (const auto* old = fltRecordCast<FltRecordOLDMaterialPalette>(r)) palettes.setOldMaterials(*old);
            if (const auto* material = fltRecordCast<FltRecordMaterial>(r)) palettes.setMaterial(*material);
        }
    }
    // The n-th record of an opcode, as T.
    template <class T>
    const T& nth(int opcode, int n = 0)
    {
        for (const FltRecord* r : parsed.parser.records)
            if (r->getOpcode() == opcode && n-- == 0) return *fltRecordCast<T>(r);
        throw std::runtime_error("no such record");
    }
    // How many records of an opcode the parse holds.
    int count(int opcode) const
    {
        int n = 0;
        for (const FltRecord* r : parsed.parser.records) n += r->getOpcode() == opcode;
        return n;
    }
    ParsedBytes parsed;
    FltPalettes palettes;
};

// A conversion of a fixture held alive after its walk with its classic builder, so that a
// test can ask what the walk left; the database has no log.
class HeldConversion {
public:
    explicit HeldConversion(FltFixture& db, const FltConversionOptions& options = FltConversionOptions())
        : input(db.bytes()), conversion(std::in_place, input, options)
    {
        SoDB::init();
        root = new SoSeparator;
        root->ref();
        CaptureStream out(std::cout), err(std::cerr);
        status = conversion->convert(root);
    }
    ~HeldConversion()
    {
        conversion.reset();
        // The header visit keeps a reference of its own.
        while (root->getRefCount() > 1) root->unrefNoDelete();
        root->unref();
    }
    HeldConversion(const HeldConversion&) = delete;
    HeldConversion& operator=(const HeldConversion&) = delete;

    template <class Builder = FltToInventor>
    Builder& builder()
    {
        return static_cast<Builder&>(*conversion->getBuilder());
    }
    // Ends the run and its builder, which release what they held.
    void end() { conversion.reset(); }

    MemoryInput input;
    std::optional<FltConversion> conversion;
    SoSeparator* root = nullptr;
    int status = -1;
};

// The first node below root with this name, or null.
inline SoNode* findNamed(SoNode* root, const char* name)
{
    SoSearchAction search;
    search.setName(name);
    search.setInterest(SoSearchAction::FIRST);
    search.setSearchingAll(TRUE);
    search.apply(root);
    return search.getPath() ? search.getPath()->getTail() : nullptr;
}

// Every node below root of this type, in traversal order.
template <class T>
std::vector<T*> findAll(SoNode* root)
{
    SoSearchAction search;
    search.setType(T::getClassTypeId());
    search.setInterest(SoSearchAction::ALL);
    search.setSearchingAll(TRUE);
    search.apply(root);
    std::vector<T*> found;
    const SoPathList& paths = search.getPaths();
    for (int i = 0; i < paths.getLength(); ++i) found.push_back(static_cast<T*>(paths[i]->getTail()));
    return found;
}

// A group's child by position, as T (null when absent or of another type).
template <class T>
T* childAs(SoNode* node, int index)
{
    auto* group = dynamic_cast<SoGroup*>(node);
    if (!group || index < 0 || index >= group->getNumChildren()) return nullptr;
    SoNode* child = group->getChild(index);
    return child->isOfType(T::getClassTypeId()) ? static_cast<T*>(child) : nullptr;
}

using Names = std::vector<std::string>;

// The root's first children (shape hints and two bindings) come before the hierarchy.
constexpr int kHeaderChildren = 3;

// A child of the root after the header's nodes, by position.
inline SoNode* hierarchyChild(const Converted& c, int index) { return childAs<SoNode>(c.root, kHeaderChildren + index); }

// The polygons of the face sets under a node (each closed by -1).
inline int facesInFaceSets(SoNode* root)
{
    int faces = 0;
    for (SoIndexedFaceSet* set : findAll<SoIndexedFaceSet>(root))
        for (int i = 0; i < set->coordIndex.getNum(); ++i) faces += set->coordIndex[i] == -1;
    return faces;
}

// A subtree as text: each node as its type, then ":name" when it has one, then its children
// in brackets, e.g. "Separator:g[Separator:a Switch:w[Separator:b] Info]".
inline std::string tree(SoNode* node)
{
    if (!node) return "null";
    std::string text = node->getTypeId().getName().getString();
    if (node->getName().getLength() > 0) text += std::string(":") + node->getName().getString();
    auto* group = dynamic_cast<SoGroup*>(node);
    if (!group || group->getNumChildren() == 0) return text;
    for (int i = 0; i < group->getNumChildren(); ++i) text += (i ? " " : "[") + tree(group->getChild(i));
    return text + "]";
}

// What a conversion built below its root's header nodes, as trees one after the other.
inline std::string hierarchy(const Converted& c)
{
    std::string text;
    for (int i = kHeaderChildren; i < c.root->getNumChildren(); ++i)
        text += (text.empty() ? "" : " ") + tree(c.root->getChild(i));
    return text;
}

// The scene as ASCII Inventor text.
inline std::string sceneText(SoNode* root)
{
    struct Buffer {
        static void* grow(void* data, size_t size) { return std::realloc(data, size); }
    };
    SoOutput out;
    out.setBuffer(std::malloc(1 << 16), 1 << 16, Buffer::grow);
    SoWriteAction(&out).apply(root);
    void* data = nullptr;
    size_t size = 0;
    out.getBuffer(data, size);
    std::string text(static_cast<const char*>(data), size);
    std::free(data);
    return text;
}

// The scene written as Inventor text and read back, with a reference the caller releases
// (null when the text does not read).
inline SoSeparator* readBack(SoNode* root)
{
    const std::string text = sceneText(root);
    SoInput in;
    in.setBuffer(text.data(), text.size());
    SoSeparator* back = SoDB::readAll(&in);
    if (back) back->ref();
    return back;
}
