// FltAuthoredBuilder: the builder of the as-authored conversion, which draws a database as
// the OpenFlight format means it.
//
// It walks the records once, in file order, into a FltScene: push and pop levels nest the
// nodes of groups, objects, levels of detail, switches and references; the faces and meshes
// under a node become polygons of meshes, one per appearance, coloured by their light mode,
// their material and their transparency, moved by the matrices that follow them. Then one
// step turns the scene into the Inventor graph under the root.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "convert/FltAuthoredLook.h"
#include "convert/FltPalettes.h"
#include "convert/FltScene.h"
#include "convert/FltSceneBuilder.h"
#include "reader/FltMeshRecords.h"
#include "reader/FltRecordStore.h"

class FltRecord;
class FltRecordFace;
class SoSeparator;

class FltAuthoredBuilder : public FltSceneBuilder {
public:
    // A builder of the context's records; with a root, build() puts the scene's graph under
    // it, without one the scene is only walked (for a referencing database).
    FltAuthoredBuilder(const FltBuildContext& context, SoSeparator* root);
    ~FltAuthoredBuilder() override;
    FltAuthoredBuilder(const FltAuthoredBuilder&) = delete;
    FltAuthoredBuilder& operator=(const FltAuthoredBuilder&) = delete;

    void build() override;
    // Walks the records into the scene, once.
    std::shared_ptr<FltScene> walk();

    // Hierarchies deeper than this are flattened: every Inventor action recurses through them.
    static constexpr int kMaxDepth = 500;

private:
    // A face or a mesh whose vertices are still to come, until its push level closes.
    struct PendingFace {
        bool mesh = false;
        FltDrawFields fields;
        int parent = 0;  // the node it draws in
        uint16_t objectTransparency = 0;
        bool hasMatrix = false;
        double matrix[16] = {};
        std::vector<int32_t> offsets;  // vertex palette offsets, in order
        // Vertices of the obsolete records placed under the face itself.
        std::vector<const FltRecord*> oldVertices;
        FltLocalVertexPool pool;
        std::vector<FltMeshPrimitive> primitives;
        uint64_t offset = 0;  // of its record, for messages
        // Empties the face for another record, keeping the room its lists took.
        void reset();
    };
    struct Level {
        int node = 0;
        int face = -1;  // an open face: its vertex lists follow
    };
    // One vertex of a polygon before it joins a mesh.
    struct Corner {
        double position[3];
        float normal[3];
        bool hasNormal;
        float uv[2];
        FltRgba color;
        uint64_t key;         // what makes two corners the same vertex of a mesh
        int64_t ordinal = -1;  // of a vertex palette vertex, for the quick path
    };

    void visitRecord(FltRecordIterator& it);
    void visitPrimary(FltRecordIterator& it);
    void visitControl(const FltRecord* record, uint64_t offset);
    void visitPalette(const FltRecord* record);
    void visitAncillary(FltRecordIterator& it);
    int addNode(FltSceneNode::Kind kind, const char* name);
    // A level of detail from a current or an old record.
    template <class Lod>
    int addLevelOfDetail(const Lod* lod);
    void attach(int child);
    int top() const;
    void pushLevel(uint64_t offset);
    void popLevel();
    void beginFace(const FltDrawFields& fields, FltRecordIterator& it, bool mesh);
    void finishFace(int face);
    // Adds a polygon of the face (moved by its matrix, the transform's serial number told)
    // to the mesh of its node for the look's appearance.
    void addPolygon(PendingFace& face, std::vector<Corner>& corners, uint64_t transform);
    int meshFor(int node, int appearance);
    int textureOf(int pattern);
    void reportMissingVertices();

    FltBuildContext context_;
    SoSeparator* root_;
    std::shared_ptr<FltScene> scene_;
    bool walked_ = false;
    FltPalettes palettes_;
    int revision_ = 0;

    std::vector<Level> stack_;
    int lastNode_ = -1;  // the node the next push level opens
    int lastFace_ = -1;  // the face the next push level opens, or the ancillary records follow
    std::vector<PendingFace> faces_;
    std::vector<int> freeFaces_;
    std::vector<uint16_t> nodeTransparency_;  // an object's transparency, inherited below it
    std::vector<int> nodeHeight_;             // how deep the hierarchy below each node goes
    std::map<int, int> instances_;            // instance number to its node
    std::map<std::string, std::shared_ptr<const FltScene>> references_;
    bool depthReported_ = false;

    // Appearances, meshes and vertices already made.
    std::map<std::string, int> appearanceIndex_;
    std::unordered_map<uint64_t, int> meshIndex_;  // node and appearance to mesh
    // A vertex of a mesh: the same palette vertex (or pool vertex) under the same transform
    // in the same colour.
    struct VertexKey {
        uint64_t corner;
        uint64_t transform;
        uint32_t color;
        uint32_t mesh;
        bool operator==(const VertexKey& o) const
        {
            return corner == o.corner && transform == o.transform && color == o.color && mesh == o.mesh;
        }
    };
    struct VertexKeyHash {
        size_t operator()(const VertexKey& k) const
        {
            uint64_t h = k.corner * 0x9E3779B97F4A7C15ull;
            h ^= (k.transform + 0x632BE59BD9B4E019ull + (h << 6) + (h >> 2));
            h ^= (uint64_t(k.color) << 32 | k.mesh) + 0x9E3779B97F4A7C15ull + (h << 6) + (h >> 2);
            return static_cast<size_t>(h);
        }
    };
    std::unordered_map<VertexKey, uint32_t, VertexKeyHash> vertexIndex_;
    uint64_t transformSerial_ = 0;
    std::map<int, int> textureIndex_;  // pattern index to scene texture, -1 when missing

    // The last face's fields and look: most faces repeat the one before.
    bool haveLastLook_ = false;
    FltDrawFields lastFields_;
    uint16_t lastObjectTransparency_ = 0;
    FltAuthoredLook lastLook_;
    int lastAppearance_ = -1;

    std::vector<double> polygonPoints_;  // scratch, from polygon to polygon
    std::vector<Corner> corners_;
    // The first mesh vertex made of each vertex palette vertex: most faces that use one are
    // in the same mesh, colour and transform, and find it here without the hash table.
    struct FirstUse {
        uint32_t mesh = UINT32_MAX;
        uint32_t index = 0;
        uint32_t color = 0;
        uint64_t transform = 0;
    };
    std::vector<FirstUse> firstUse_;
    uint64_t lastMeshKey_ = UINT64_MAX;
    int lastMesh_ = -1;
    uint64_t missingVertices_ = 0;
    uint64_t firstMissingAt_ = 0;
};
