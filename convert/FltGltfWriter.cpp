// Writing an as-authored scene as glTF 2.0.
#include "convert/FltGltfWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "convert/FltPngImage.h"
#include "convert/FltScene.h"
#include "convert/FltTextureFiles.h"
#include "diagnostics/FltWarningMessageConsole.h"

// The writer's own copy of tinygltf, which the build keeps out of the library's exported
// names (this file is compiled with hidden visibility) so that a host with a tinygltf of
// its own is not disturbed. Images arrive as PNG already: no image coder of tinygltf's is
// needed. It goes by a name of its own, since the tests link these objects beside a
// tinygltf built with other options.
#define tinygltf qetzflt_tinygltf
#define TINYGLTF_IMPLEMENTATION
#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#define TINYGLTF_NO_EXTERNAL_IMAGE
#include <tiny_gltf.h>

namespace {

namespace fs = std::filesystem;

constexpr int kArrayBuffer = 34962;
constexpr int kElementArrayBuffer = 34963;
// A database whose instances nest ten deep, each used ten times, would draw 10^10 nodes:
// the glTF stops at a million, as no engine loads more with profit.
constexpr size_t kMaxNodes = 1000000;
constexpr int kMaxDepth = 20000;

float finite(float v) { return std::isfinite(v) ? v : 0.0f; }
float unit(float v) { return std::isfinite(v) ? std::min(1.0f, std::max(0.0f, v)) : 0.0f; }

// JSON wants UTF-8; the names of a database are bytes of an unknown code page.
std::string printable(const std::string& name)
{
    std::string out = name;
    for (char& c : out)
        if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) > 0x7e) c = '_';
    return out;
}

// A PNG's colour type (byte 25) tells whether it carries alpha: grey+alpha or RGBA.
bool pngHasAlpha(const std::vector<unsigned char>& png) { return png.size() > 25 && (png[25] == 4 || png[25] == 6); }

// What tinygltf writes, gathered where the file writer takes it from.
class BytesBuffer : public std::streambuf {
public:
    explicit BytesBuffer(std::vector<unsigned char>& bytes) : bytes_(bytes) {}

protected:
    int overflow(int c) override
    {
        if (!traits_type::eq_int_type(c, traits_type::eof())) bytes_.push_back(static_cast<unsigned char>(c));
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override
    {
        bytes_.insert(bytes_.end(), s, s + n);
        return n;
    }

private:
    std::vector<unsigned char>& bytes_;
};

class GltfBuilder {
public:
    GltfBuilder(const FltScene& scene, const std::string& output, bool binary)
        : scene_(scene), binary_(binary), output_(output)
    {
        model_.asset.version = "2.0";
        model_.asset.generator = "QetzFlt";
        model_.buffers.emplace_back();
        const fs::path path(output);
        stem_ = path.stem().string();
        folder_ = path.has_parent_path() ? path.parent_path().string() : ".";
    }

    FltGltfResult writeModel();

private:
    struct Frame {
        const FltScene* scene;
        int node;
        int parent;  // glTF node, -1 for a scene root
        int depth;
    };

    std::vector<unsigned char>& bin() { return model_.buffers[0].data; }
    int addView(const void* data, size_t bytes, int target);
    template <typename T>
    int addAccessor(const std::vector<T>& values, int componentType, int type, size_t count, int target);
    int meshOf(const FltScene& scene, int node);
    // Adds the mesh's polygons as a primitive of out, and their number to faces.
    bool addPrimitive(const FltScene& scene, const FltSceneMesh& mesh, tinygltf::Mesh& out, size_t& faces);
    int materialOf(const FltScene& scene, const FltSceneAppearance& a, const float* color, bool hasUv,
                   bool vertexAlpha);
    int textureOf(const std::string& file, bool& alpha);
    int samplerOf(const FltTextureWraps& wraps);
    void walk();
    void note(const std::string& message) { FltWarningMessageConsole::notifyMessage(message, 2, true); }

