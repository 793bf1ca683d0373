// FltToInventor: converts the records of one OpenFlight database into an Open Inventor
// scene graph.
//
// A host normally calls convertFrom(path) (or FltToInventor::convertFromFile), which
// reads the file, writes a log of the parse next to it (path + ".log"), converts every
// record and hands back the root SoSeparator with a reference count of 1; the caller owns
// it and releases it with unref(). A failed conversion still returns a root, empty or
// partly built; only an empty path returns null. Problems are reported through
// FltWarningMessageConsole.
//
// The converter walks the parser's records once, in file order: palettes fill its
// tables, vertex records fill four shared SoVertexProperty nodes, push and pop records
// drive a stack of open groups, and primary records build nodes under the group on top of
// that stack, with their ancillary records (comments, long names, matrices) applied to
// the node they follow.
#pragma once

#include <Inventor/SbVec2f.h>
#include <Inventor/SbVec3f.h>

#include <cstdint>
#include <deque>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "convert/FltToObject.h"

class SoDrawStyle;
class SoGroup;
class SoInfo;
class SoLabel;
class SoMaterial;
class SoNode;
class SoSeparator;
class SoTexture2;
class SoVertexProperty;

class FltRecord;
class FltRecordHeader;
class FltRecordGroup;
class FltRecordObject;
class FltRecordUnknown;
class FltRecordLongID;
class FltRecordComment;
class FltRecordLOD;
class FltRecordOLDLOD;
class FltRecordSwitch;
class FltRecordDOF;
class FltRecordMatrix;
class FltRecordReplicate;
class FltRecordExternalReference;
class FltRecordInstanceDefinition;
class FltRecordInstanceReference;
class FltRecordClipRegion;
class FltRecordText;
class FltRecordColorPalette;
class FltRecordTexturePattern;
class FltRecordOLDMaterialPalette;
class FltRecordMaterial;
class FltRecordLineStylePalette;
class FltRecordLightSourcePalette;
class FltRecordTextureMappingPalette;
class FltRecordNamePalette;
class FltRecordVertexPalette;
class FltRecordVertexColor;
class FltRecordVertexColorNormal;
class FltRecordVertexColorUv;
class FltRecordVertexColorNormalUv;

using FltRecordIterator = std::vector<FltRecord*>::iterator;

// Where a vertex of the vertex palette landed: its index in one shared property.
struct VertexEntry {
    int32_t index = 0;
    int32_t size = 0;  // the vertex record's length
    SoVertexProperty* property = nullptr;
};

// Vertex palette offsets to converted vertices. Offsets arrive in increasing order while
// the palette is walked, so entries are kept sorted by offset; vertex records are multiples
// of 8 bytes long, so a slot per 8 bytes of palette answers almost every lookup at once,
// and a binary search the others.
class FltVertexOffsetMap {
public:
    // The entry of an offset, created when absent.
    VertexEntry& insert(uint64_t offset);
    // The entry of an offset, or null when no vertex record starts there.
    const VertexEntry* find(uint64_t offset) const
    {
        if ((offset & 7) == 0 && (offset >> 3) < slots_.size()) {
            const uint32_t slot = slots_[offset >> 3];
            return slot ? &entries_[slot - 1].second : nullptr;
        }
        return search(offset);
    }
    size_t size() const { return entries_.size(); }
    const std::vector<std::pair<uint64_t, VertexEntry>>& entries() const { return entries_; }

private:
    const VertexEntry* search(uint64_t offset) const;
    std::vector<std::pair<uint64_t, VertexEntry>> entries_;
    // Entry number + 1 of the vertex at each multiple of 8, 0 for none; valid while entries
    // were appended in increasing order (the slots stop growing otherwise).
    std::vector<uint32_t> slots_;
    bool ordered_ = true;
};

// Ids of the four shared vertex properties; 5 stands for none of them.
enum FltVertexPropertyId {
    VERTEX_COLOR_PROPERTY_ID = 1,
    VERTEX_COLOR_NORMAL_PROPERTY_ID = 2,
    VERTEX_COLOR_UV_PROPERTY_ID = 3,
    VERTEX_COLOR_NORMAL_UV_PROPERTY_ID = 4,
    UNDEFINED_SO_VERTEX_PROPERTY_ID = 5
};

