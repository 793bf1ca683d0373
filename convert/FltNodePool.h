// Nodes of the kinds every object of faces takes, made in batches before the scene is built.
#pragma once

#include <cstddef>
#include <vector>

#include <Inventor/fields/SoField.h>

class SoIndexedFaceSet;
class SoMaterial;
class SoMaterialBinding;
class SoSeparator;
class SoShapeHints;
class SoVertexProperty;

// Coin's node constructors look up their field and enumeration names in Coin's name table,
// along chains that every name of the process lengthens; a database of tens of thousands of
// named objects makes those searches the larger part of each node's making, and between two
// nodes of a kind the builder's other work pushes the chains out of the processor's caches.
// Made one kind after another, each kind's searches find the same chains still cached. A
// node taken from the pool is the node `new` would have made (no reference, no name, its
// fields at their defaults); when the pool is empty, `new` makes it.
class FltNodePool {
public:
    // How many of each kind to make: at most what the builder will take (a few left over are
    // freed with the pool).
    struct Counts {
        size_t separators = 0, bindings = 0, materials = 0, faceSets = 0, shapeHints = 0, vertexProperties = 0;
    };
    FltNodePool() = default;
    explicit FltNodePool(const Counts& counts) { make(counts); }
    // Frees the nodes not taken.
    ~FltNodePool() { release(); }
    FltNodePool(const FltNodePool&) = delete;
    FltNodePool& operator=(const FltNodePool&) = delete;

    // Makes the nodes counted, after freeing any not taken; an empty pool makes each node
    // as it is asked for.
    void make(const Counts& counts);
    // Frees the nodes not taken.
    void release();

    SoSeparator* separator();
    SoMaterialBinding* binding();
    SoMaterial* material();
    SoIndexedFaceSet* faceSet();
    SoShapeHints* shapeHints();
    SoVertexProperty* vertexProperty();

private:
    std::vector<SoSeparator*> separators_;
    std::vector<SoMaterialBinding*> bindings_;
    std::vector<SoMaterial*> materials_;
    std::vector<SoIndexedFaceSet*> faceSets_;
    std::vector<SoShapeHints*> shapeHints_;
    std::vector<SoVertexProperty*> vertexProperties_;
};

// Holds a field's change notification while a node just made, that no group holds yet,
// takes its values: no action can have seen the node, and each notification would otherwise
// build a list, take Coin's lock and find no one to tell (40 000 objects: a twentieth of
// their conversion). The field is marked changed (no longer default) as ever.
class FltFreshField {
public:
    explicit FltFreshField(SoField& field) : field_(field), notifying_(field.isNotifyEnabled())
    {
        field_.enableNotify(FALSE);
    }
    ~FltFreshField() { field_.enableNotify(notifying_); }
    FltFreshField(const FltFreshField&) = delete;
    FltFreshField& operator=(const FltFreshField&) = delete;

private:
    SoField& field_;
    SbBool notifying_;
};