    const FltScene& scene_;
    bool binary_;
    std::string output_, stem_, folder_;
    tinygltf::Model model_;
    std::map<std::pair<const FltScene*, int>, int> meshes_;
    std::map<std::string, int> materials_;
    std::map<std::string, std::pair<int, bool>> textures_;  // glTF texture and its alpha, -1 unreadable
    std::vector<std::pair<std::string, std::vector<unsigned char>>> images_;  // written beside a .gltf
    size_t triangles_ = 0, faces_ = 0;
    size_t droppedLevels_ = 0, clippedNodes_ = 0;
    bool full_ = false, tooDeep_ = false;
};

int GltfBuilder::addView(const void* data, size_t bytes, int target)
{
    std::vector<unsigned char>& b = bin();
    while (b.size() % 4) b.push_back(0);
    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = b.size();
    view.byteLength = bytes;
    view.target = target;
    const auto* first = static_cast<const unsigned char*>(data);
    b.insert(b.end(), first, first + bytes);
    model_.bufferViews.push_back(view);
    return static_cast<int>(model_.bufferViews.size() - 1);
}

template <typename T>
int GltfBuilder::addAccessor(const std::vector<T>& values, int componentType, int type, size_t count, int target)
{
    tinygltf::Accessor accessor;
    accessor.bufferView = addView(values.data(), values.size() * sizeof(T), target);
    accessor.componentType = componentType;
    accessor.type = type;
    accessor.count = count;
    model_.accessors.push_back(accessor);
    return static_cast<int>(model_.accessors.size() - 1);
}

int GltfBuilder::textureOf(const std::string& file, bool& alpha)
{
    auto found = textures_.find(file);
    if (found != textures_.end()) {
        alpha = found->second.second;
        return found->second.first;
    }
    std::vector<unsigned char> png;
    int width = 0, height = 0;
    std::string why;
    if (file.empty() || !fltEncodePng(file, png, width, height, why)) {
        note("WARNING ! The texture " + (file.empty() ? std::string("of a face") : file) +
             " could not be read" + (why.empty() ? std::string() : " (" + why + ")") +
             ": its faces are written without it");
        textures_[file] = {-1, false};
        return -1;
    }
    alpha = pngHasAlpha(png);
    tinygltf::Image image;
    image.name = printable(fs::path(file).filename().string());
    image.mimeType = "image/png";
    if (binary_) {
        image.bufferView = addView(png.data(), png.size(), 0);
        model_.bufferViews.back().target = 0;
    } else {
        // Beside the .gltf, a name of its own per image.
        image.uri = stem_ + "_" + std::to_string(model_.images.size()) + "_" + fs::path(file).stem().string() + ".png";
        for (char& c : image.uri)
            if (!std::isalnum(static_cast<unsigned char>(c)) && c != '.' && c != '_' && c != '-') c = '_';
        images_.emplace_back(image.uri, std::move(png));
    }
    model_.images.push_back(image);
    tinygltf::Texture texture;
    texture.source = static_cast<int>(model_.images.size() - 1);
    texture.sampler = samplerOf(fltTextureWraps(file));
    model_.textures.push_back(texture);
    const int index = static_cast<int>(model_.textures.size() - 1);
    textures_[file] = {index, alpha};
    return index;
}

int GltfBuilder::samplerOf(const FltTextureWraps& wraps)
{
    auto mode = [](FltTextureWrap wrap) {
        switch (wrap) {
        case FltTextureWrap::Clamp: return TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE;
        case FltTextureWrap::MirroredRepeat: return TINYGLTF_TEXTURE_WRAP_MIRRORED_REPEAT;
        case FltTextureWrap::Repeat: break;
        }
        return TINYGLTF_TEXTURE_WRAP_REPEAT;
    };
    const int s = mode(wraps.u), t = mode(wraps.v);
    for (size_t i = 0; i < model_.samplers.size(); ++i)
        if (model_.samplers[i].wrapS == s && model_.samplers[i].wrapT == t) return static_cast<int>(i);
    tinygltf::Sampler sampler;
    sampler.magFilter = TINYGLTF_TEXTURE_FILTER_LINEAR;
    sampler.minFilter = TINYGLTF_TEXTURE_FILTER_LINEAR_MIPMAP_LINEAR;
    sampler.wrapS = s;
    sampler.wrapT = t;
    model_.samplers.push_back(sampler);
    return static_cast<int>(model_.samplers.size() - 1);
}

int GltfBuilder::materialOf(const FltScene& scene, const FltSceneAppearance& a, const float* color, bool hasUv,
                            bool vertexAlpha)
{
    bool textureAlpha = false;
    int texture = -1;
    if (a.texture >= 0 && static_cast<size_t>(a.texture) < scene.textures.size() && hasUv)
        texture = textureOf(scene.textures[static_cast<size_t>(a.texture)], textureAlpha);
    // Lit, the colour modulates the diffuse reflection; unlit it is drawn as it is.
    std::array<double, 4> base = {1, 1, 1, 1};
    for (int k = 0; k < 3; ++k) base[k] = unit((color ? color[k] : 1.0f) * (a.lit ? a.diffuse[k] : 1.0f));
    base[3] = color ? unit(color[3]) : 1.0;
    const bool blend = base[3] < 1.0 || vertexAlpha || textureAlpha;
    const std::array<double, 3> emissive = {unit(a.emissive[0]), unit(a.emissive[1]), unit(a.emissive[2])};
    const double roughness = 1.0 - unit(a.shininess);

    char key[256];
    std::snprintf(key, sizeof key, "%d %d %d %d %.9g %.9g %.9g %.9g %.9g %.9g %.9g %.9g", a.lit, a.twoSided, texture,
                  blend, base[0], base[1], base[2], base[3], emissive[0], emissive[1], emissive[2], roughness);
    auto found = materials_.find(key);
    if (found != materials_.end()) return found->second;

    tinygltf::Material material;
    material.name = "material_" + std::to_string(model_.materials.size());
    material.pbrMetallicRoughness.baseColorFactor = {base[0], base[1], base[2], base[3]};
    material.pbrMetallicRoughness.metallicFactor = 0.0;
    material.pbrMetallicRoughness.roughnessFactor = roughness;
    if (texture >= 0) material.pbrMetallicRoughness.baseColorTexture.index = texture;
    material.emissiveFactor = {emissive[0], emissive[1], emissive[2]};
    material.doubleSided = a.twoSided;
    material.alphaMode = blend ? "BLEND" : "OPAQUE";
    if (!a.lit) {
        material.extensions["KHR_materials_unlit"] = tinygltf::Value(tinygltf::Value::Object());
        if (std::find(model_.extensionsUsed.begin(), model_.extensionsUsed.end(), "KHR_materials_unlit") ==
            model_.extensionsUsed.end())
            model_.extensionsUsed.push_back("KHR_materials_unlit");
    }
    model_.materials.push_back(material);
    const int index = static_cast<int>(model_.materials.size() - 1);
    materials_.emplace(key, index);
    return index;
}

bool GltfBuilder::addPrimitive(const FltScene& scene, const FltSceneMesh& m, tinygltf::Mesh& out, size_t& faces)
{
    if (m.appearance < 0 || static_cast<size_t>(m.appearance) >= scene.appearances.size()) return false;
    const FltSceneAppearance& a = scene.appearances[static_cast<size_t>(m.appearance)];
    const size_t vertices = m.vertexCount();
    const bool hasNormals = m.normals.size() == 3 * vertices;
    const bool hasUv = m.texCoords.size() == 2 * vertices;
    const size_t colors = m.colors.size() / 4;
    bool uniform = true;
    for (size_t i = 1; i < colors && uniform; ++i)
        for (int k = 0; k < 4; ++k) uniform = uniform && m.colors[4 * i + k] == m.colors[k];
    const bool perVertex = !uniform && a.vertexColors && colors == vertices;
    const bool perPolygon = !uniform && !perVertex && colors == m.polygonSizes.size();

    // The vertices written: those of the mesh, or with colours per polygon, each polygon's
    // own (a vertex carries one colour).
    std::vector<float> positions, normals, uvs, rgba;
    std::vector<uint32_t> indices;
    std::vector<uint32_t> source;  // the mesh vertex of each vertex written
    size_t at = 0, polygons = 0;
    for (size_t p = 0; p < m.polygonSizes.size(); ++p) {
        const size_t size = m.polygonSizes[p];
        if (at + size > m.indices.size()) break;
        bool valid = size >= 3;
        for (size_t k = 0; k < size && valid; ++k) valid = m.indices[at + k] < vertices;
        if (valid) {
            ++polygons;
            uint32_t corner[3];
            for (size_t k = 0; k < size; ++k) {
                uint32_t v = m.indices[at + k];
                if (perPolygon) {
                    source.push_back(v);
                    for (int c = 0; c < 4; ++c) rgba.push_back(unit(m.colors[4 * p + c]));
                    v = static_cast<uint32_t>(source.size() - 1);
                }
                // A fan from the first corner, as the polygon is drawn.
                if (k == 0) corner[0] = v;
                else if (k == 1) corner[1] = v;
                else {
                    indices.insert(indices.end(), {corner[0], corner[1], v});
                    corner[1] = v;
                }
            }
        }
        at += size;
    }
    if (indices.empty()) return false;
    if (!perPolygon) {
        source.resize(vertices);
        for (size_t v = 0; v < vertices; ++v) source[v] = static_cast<uint32_t>(v);
        if (perVertex)
            for (size_t i = 0; i < 4 * vertices; ++i) rgba.push_back(unit(m.colors[i]));
    }

    const size_t count = source.size();
    positions.reserve(3 * count);
    std::array<double, 3> low = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max(),
                                 std::numeric_limits<double>::max()};
    std::array<double, 3> high = {-low[0], -low[1], -low[2]};
    for (uint32_t v : source) {
        for (int k = 0; k < 3; ++k) {
            const float value = finite(m.positions[3 * v + k]);
            positions.push_back(value);
            low[k] = std::min<double>(low[k], value);
            high[k] = std::max<double>(high[k], value);
        }
        if (hasNormals) {
            float n[3] = {finite(m.normals[3 * v]), finite(m.normals[3 * v + 1]), finite(m.normals[3 * v + 2])};
            const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
            // glTF wants unit normals; a vertex without a direction gets the database's up.
            if (!(length > 1e-20f) || !std::isfinite(length)) n[0] = 0, n[1] = 0, n[2] = 1;
            else n[0] /= length, n[1] /= length, n[2] /= length;
            normals.insert(normals.end(), n, n + 3);
        }
        if (hasUv) {
            // OpenFlight counts v from the bottom of the image, glTF from the top.
            uvs.push_back(finite(m.texCoords[2 * v]));
            uvs.push_back(1.0f - finite(m.texCoords[2 * v + 1]));
        }
    }