class FltToInventor : public FltToObject<SoSeparator> {
public:
    // The whole conversion run of one file; null only for an empty path.
    static SoSeparator* convertFromFile(const char* path);
    static const char* getProductNameString();
    // True when QETZFLT_NO_LOG is set (to anything but "0"): the log file then receives the
    // parse progress but no dump of the records.
    static bool isRecordDumpSwitchedOff();
    static const char* getVersionString();

    FltToInventor();
    ~FltToInventor() override;
    FltToInventor(const FltToInventor&) = delete;
    FltToInventor& operator=(const FltToInventor&) = delete;

    // FltToObject
    void update(const FltRecord* record) override;
    void setResult(SoSeparator* root) override;
    SoSeparator* getResult() const override;
    void setFltParser(FltParser* parser) override;
    void deleteCurrentFltParser() override;
    int convert() override;
    void setFltInputToconvert(FltInput* input) override;
    bool isAllFltRecordsVisited() const override;
    void visitAllFltRecords() override;
    void destroyAllFltRecords() override;

    void init();
    const std::string& getRelativePath() const { return relativePath; }
    void setRelativePath(const std::string& path) { relativePath = path; }
    void enableFileLogging(const char* fileName);
    void disableFileLogging();
    // Writes the per-opcode record counts next to the input (file name + ".stat").
    void makeStats() const;
    FltParser* getFltParser() const { return fltParser; }

    // The walk over records.
    void visitPrimaryRecord(FltRecordIterator& it);
    void visitControlRecord(FltRecord* record);
    void visitPaletteRecord(FltRecord* record);
    void visitAncillaryRecord(FltRecord* record);
    void visitUnknownCategoryFltRecord(FltRecord* record);
    void iterator2VectorOfAncillaryElements(std::vector<FltRecord*>& out, FltRecordIterator& it);
    void visitAncillaryRecords(FltRecordIterator& it, SoGroup* node);
    void visitGroupChildren(FltRecordIterator& it);
    void visitGroup(const FltRecordGroup* group, FltRecordIterator& it);
    void visitUnknownPrimaryRecord(const FltRecordUnknown* record, FltRecordIterator& it);
    void visitLongID(const FltRecordLongID* record, SoNode* node);
    void visitComment(const FltRecordComment* record, SoGroup* node);

    // The stack of open groups.
    void visitPushLevel();
    void visitPopLevel();
    void addSoGroupToNodesStackTop(SoGroup* node);

    // The header: root name, unit scale, shape hints and bindings.
    void visitHeader(const FltRecordHeader* header);

    // Vertex palette and shared vertex properties.
    void visitVertexPalette(const FltRecordVertexPalette* record);
    void visitVertexColor(const FltRecordVertexColor* record);
    void visitVertexColorNormal(const FltRecordVertexColorNormal* record);
    void visitVertexColorUV(const FltRecordVertexColorUv* record);
    void visitVertexColorNormalUV(const FltRecordVertexColorNormalUv* record);
    SoVertexProperty* getVertexPropertyFromIntId(const int& id);
    int getIntIdFromVertexProperty(SoVertexProperty* property);
    SoVertexProperty* getSoVertexPropertyFromOffset(unsigned long offset);
    int getIndexVertexFromOffset(unsigned long offset);
    int getSizeVertexFromOffset(unsigned long offset);
    // The converted vertex at a palette offset, or null; one lookup for property and index.
    const VertexEntry* findVertexEntry(uint64_t offset) const { return offsetToVertexEntry.find(offset); }
    void copyVertexToVertexColorNormalUV(int sourceId, int sourceIndex, SbVec3f normal, int& newIndex);
    void showOffsetToVertexEntryMap(int lineLimit);

    // Objects and faces.
    void visitObject(const FltRecordObject* object, FltRecordIterator& it);
    void visitObjectFaceRecords(FltRecordIterator& it, const float& transparency, SoGroup*& destination);
    void visitNextSuccessiveFaces(FltRecordIterator& it);

