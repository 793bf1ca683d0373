// Nodes of the kinds every object of faces takes, made in batches before the walk.
#pragma once

#include <cstddef>
#include <vector>

class SoIndexedFaceSet;
class SoMaterial;
class SoMaterialBinding;
class SoSeparator;

// Coin's node constructors look up their field and enumeration names in Coin's name table,
// along chains that every name of the process lengthens; a database of tens of thousands of
// named objects makes those searches the larger part of each node's making, and between two
// nodes of a kind the walk's other work pushes the chains out of the processor's caches.
// Made one kind after another, each kind's searches find the same chains still cached. A
// node taken from the pool is the node `new` would have made (no reference, no name, its
// fields at their defaults); when the pool is empty, `new` makes it.
class FltNodePool {
public:
    // Makes `count` nodes of each kind (as many as the objects of faces: each takes one of
    // each kind at least, but for the material and face set of an object without vertices).
    explicit FltNodePool(size_t count);
    // Frees the nodes not taken.
    ~FltNodePool();
    FltNodePool(const FltNodePool&) = delete;
    FltNodePool& operator=(const FltNodePool&) = delete;

    SoSeparator* separator();
    SoMaterialBinding* binding();
    SoMaterial* material();
    SoIndexedFaceSet* faceSet();

private:
    void releaseAll();

    std::vector<SoSeparator*> separators_;
    std::vector<SoMaterialBinding*> bindings_;
    std::vector<SoMaterial*> materials_;
    std::vector<SoIndexedFaceSet*> faceSets_;
};