    tinygltf::Primitive primitive;
    primitive.mode = TINYGLTF_MODE_TRIANGLES;
    primitive.attributes["POSITION"] =
        addAccessor(positions, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3, count, kArrayBuffer);
    model_.accessors.back().minValues = {low[0], low[1], low[2]};
    model_.accessors.back().maxValues = {high[0], high[1], high[2]};
    if (hasNormals)
        primitive.attributes["NORMAL"] =
            addAccessor(normals, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3, count, kArrayBuffer);
    if (hasUv)
        primitive.attributes["TEXCOORD_0"] =
            addAccessor(uvs, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC2, count, kArrayBuffer);
    bool vertexAlpha = false;
    if (!rgba.empty()) {
        for (size_t i = 3; i < rgba.size() && !vertexAlpha; i += 4) vertexAlpha = rgba[i] < 1.0f;
        primitive.attributes["COLOR_0"] =
            addAccessor(rgba, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC4, count, kArrayBuffer);
    }
    if (count <= 0xFFFF) {
        std::vector<uint16_t> shortIndices(indices.begin(), indices.end());
        primitive.indices = addAccessor(shortIndices, TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, TINYGLTF_TYPE_SCALAR,
                                        indices.size(), kElementArrayBuffer);
    } else {
        primitive.indices = addAccessor(indices, TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR,
                                        indices.size(), kElementArrayBuffer);
    }
    const float* color = rgba.empty() && colors > 0 ? &m.colors[0] : nullptr;
    primitive.material = materialOf(scene, a, color, hasUv, vertexAlpha);
    out.primitives.push_back(primitive);
    faces += polygons;
    return true;
}