    // Palettes.
    void visitColorPalette(const FltRecordColorPalette* record);
    void visitTexturePattern(const FltRecordTexturePattern* record);
    void visitOLDMaterialPalette(const FltRecordOLDMaterialPalette* record);
    void visitMaterial(const FltRecordMaterial* record);
    void visitLineStylePalette(const FltRecordLineStylePalette* record);
    void visitLightSourcePalette(const FltRecordLightSourcePalette* record);
    void visitTextureMapping(const FltRecordTextureMappingPalette* record);
    void visitNamePalette(const FltRecordNamePalette* record);

    // Level of detail, switch, degree of freedom.
    void visitLOD(const FltRecordLOD* record, FltRecordIterator& it);
    void visitOLDLOD(const FltRecordOLDLOD* record, FltRecordIterator& it);
    void visitSwitch(const FltRecordSwitch* record, FltRecordIterator& it);
    void visitDOF(const FltRecordDOF* record, FltRecordIterator& it);
    void setFltSwitchPropertiesToSoInfo(SoInfo*& info, const FltRecordSwitch* record);
    std::string getInfoStringFromAConvertedFltSwitch(SoGroup* group) const;
    int currentNumberOfSwitchChildren(SoGroup* group) const;
    bool isSoSwitchTraverseHisChildren(SoGroup* group) const;

    // Matrices and replication.
    void visitMatrix(const FltRecordMatrix* record, SoGroup* group);
    void visitReplicate(const FltRecordReplicate* record, SoNode* node, std::vector<FltRecord*>::iterator& listPosition,
                        std::vector<FltRecord*>& ancillaryList, FltRecordIterator& recordPosition);

    // External references and instances.
    void visitExternalReference(const FltRecordExternalReference* record, FltRecordIterator& it);
    void visitInstanceDefinition(const FltRecordInstanceDefinition* record);
    void visitInstanceReference(const FltRecordInstanceReference* record);

    // Clip regions and text.
    void visitClipRegion(const FltRecordClipRegion* record, FltRecordIterator& it);
    void visitText(const FltRecordText* record, FltRecordIterator& it);

    // Read by the object builder.
    bool isPackedColorMode() const { return packedColorMode; }
    int getFormatRevision() const;
    uint32_t getColorTableEntry(long index) const;
    SoMaterial* getPaletteMaterial() const { return paletteMaterial; }
    SoTexture2* getTexture(int patternIndex);
    SoGroup* getNodesStackTop() const;

    static constexpr int kColorTableSize = 4152;
    // The entries each shared vertex property holds before it first grows.
    static constexpr int32_t kSharedVertexCapacity = 100000;

    // Scratch space of the object builder, kept from face to face.
    std::vector<std::pair<int, int32_t>> scratchVertices;

    // Shared vertex property bookkeeping: a count, a capacity and a write cursor per field.
    struct SharedVertexProperty {
        int id = UNDEFINED_SO_VERTEX_PROPERTY_ID;
        SoVertexProperty* property = nullptr;
        int32_t count = 0;
        int32_t capacity = 0;
        bool sized = false;  // fields sized to the initial capacity
        // The property whose vertex field receives this one's positions (see appendVertex).
        SoVertexProperty* positionTarget = nullptr;
    };

    static bool hasNormals(int propertyId)
    {
        return propertyId == VERTEX_COLOR_NORMAL_PROPERTY_ID || propertyId == VERTEX_COLOR_NORMAL_UV_PROPERTY_ID;
    }
    static bool hasTexCoords(int propertyId)
    {
        return propertyId == VERTEX_COLOR_UV_PROPERTY_ID || propertyId == VERTEX_COLOR_NORMAL_UV_PROPERTY_ID;
    }

protected:
    // Shrinks a shared property's fields to the vertices converted into it.
    void trimSharedVertexProperty(SharedVertexProperty& shared);
    // Appends one vertex record to its shared property and records its offset.
    void appendVertex(SharedVertexProperty& shared, const FltRecordVertexColor* record, uint32_t rgba);
    // Sets one entry of the palette material (shininess 0..128 and alpha as in the file).
    void setPaletteMaterial(int index, const float ambient[3], const float diffuse[3], const float specular[3],
                            const float emissive[3], float shininess, float alpha);
    // The packed RGBA of a vertex by its flags, packed colour or colour index.
    uint32_t vertexColor(const FltRecordVertexColor* record, bool normalUvKind) const;

