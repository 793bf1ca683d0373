// Writing an as-authored scene as glTF 2.0, for the engines and viewers of today.
//
// The hierarchy keeps its names and transforms under one root that turns the database's
// units into metres and its Z up into glTF's Y up. Each mesh is one primitive of triangles
// with positions, normals, texture coordinates and, where its colours vary, vertex
// colours; its appearance is a metallic-roughness material (the colour as base colour and
// alpha, blended where transparent, double-sided where both sides are drawn, unlit through
// KHR_materials_unlit). Textures become PNG images. A switch keeps the children its mask
// turns on; of the levels of detail under one parent, those seen from nearest. Shared nodes
// and referenced databases are written where they appear, their meshes shared.
#pragma once

#include <cstddef>
#include <string>

struct FltScene;

struct FltGltfResult {
    enum class Status { Written, NothingDrawn, NotWritten };
    Status status = Status::NotWritten;
    size_t triangles = 0;  // drawn, every appearance of a shared node counted
    size_t faces = 0;      // written: the polygons of the meshes, a shared mesh once
    size_t nodes = 0;
    std::string why;  // when not written
};

// Writes the scene to `output`: a binary .glb with everything inside, or (any other name)
// a .gltf whose buffer (.bin) and PNG images lie beside it. Each file is written under a
// temporary name and then renamed, so nothing half-written is left. A scene of no node
// but its root is not written. What is left out (clip planes, levels of detail, unreadable
// textures, nodes past the budget) is said on the message console.
FltGltfResult fltWriteGltf(const FltScene& scene, const std::string& output);