int GltfBuilder::meshOf(const FltScene& scene, int node)
{
    const auto key = std::make_pair(&scene, node);
    auto found = meshes_.find(key);
    if (found != meshes_.end()) return found->second;
    tinygltf::Mesh mesh;
    size_t faces = 0;
    for (int index : scene.nodes[static_cast<size_t>(node)].meshes)
        if (index >= 0 && static_cast<size_t>(index) < scene.meshes.size())
            addPrimitive(scene, scene.meshes[static_cast<size_t>(index)], mesh, faces);
    int result = -1;
    if (!mesh.primitives.empty()) {
        mesh.name = printable(scene.nodes[static_cast<size_t>(node)].name);
        model_.meshes.push_back(std::move(mesh));
        faces_ += faces;
        result = static_cast<int>(model_.meshes.size() - 1);
    }
    meshes_.emplace(key, result);
    return result;
}

void GltfBuilder::walk()
{
    // The root turns the database's units into metres and its Z up into glTF's Y up: the
    // point (x, y, z) goes to (x, z, -y).
    const double s = std::isfinite(scene_.unitScale) && scene_.unitScale > 0 ? scene_.unitScale : 1.0;
    tinygltf::Node top;
    top.name = "Z_up_to_Y_up";
    top.matrix = {s, 0, 0, 0, 0, 0, -s, 0, 0, s, 0, 0, 0, 0, 0, 1};
    model_.nodes.push_back(top);
    tinygltf::Scene gltfScene;
    gltfScene.nodes.push_back(0);
    model_.scenes.push_back(gltfScene);
    model_.defaultScene = 0;

    // Depth first, with a stack of our own: hierarchies and references nest deep.
    std::vector<Frame> stack{{&scene_, 0, 0, 1}};
    while (!stack.empty()) {
        const Frame frame = stack.back();
        stack.pop_back();
        const FltScene& scene = *frame.scene;
        if (frame.node < 0 || static_cast<size_t>(frame.node) >= scene.nodes.size()) continue;
        if (model_.nodes.size() >= kMaxNodes) {
            full_ = true;
            break;
        }
        if (frame.depth > kMaxDepth) {
            tooDeep_ = true;
            continue;
        }
        const FltSceneNode& n = scene.nodes[static_cast<size_t>(frame.node)];
        tinygltf::Node node;
        node.name = printable(n.name);
        if (n.hasMatrix) {
            // Both store the translation in the last four values: a row-vector matrix row by
            // row is the column-vector matrix column by column.
            bool usable = n.matrix[15] != 0;
            for (float v : n.matrix) usable = usable && std::isfinite(v);
            if (usable) node.matrix.assign(n.matrix, n.matrix + 16);
        }
        if (!n.clipPlanes.empty()) ++clippedNodes_;
        node.mesh = meshOf(scene, frame.node);
        if (node.mesh >= 0)
            for (const tinygltf::Primitive& p : model_.meshes[static_cast<size_t>(node.mesh)].primitives)
                triangles_ += model_.accessors[static_cast<size_t>(p.indices)].count / 3;
        model_.nodes.push_back(node);
        const int index = static_cast<int>(model_.nodes.size() - 1);
        model_.nodes[static_cast<size_t>(frame.parent)].children.push_back(index);

        // The children drawn: a switch's by its mask; of the levels of detail, those seen
        // from nearest.
        std::vector<int> children;
        float nearest = std::numeric_limits<float>::max();
        for (size_t c = 0; c < n.children.size(); ++c) {
            const int child = n.children[c];
            if (child < 0 || static_cast<size_t>(child) >= scene.nodes.size()) continue;
            if (n.kind == FltSceneNode::Kind::Switch && !(c < n.childOn.size() && n.childOn[c])) continue;
            const FltSceneNode& k = scene.nodes[static_cast<size_t>(child)];
            if (k.kind == FltSceneNode::Kind::LevelOfDetail) nearest = std::min(nearest, k.lodNear);
            children.push_back(child);
        }
        std::vector<Frame> next;
        for (int child : children) {
            const FltSceneNode& k = scene.nodes[static_cast<size_t>(child)];
            if (k.kind == FltSceneNode::Kind::LevelOfDetail && k.lodNear > nearest) {
                ++droppedLevels_;
                continue;
            }
            next.push_back({&scene, child, index, frame.depth + 1});
        }
        if (n.reference) next.push_back({n.reference.get(), 0, index, frame.depth + 1});
        stack.insert(stack.end(), next.rbegin(), next.rend());
    }
}