    // The end of the record array is marked by a null entry, so every walk stops there.
    static bool isEnd(const FltRecordIterator& it) { return *it == nullptr; }
    // Moves the iterator one record on, never past the end marker.
    static void advance(FltRecordIterator& it)
    {
        if (*it) ++it;
    }

    FltParser* fltParser = nullptr;
    bool parserCreatedByConverter = false;
    SoSeparator* result = nullptr;
    bool allFltRecordsVisited = false;
    bool vertexPaletteFlushed = false;
    std::string relativePath;

    SoLabel* minRangeLimitLabel = nullptr;
    SoLabel* maxRangeLimitLabel = nullptr;
    SoMaterial* paletteMaterial = nullptr;
    SharedVertexProperty sharedProperties[4];

    std::deque<SoGroup*> nodesStack;
    // For each stack entry, whether its push reopened a node made before a later pop level
    // (a push that follows no primary record); how many such entries are open; how often
    // each group stands on the stack. Instance references need these to stay acyclic.
    std::deque<bool> reopenedEntries;
    int openReopenedEntries = 0;
    std::unordered_map<SoGroup*, int> stackCounts;
    // Open groups whose notification is held until they close (see visitPushLevel).
    std::unordered_set<SoGroup*> quietOpenGroups;
    uint64_t popLevels = 0;
    uint64_t lastPrimaryBirth = 0;
    // Held nodes in the order they were held (null where released early), and where each is.
    std::vector<SoNode*> notificationHeld;
    std::unordered_map<SoNode*, size_t> heldSlots;
    // Nodes built while no group was open: in no graph, so the converter keeps them alive
    // while later records may still reach them (null where released early), where each is,
    // and those to test at the next record of the top level (see releaseUnreachable).
    std::vector<SoNode*> unattachedNodes;
    std::unordered_map<SoNode*, size_t> unattachedSlots;
    std::vector<SoNode*> releaseCandidates;
    // Bytes of comment text that info nodes may still take: 16 times the file plus 16 MiB.
    uint64_t commentTextBudget = uint64_t(16) << 20;
    bool commentBudgetReported = false;
    int hierarchyDepth = 0;
    bool hierarchyTooDeepReported = false;
    SoGroup* currentGroup = nullptr;
    SoGroup* lastPrimaryNode = nullptr;
    SoSeparator* currentObjectSeparator = nullptr;
    bool packedColorMode = false;

    std::map<int, SoNode*> indexToNode;
    std::map<int, SoDrawStyle*> lineStyles;
    std::map<int, SoTexture2*> textures;
    std::map<int, void*> indexToPointer;
    std::map<int, std::string> names;
    FltVertexOffsetMap offsetToVertexEntry;
    uint64_t currentPaletteOffset = 8;
    std::map<std::string, SoSeparator*> externalFiles;
    std::map<int, SoSeparator*> instances;
    uint32_t colorTable[kColorTableSize] = {};
    // Slots from this one on are zero.
    int colorTableFilled = 0;

    // Shared with every nested converter: the files being converted along the current chain
    // of external references (a file referencing itself is converted only once per chain),
    // and how many nested conversions the whole database has made, of how many files.
    struct ReferenceChain {
        std::set<std::string> open;
        std::set<std::string> files;
        size_t conversions = 0;
        bool limitReported = false;
    };
    std::shared_ptr<ReferenceChain> referenceChain;

    std::ofstream* logStream = nullptr;
    static constexpr std::streamsize kLogBufferSize = 1 << 20;
    std::unique_ptr<char[]> logBuffer;
    bool fileLogging = false;
    std::streambuf* savedStandardOutput = nullptr;

