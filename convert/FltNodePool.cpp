// Nodes made in batches of a kind.
#include "convert/FltNodePool.h"

#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoVertexProperty.h>

namespace {

// The pool's nodes carry no reference, as `new` makes them: nothing else can reach them.
template <class T>
void fill(std::vector<T*>& pool, size_t count)
{
    pool.reserve(count);
    for (size_t i = 0; i < count; ++i) pool.push_back(new T);
}

// The newest first: the pool hands nodes out in the reverse order of their making.
template <class T>
T* take(std::vector<T*>& pool)
{
    if (pool.empty()) return new T;
    T* node = pool.back();
    pool.pop_back();
    return node;
}

template <class T>
void freeAll(std::vector<T*>& pool)
{
    for (T* node : pool) {
        node->ref();
        node->unref();
    }
    pool.clear();
}

}  // namespace

void FltNodePool::make(const Counts& counts)
{
    release();
    try {
        fill(separators_, counts.separators);
        fill(bindings_, counts.bindings);
        fill(materials_, counts.materials);
        fill(faceSets_, counts.faceSets);
        fill(shapeHints_, counts.shapeHints);
        fill(vertexProperties_, counts.vertexProperties);
    } catch (...) {
        release();
        throw;
    }
}

void FltNodePool::release()
{
    freeAll(vertexProperties_);
    freeAll(shapeHints_);
    freeAll(faceSets_);
    freeAll(materials_);
    freeAll(bindings_);
    freeAll(separators_);
}

SoSeparator* FltNodePool::separator() { return take(separators_); }
SoMaterialBinding* FltNodePool::binding() { return take(bindings_); }
SoMaterial* FltNodePool::material() { return take(materials_); }
SoIndexedFaceSet* FltNodePool::faceSet() { return take(faceSets_); }
SoShapeHints* FltNodePool::shapeHints() { return take(shapeHints_); }
SoVertexProperty* FltNodePool::vertexProperty() { return take(vertexProperties_); }
