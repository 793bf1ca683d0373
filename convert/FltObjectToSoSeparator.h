// FltObjectToSoSeparator: builds the geometry of one object (or of a run of faces outside
// any object) into a destination group.
//
// The faces are sorted into eight groups, one per shared vertex property (ids 1 to 4) for
// faces and one per property for subfaces. Each non-empty group becomes a named SoMaterial
// with one entry per face and one or more indexed face sets over the shared property, one
// per texture pattern, textured ones isolated in separators with their SoTexture2.
#pragma once

#include <Inventor/SbColor.h>
#include <Inventor/SbName.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <utility>
#include <vector>

#include "convert/FltPalettes.h"
#include "reader/FltRecord.h"
#include "reader/FltRecordStore.h"

class FltRecordFace;
class FltSharedVertexProperties;
class SoGroup;
class SoTexture2;
class FltRecordMorphVertexList;
class FltRecordOldVertex;
class FltRecordOldVertexColor;
class FltRecordOldVertexColorNormal;
class FltRecordVertexList;
class SoMaterial;
class SoVertexProperty;

// The entries of a face group's material, gathered face by face and written into its
// SoMaterial once: one notification per field instead of one per face. Entries that no face
// sets hold Inventor's material defaults.
struct FltFaceMaterialEntries {
    std::vector<SbColor> ambient, diffuse, specular, emissive;
    std::vector<float> shininess, transparency;

    // Ambient, diffuse, specular, emissive and shininess of entry e.
    void setColors(int e, const SbColor& a, const SbColor& d, const SbColor& s, const SbColor& em, float shine);
    void setTransparency(int e, float value);
    void writeTo(SoMaterial* material) const;
};

// The faces of one texture pattern, gathered while a face group is split by texture.
struct SoIndexedFaceSetToFinalize {
    std::vector<int32_t> coordIndex;  // each face's vertex indices followed by -1
    std::vector<int32_t> materialIndex;
    int32_t texturePatternIndex = -1;
};

// What the object builder reads: the palettes as they stand, the format revision of the
// parse and the header's packed-colour mode, the texture nodes by pattern index and the log;
// and the one thing it writes, the shared vertex properties, which faces mixing textured
// vertex kinds extend.
class FltNodePool;

struct FltObjectContext {
    const FltPalettes& palettes;
    FltVersion version;
    FltSharedVertexProperties& vertices;
    const std::map<int, SoTexture2*>& textures;
    std::ostream& log;
    FltNodePool& pool;  // where the object's nodes come from
};

class FltObjectToSoSeparator {
public:
    explicit FltObjectToSoSeparator(const FltObjectContext& context);
    ~FltObjectToSoSeparator();
    FltObjectToSoSeparator(const FltObjectToSoSeparator&) = delete;
    FltObjectToSoSeparator& operator=(const FltObjectToSoSeparator&) = delete;

    // The records to walk, from the object's first record after its ancillary records; the
    // record vector ends with a null entry.
    void setCurrentIterator(FltRecordIterator begin);
    // Where the object's subtree ends: on the pop level that closes its first push, or on
    // the end marker (as fltSubtreeEnd finds it; the walk of the faces finds it first).
    FltRecordIterator subtreeEnd();
    void setCurrentFltObjectTransparency(const float& transparency) { objectTransparency = transparency; }
    void setDestination(SoGroup* group) { destination = group; }
    void buildFinalSoSeparator();
    bool isBuilt() const { return built; }

    void traverseObjectPrimaryRecords();
    void visitAllFaces();
    void visitFace(const FltRecordFace* face, FltRecordIterator position, FltRecordIterator end, int subfaceDepth);
    void visitAllVertexList(FltRecordIterator position, FltRecordIterator end, std::vector<int32_t>& indices,
                            int& propertyId);
    void visitVertexList(const FltRecordVertexList* list, std::vector<int32_t>& indices, int& propertyId);
    void visitMorphVertexList(const FltRecordMorphVertexList* list, std::vector<int32_t>& indices, int& propertyId);
    void addPolygonOffset();

