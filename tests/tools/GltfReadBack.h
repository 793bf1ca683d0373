// Reading back a written glTF with the tests' own tinygltf, and the Khronos validator run
// through Node.js where it is installed.
#pragma once

#include <array>
#include <set>
#include <string>

#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#define TINYGLTF_NO_EXTERNAL_IMAGE
#include <tiny_gltf.h>

class ScratchDir;

// A .glb or .gltf loaded, with what the tests compare: the triangles drawn (every node
// that uses a mesh counts its triangles), the node names, and the bounding box of every
// position in the scene's frame. Images keep their PNG size, read from the PNG header.
struct GltfReadBack {
    explicit GltfReadBack(const std::string& path);
    bool loaded = false;
    std::string error;
    tinygltf::Model model;
    size_t triangles = 0;
    std::set<std::string> names;
    std::array<double, 3> low{}, high{};
};

class GltfValidator {
public:
    struct Report {
        int errors = -1;
        std::string text;
    };
    // Node.js and the gltf-validator package (QETZFLT_GLTF_VALIDATOR names its folder; by
    // default the one scripts/setup-gltf-validator.sh installs in the build folder).
    explicit GltfValidator(const ScratchDir& scratch);
    bool available() const { return why_.empty(); }
    const std::string& why() const { return why_; }
    Report validate(const std::string& path) const;

private:
    std::string node_, module_, why_;
};