FltGltfResult GltfBuilder::writeModel()
{
    FltGltfResult result;
    walk();
    result.triangles = triangles_;
    result.faces = faces_;
    result.nodes = model_.nodes.size();
    if (droppedLevels_)
        note("WARNING ! " + std::to_string(droppedLevels_) +
             " levels of detail are not written to the glTF: of the levels under one parent, only those "
             "seen from nearest are");
    if (clippedNodes_)
        note("WARNING ! glTF has no clip planes: the content of " + std::to_string(clippedNodes_) +
             " clipped nodes is written whole");
    if (full_)
        note("WARNING ! The glTF reached " + std::to_string(kMaxNodes) +
             " nodes: the rest of the database is not written");
    if (tooDeep_)
        note("WARNING ! Nodes nested more than " + std::to_string(kMaxDepth) + " deep are not written to the glTF");
    if (triangles_ == 0) {
        // Its hierarchy alone is still worth having, as long as there is one.
        if (model_.nodes.size() <= 2) {
            result.status = FltGltfResult::Status::NothingDrawn;
            result.why = "the database draws nothing";
            return result;
        }
        note("WARNING ! The database draws nothing: the glTF holds its " + std::to_string(model_.nodes.size() - 1) +
             " nodes only");
    }

    tinygltf::TinyGLTF writer;
    writer.SetImageWriter(nullptr, nullptr);
    const size_t binBytes = bin().size();
    // A hierarchy without geometry has no buffer at all: glTF allows no empty one.
    if (binBytes == 0) model_.buffers.clear();
    std::string why;
    bool ok = true;
    if (binary_) {
        std::vector<unsigned char> file;
        BytesBuffer buffer(file);
        std::ostream out(&buffer);
        ok = writer.WriteGltfSceneToStream(&model_, out, false, true) && fltWriteFileReplacing(output_, file, why);
    } else {
        // The buffer and the images go beside the .gltf, each written whole before it.
        const std::string binName = stem_ + ".bin";
        if (binBytes) ok = fltWriteFileReplacing((fs::path(folder_) / binName).string(), bin(), why);
        for (size_t i = 0; i < images_.size() && ok; ++i)
            ok = fltWriteFileReplacing((fs::path(folder_) / images_[i].first).string(), images_[i].second, why);
        if (ok) {
            // tinygltf would put the buffer inside as base64: it is written without its data and
            // then pointed at the file.
            if (binBytes) {
                model_.buffers[0].data.clear();
                model_.buffers[0].data.shrink_to_fit();
            }
            std::ostringstream text;
            writer.WriteGltfSceneToStream(&model_, text, true, false);
            nlohmann::json json = nlohmann::json::parse(text.str());
            if (binBytes) json["buffers"][0] = {{"byteLength", binBytes}, {"uri", binName}};
            const std::string content = json.dump(2) + "\n";
            ok = fltWriteFileReplacing(output_, std::vector<unsigned char>(content.begin(), content.end()), why);
        }
    }
    result.status = ok ? FltGltfResult::Status::Written : FltGltfResult::Status::NotWritten;
    result.why = why;
    return result;
}

}  // namespace

FltGltfResult fltWriteGltf(const FltScene& scene, const std::string& output)
{
    const std::string extension = fs::path(output).extension().string();
    const bool binary = extension == ".glb" || extension == ".GLB";
    return GltfBuilder(scene, output, binary).writeModel();
}
