// The tests' own tinygltf: the library keeps its copy to itself.
#define TINYGLTF_IMPLEMENTATION
#include "GltfReadBack.h"

#include <cstdlib>
#include <filesystem>
#include <functional>

#include "ToolRunner.h"

namespace {

bool pngSize(tinygltf::Image* image, const int, std::string*, std::string*, int, int, const unsigned char* bytes, int size,
             void*)
{
    // The width and height stand big-endian at bytes 16 and 20 of a PNG.
    if (size < 24) return false;
    auto word = [bytes](int at) { return (bytes[at] << 24) | (bytes[at + 1] << 16) | (bytes[at + 2] << 8) | bytes[at + 3]; };
    image->width = word(16);
    image->height = word(20);
    return true;
}

using Matrix = std::array<double, 16>;  // column by column, as glTF stores it

Matrix multiply(const Matrix& a, const Matrix& b)
{
    Matrix r{};
    for (int c = 0; c < 4; ++c)
        for (int row = 0; row < 4; ++row)
            for (int k = 0; k < 4; ++k) r[c * 4 + row] += a[k * 4 + row] * b[c * 4 + k];
    return r;
}

}  // namespace

GltfReadBack::GltfReadBack(const std::string& path)
{
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(pngSize, nullptr);
    std::string warnings;
    const bool binary = std::filesystem::path(path).extension() == ".glb";
    loaded = binary ? loader.LoadBinaryFromFile(&model, &error, &warnings, path)
                    : loader.LoadASCIIFromFile(&model, &error, &warnings, path);
    if (!loaded || model.scenes.empty()) return;
    low = {HUGE_VAL, HUGE_VAL, HUGE_VAL};
    high = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    const Matrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    std::function<void(int, const Matrix&)> visit = [&](int index, const Matrix& parent) {
        const tinygltf::Node& node = model.nodes[static_cast<size_t>(index)];
        names.insert(node.name);
        Matrix local = identity;
        if (node.matrix.size() == 16) std::copy(node.matrix.begin(), node.matrix.end(), local.begin());
        const Matrix world = multiply(parent, local);
        if (node.mesh >= 0) {
            for (const tinygltf::Primitive& p : model.meshes[static_cast<size_t>(node.mesh)].primitives) {
                triangles += model.accessors[static_cast<size_t>(p.indices)].count / 3;
                const tinygltf::Accessor& positions = model.accessors[static_cast<size_t>(p.attributes.at("POSITION"))];
                for (int corner = 0; corner < 8; ++corner) {
                    double point[3];
                    for (int k = 0; k < 3; ++k)
                        point[k] = (corner >> k) & 1 ? positions.maxValues[static_cast<size_t>(k)]
                                                     : positions.minValues[static_cast<size_t>(k)];
                    for (int row = 0; row < 3; ++row) {
                        const double v = world[row] * point[0] + world[4 + row] * point[1] + world[8 + row] * point[2] +
                                         world[12 + row];
                        low[static_cast<size_t>(row)] = std::min(low[static_cast<size_t>(row)], v);
                        high[static_cast<size_t>(row)] = std::max(high[static_cast<size_t>(row)], v);
                    }
                }
            }
        }
        for (int child : node.children) visit(child, world);
    };
    for (int root : model.scenes[static_cast<size_t>(std::max(0, model.defaultScene))].nodes) visit(root, identity);
}

GltfValidator::GltfValidator(const ScratchDir&)
{
    const char* chosen = std::getenv("QETZFLT_GLTF_VALIDATOR");
    module_ = chosen ? chosen : QETZFLT_BUILD_DIR "/gltf-validator/node_modules/gltf-validator";
    for (const char* candidate : {"/usr/bin/node", "/usr/local/bin/node"})
        if (std::filesystem::exists(candidate)) node_ = candidate;
    if (node_.empty()) why_ = "Node.js is not installed";
    else if (!std::filesystem::exists(module_ + "/package.json"))
        why_ = "the gltf-validator package is not installed in " + module_ + " (scripts/setup-gltf-validator.sh)";
}

GltfValidator::Report GltfValidator::validate(const std::string& path) const
{
    Report report;
    const RunResult r = runProgram(node_, {QETZFLT_SOURCE_DIR "/tests/tools/validate-gltf.js", module_, path});
    report.text = r.out + r.err;
    const size_t at = r.out.find("\"errors\":");
    if (r.status == 0 && at != std::string::npos) report.errors = std::atoi(r.out.c_str() + at + 9);
    return report;
}