    // ---- Switch children, external references and instances ----
public:
    // A switch's property string read back by the rule that decides its children: the
    // first three numbers of the list (current mask, then a separator or a misread digit,
    // then the words per mask) and, for every element, whether it equals 1. Nothing else
    // of the list is ever consulted, so a long mask costs one byte per bit.
    struct SwitchMaskList {
        size_t size = 0;
        long long head[3] = {0, 0, 0};
        std::vector<bool> isOne;
    };
    static SwitchMaskList parseSwitchProperties(const std::string& properties);
    // Whether child `childIndex` (the wrappers already added) is on by the parsed list;
    // off whenever the selected element lies outside the list.
    static bool isSwitchChildOn(const SwitchMaskList& list, long long childIndex);

    // The file an external reference opens: the current directory (may be null) and the
    // name as written, less a leading "./" or ".\".
    static std::string externalReferencePath(const char* dirName, const std::string& name);
    // The prefix a nested converter puts before texture names: ours, then the directory
    // part of the reference's name as written and a slash.
    static std::string nestedRelativePath(const std::string& current, const std::string& name);

    // Chains of external references deeper than this are not followed.
    static constexpr size_t kMaxExternalReferenceDepth = 32;
    // Files that reference one file under several names, or several files that each
    // reference the same ones, would be converted again in every nested converter, a number
    // that doubles with each level: the conversions of one database are bounded by its files.
    static constexpr size_t kNestedConversionsPerFile = 64;
    static constexpr size_t kNestedConversionsMargin = 1024;

protected:
    // True when adding `instance` under `parent` (the stack top) would or could make the
    // instance contain itself; see FltToInventorReferences.cpp.
    bool wouldContainItself(SoGroup* instance, SoGroup* parent) const;
    // The frame of most primary records: `content` becomes the node the next push level
    // opens, `attached` (the content itself, or a node holding it) joins the group on top of
    // the stack, and the ancillary records after the record apply to the content.
    SoGroup* beginPrimaryNode(SoGroup* content, SoGroup* attached, const char* name, FltRecordIterator& it);
    // The node the next push level opens, and when it was made (see visitPushLevel).
    // The converter holds a reference on it, so that it outlives a released group around it.
    void setLastPrimaryNode(SoGroup* node);
    void releaseLastPrimaryNode();
    // Stops a node's change notifications until the walk ends: a node shared by many parents
    // would otherwise pass every change under it to all of them, once per change.
    void holdNotification(SoNode* node);
    // Keeps a node that joins no group alive, as a candidate for early release.
    void keepUnattached(SoNode* node);
    // Between records of the top level, where no visit holds a node, frees the candidates
    // (nodes kept unattached, or that stopped being the last primary node, closed, or lost
    // their instance number) that nothing can reach any more: former primary nodes that
    // nothing holds, and unattached nodes, not the last primary node, not open, held by
    // nothing but the converter.
    void releaseUnreachable();
    // Lets held nodes notify again, and notifies once for what changed under them.
    void releaseNotifications();
    // Gives a group closed by a pop level its notification back, if the push held it.
    void notifyClosedGroup(SoGroup* group);
    // Records the canonical name of the file being converted as the first link of a chain.
    void startReferenceChain();

    // What deciding the next child of a switch separator needs, gathered from the children
    // added since the last child (children are only ever appended), so that each child
    // costs the same whatever the switch already holds.
    struct SwitchChildState {
        int scannedChildren = 0;
        int switchChildren = 0;  // children of type exactly SoSwitch
        bool infoFound = false;
        SwitchMaskList list;
    };
    // One state per switch separator; each key is referenced while it is held, so that a
    // freed group's address can never meet a stale state.
    class SwitchChildStates {
    public:
        SwitchChildStates() = default;
        ~SwitchChildStates() { clear(); }
        SwitchChildStates(const SwitchChildStates&) = delete;
        SwitchChildStates& operator=(const SwitchChildStates&) = delete;
        SwitchChildState& of(SoGroup* group);
        // Forgets every state (a group asked again is scanned from its first child) and
        // gives the groups back, so that released parents can free them.
        void clear();
        bool holds(SoGroup* group) const { return states.count(group) != 0; }

    private:
        std::unordered_map<SoGroup*, SwitchChildState> states;
    };
    mutable SwitchChildStates switchChildStates;
};

extern "C" {
// The plug-in entry points, under plain names for the host's loader.
SoSeparator* convertFrom(const char* path);
const char* getProductName();
const char* getVersion();
}
