// FltToInventor: the builder of the classic conversion, which reproduces the established
// converter's scene graph exactly.
//
// It walks the parsed records once, in file order: palettes fill its tables, vertex records
// fill four shared SoVertexProperty nodes, push and pop records drive the stack of open
// groups, and primary records build nodes under the group on top of that stack, with their
// ancillary records (comments, long names, matrices, replication) applied to the node they
// follow. External references go back to the conversion run, which converts them with the
// same options.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "convert/FltNodePool.h"
#include "convert/FltNodeStack.h"
#include "convert/FltPalettes.h"
#include "convert/FltRecordNames.h"
#include "convert/FltSceneBuilder.h"
#include "convert/FltSharedVertexProperties.h"
#include "convert/FltSwitchChildren.h"
#include "reader/FltRecordStore.h"

class SoDrawStyle;
class SoGroup;
class SoLabel;
class SoLOD;
class SoNode;
class SoSeparator;
class SoTexture2;

class FltRecord;
class FltRecordHeader;
class FltRecordGroup;
class FltRecordObject;
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
class FltRecordTexturePattern;
class FltRecordLineStylePalette;
class FltRecordVertexColor;

class FltToInventor : public FltSceneBuilder {
public:
    // A builder of the context's records under root (which the caller holds).
    FltToInventor(const FltBuildContext& context, SoSeparator* root);
    // Releases the nodes the builder held that no part of the graph took up.
    ~FltToInventor() override;
    FltToInventor(const FltToInventor&) = delete;
    FltToInventor& operator=(const FltToInventor&) = delete;

    void build() override;

    // What the walk has read and built, for a host that keeps the builder.
    const FltPalettes& getPalettes() const { return palettes; }
    const FltSharedVertexProperties& getVertexProperties() const { return vertexProperties; }

    // The walk over records.
    void visitAllFltRecords();
    void visitPrimaryRecord(FltRecordIterator& it);
    void visitControlRecord(const FltRecord* record);
    void visitPaletteRecord(const FltRecord* record);
    // Sizes the vertex pool once for the vertex records after the palette record at it.
    void reserveVertexPool(FltRecordIterator it);
    void visitAncillaryRecords(FltRecordIterator& it, SoGroup* node);
    void visitGroupChildren(FltRecordIterator& it);
    void visitGroup(const FltRecordGroup* group, FltRecordIterator& it);
    void visitLongID(const FltRecordLongID* record, SoNode* node);
    void visitComment(const FltRecordComment* record, SoGroup* node);

    // The stack of open groups.
    void visitPushLevel();
    void visitPopLevel();
    void addSoGroupToNodesStackTop(SoGroup* node);

    // The header: root name, unit scale, shape hints and bindings.
    void visitHeader(const FltRecordHeader* header);

    // Palettes, the vertex palette among them.
    void visitTexturePattern(const FltRecordTexturePattern* record);
    void visitLineStylePalette(const FltRecordLineStylePalette* record);
    void visitVertex(const FltRecordVertexColor* record, int kind);

    // Objects and faces.
    void visitObject(const FltRecordObject* object, FltRecordIterator& it);
    void visitObjectFaceRecords(FltRecordIterator& it, float transparency, SoGroup* destination);
    void visitNextSuccessiveFaces(FltRecordIterator& it);

    // Level of detail, switch, degree of freedom.
    void visitLOD(const FltRecordLOD* record, FltRecordIterator& it);
    void visitOLDLOD(const FltRecordOLDLOD* record, FltRecordIterator& it);
    void visitSwitch(const FltRecordSwitch* record, FltRecordIterator& it);
    void visitDOF(const FltRecordDOF* record, FltRecordIterator& it);

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

private:
    // The nodes some records become (see FltToInventorNodes.cpp).
    void addHeaderNodes(const FltRecordHeader& header);
    SoLOD* makeLod(const FltRecordLOD& record);
    void completeLod(SoLOD* lod, SoSeparator* content);
    static void widenOldLod(const FltRecordOLDLOD& record, FltRecordLOD& widened);
    SoSeparator* makeSwitchSeparator(const FltRecordSwitch& record);
    static void addClipPlanes(SoGroup* separator, const FltRecordClipRegion& record);
    // Converts the database a reference names into its separator, or shares the one already
    // converted; false when the file cannot be opened (reported).
    bool convertReferencedFile(const std::string& name, SoSeparator* reference);

    // The frame of most primary records: `content` becomes the node the next push level
    // opens, `attached` (the content itself, or a node holding it) joins the group on top of
    // the stack, and the ancillary records after the record apply to the content.
    SoGroup* beginPrimaryNode(SoGroup* content, SoGroup* attached, const char* name, FltRecordIterator& it);
    // Names `node` with `id`, the id of the record at `it`, taking the name made before the walk.
    void nameFromRecord(SoNode* node, const char* id, FltRecordIterator it);

    FltBuildContext context;
    SoSeparator* result;
    FltPalettes palettes;
    FltSharedVertexProperties vertexProperties;
    FltSwitchChildren switchChildren;
    FltNodeStack nodes;
    FltNodePool pool;  // during build(): the nodes of objects, made kind by kind
    std::unique_ptr<FltRecordNames> recordNames;  // during build(): the names of the records' ids
    uint64_t nextProgress = 0;  // the record at which to tell the progress hook next
    bool vertexPaletteFlushed = false;
    bool packedColorMode = false;
    int headersVisited = 0;

    SoLabel* minRangeLimitLabel = nullptr;
    SoLabel* maxRangeLimitLabel = nullptr;
    // The tables hold a reference on each node: the faces that used an earlier entry may be
    // released before the conversion ends.
    std::map<int, SoTexture2*> textures;
    std::map<int, SoDrawStyle*> lineStyles;
    std::map<int, SoSeparator*> instances;
    // The converted root of each file referenced from this one, shared by its references.
    std::map<std::string, SoSeparator*> externalFiles;

    // Bytes of comment text that info nodes may still take: 16 times the file plus 16 MiB.
    uint64_t commentTextBudget = 0;
    bool commentBudgetReported = false;
    int hierarchyDepth = 0;
    bool hierarchyTooDeepReported = false;
};