    // Face colours and materials: one entry per face in the group's material.
    void addFltFaceMaterialToSoMaterial(const FltRecordFace* face, FltFaceMaterialEntries& material, int entry);

    // Face sets.
    void buildAndAddIndexedFaceSetFromIndicesVector(const std::vector<int32_t>& coordIndex,
                                                    const std::vector<int32_t>& materialIndex,
                                                    const std::vector<int32_t>& textures, SoVertexProperty* property);
    void buildAndAddIndexedFaceSetFromIndicesVectorOneTextureFile(const std::vector<int32_t>& coordIndex,
                                                                  const std::vector<int32_t>& materialIndex,
                                                                  const std::vector<int32_t>& textures,
                                                                  SoVertexProperty* property);
    void buildAndAddIndexedFaceSetFromIndicesVectorManyTextureFile(const std::vector<int32_t>& coordIndex,
                                                                   const std::vector<int32_t>& materialIndex,
                                                                   const std::vector<int32_t>& textures,
                                                                   SoVertexProperty* property);
    static bool isSoIndexedFaceSetNeedsManyTextureFiles(const std::vector<int32_t>& textures);
    static int getTextureFileIndex(const std::vector<int32_t>& textures);
    SbName getSoIndexedFaceSetNameFromSoVertexProperty(SoVertexProperty* property);
    static size_t copyOneFaceVertexIndices(std::vector<int32_t>& target, const std::vector<int32_t>& coordIndex,
                                           size_t position);

    // Faces made of the obsolete vertex records placed directly under a face.
    void addOldVertexToSoVertexProperty(const FltRecordOldVertex* record);
    void addOldVertexColorToSoVertexProperty(const FltRecordOldVertexColor* record);
    void addOldVertexColorNormalToSoVertexProperty(const FltRecordOldVertexColorNormal* record);
    void buildAndAddIndexedFaceSetFromOldVertex();
    void buildAndAddIndexedFaceSetFromOldVertexColor();
    void buildAndAddIndexedFaceSetFromOldVertexColorNormal();

    // One of the eight face groups.
    struct FaceGroup {
        std::vector<int32_t> coordIndex;
        std::vector<int32_t> textures;
        std::vector<int32_t> materialIndex;
        int32_t faceCounter = -1;
        FltFaceMaterialEntries material;
    };
    FaceGroup& faceGroup(int propertyId, bool subface) { return groups[subface ? 1 : 0][propertyId - 1]; }
    void addFaceToVector(const FltRecordFace* face, const std::vector<int32_t>& indices, FaceGroup& group);

private:
    // The faces of old vertex records of one kind: their own property and index vector.
    struct OldVertexFaces {
        const char* name = "";
        SoVertexProperty* property = nullptr;  // created with the first vertex
        std::vector<int32_t> coordIndex;
        int32_t count = 0;
        void appendIndex();
        void closeFace();
        SoVertexProperty* getProperty();
    };
    // Adds a group's material, named, and its face sets to the destination.
    void addFaceGroup(int propertyId, bool subface, SoVertexProperty* property);
    void buildOldVertexFaceSet(OldVertexFaces& faces, const char* name);

    // The palette offsets of a face resolved into indices of one shared property.
    void resolveOffsets(const int32_t* offsets, size_t offsetCount, std::vector<int32_t>& indices, int& propertyId);

    FltObjectContext context;
    FltRecordIterator begin_{};
    FltRecordIterator subtreeEnd_{};  // found by the walk of the faces
    bool iteratorSet = false;
    bool subtreeEndFound_ = false;
    float objectTransparency = 1.0f;
    SoGroup* destination = nullptr;
    bool built = false;

    FaceGroup groups[2][4];
    // Scratch space reused from face to face.
    std::vector<int32_t> faceIndices;
    std::vector<std::pair<int, int32_t>> faceVertices;
    OldVertexFaces oldVertex;
    OldVertexFaces oldVertexColor;
    OldVertexFaces oldVertexColorNormal;
};
