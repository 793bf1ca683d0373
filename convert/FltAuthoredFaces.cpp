// As-authored faces and meshes: their vertices, colours and normals into the scene's meshes.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "convert/FltAuthoredBuilder.h"
#include "convert/FltTextureFiles.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltInput.h"
#include "reader/FltOpcode.h"
#include "reader/FltRecordVertex.h"

namespace {

// A point p becomes p * m, the translation in the fourth row.
void transformPoint(const double m[16], double p[3])
{
    const double x = p[0], y = p[1], z = p[2];
    for (int c = 0; c < 3; ++c) p[c] = x * m[c] + y * m[4 + c] + z * m[8 + c] + m[12 + c];
}

// A normal moves with the inverse transpose of the matrix's upper 3 x 3, then is unit again.
void transformNormal(const double m[16], float n[3])
{
    const double a = m[0], b = m[1], c = m[2], d = m[4], e = m[5], f = m[6], g = m[8], h = m[9], i = m[10];
    // Rows of the cofactor matrix: the inverse transpose up to the determinant's factor.
    const double co[9] = {e * i - f * h, f * g - d * i, d * h - e * g, c * h - b * i, a * i - c * g,
                          b * g - a * h, b * f - c * e, c * d - a * f, a * e - b * d};
    const double x = n[0], y = n[1], z = n[2];
    double r[3];
    for (int k = 0; k < 3; ++k) r[k] = co[3 * k] * x + co[3 * k + 1] * y + co[3 * k + 2] * z;
    const double det = a * co[0] + b * co[1] + c * co[2];
    const double length = std::sqrt(r[0] * r[0] + r[1] * r[1] + r[2] * r[2]) * (det < 0 ? -1 : 1);
    if (length == 0) return;
    for (int k = 0; k < 3; ++k) n[k] = static_cast<float>(r[k] / length);
}

std::string appearanceKey(const FltSceneAppearance& a)
{
    std::string key(reinterpret_cast<const char*>(a.ambient), sizeof a.ambient);
    key.append(reinterpret_cast<const char*>(a.diffuse), sizeof a.diffuse);
    key.append(reinterpret_cast<const char*>(a.specular), sizeof a.specular);
    key.append(reinterpret_cast<const char*>(a.emissive), sizeof a.emissive);
    key.append(reinterpret_cast<const char*>(&a.shininess), sizeof a.shininess);
    key.append(reinterpret_cast<const char*>(&a.texture), sizeof a.texture);
    key += a.lit ? 'L' : 'U';
    key += a.twoSided ? '2' : '1';
    key += a.vertexColors ? 'V' : 'P';
    return key;
}

bool sameFields(const FltDrawFields& a, const FltDrawFields& b)
{
    return a.drawType == b.drawType && a.textureWhite == b.textureWhite && a.texturePattern == b.texturePattern &&
           a.material == b.material && a.transparency == b.transparency && a.flags == b.flags &&
           a.lightMode == b.lightMode && std::memcmp(a.packedColor, b.packedColor, 4) == 0 &&
           a.colorIndex == b.colorIndex;
}

// The normal of a polygon by Newell's method: sound for any simple polygon, flat or not.
void polygonNormal(const std::vector<double>& points, float normal[3])
{
    double n[3] = {0, 0, 0};
    const size_t count = points.size() / 3;
    for (size_t i = 0; i < count; ++i) {
        const double* p = &points[3 * i];
        const double* q = &points[3 * ((i + 1) % count)];
        n[0] += (p[1] - q[1]) * (p[2] + q[2]);
        n[1] += (p[2] - q[2]) * (p[0] + q[0]);
        n[2] += (p[0] - q[0]) * (p[1] + q[1]);
    }
    const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    for (int k = 0; k < 3; ++k) normal[k] = length > 0 ? static_cast<float>(n[k] / length) : (k == 2 ? 1.0f : 0.0f);
}

uint32_t colorKeyOf(const FltRgba& c)
{
    auto q = [](float v) { return static_cast<uint32_t>(std::lround(std::max(0.0f, std::min(1.0f, v)) * 255.0f)); };
    return (q(c.r) << 24) | (q(c.g) << 16) | (q(c.b) << 8) | q(c.a);
}

}  // namespace

void FltAuthoredBuilder::finishFace(int index)
{
    if (index < 0 || index >= static_cast<int>(faces_.size())) return;
    freeFaces_.push_back(index);
    PendingFace& face = faces_[index];
    // Most faces repeat the fields of the one before: their look is worked out once.
    if (!haveLastLook_ || !sameFields(face.fields, lastFields_) || face.objectTransparency != lastObjectTransparency_) {
        const FltAuthoredLook look = fltAuthoredLook(face.fields, palettes_, revision_, face.objectTransparency);
        // Faces that differ in their colour alone share their appearance.
        if (!haveLastLook_ || !(look.appearance == lastLook_.appearance)) lastAppearance_ = -1;
        lastLook_ = look;
        lastFields_ = face.fields;
        lastObjectTransparency_ = face.objectTransparency;
        haveLastLook_ = true;
    }
    if (lastLook_.hidden) return;
    const FltAuthoredLook& look = lastLook_;
    const uint64_t transform = face.hasMatrix ? ++transformSerial_ : 0;

    std::vector<Corner>& corners = corners_;
    corners.clear();
    if (face.mesh) {
        // Pool vertices are keyed apart from palette offsets: the top bit set, then the mesh.
        const uint64_t pool = (uint64_t(1) << 63) | (uint64_t(face.offset) << 24);
        for (const FltMeshPrimitive& primitive : face.primitives) {
            for (const std::vector<uint32_t>& polygon : fltMeshPrimitivePolygons(primitive)) {
                corners.clear();
                for (uint32_t i : polygon) {
                    if (i >= face.pool.vertices.size()) {
                        if (missingVertices_++ == 0) firstMissingAt_ = face.offset;
                        continue;
                    }
                    const FltPoolVertex& v = face.pool.vertices[i];
                    Corner c;
                    std::copy(v.position, v.position + 3, c.position);
                    std::copy(v.normal, v.normal + 3, c.normal);
                    c.hasNormal = face.pool.hasNormal;
                    std::copy(v.uv, v.uv + 2, c.uv);
                    c.color = look.color;
                    if (look.appearance.vertexColors && face.pool.hasPackedColor) {
                        c.color.r = v.packedColor[3] / 255.0f, c.color.g = v.packedColor[2] / 255.0f,
                        c.color.b = v.packedColor[1] / 255.0f;
                    } else if (look.appearance.vertexColors && face.pool.hasColorIndex) {
                        c.color = fltIndexedColor(palettes_, v.colorIndex, revision_);
                        c.color.a = look.color.a;
                    }
                    c.key = pool | i;
                    corners.push_back(c);
                }
                addPolygon(face, corners, transform);
            }
        }
        return;
    }

    for (int32_t offset : face.offsets) {
        const FltVertexEntry* entry = palettes_.vertexAt(static_cast<uint32_t>(offset));
        if (!entry || !entry->record) {
            if (missingVertices_++ == 0) firstMissingAt_ = face.offset;
            continue;
        }
        const FltRecordVertexColor& v = *entry->record;
        Corner c;
        c.position[0] = v.Xcoordinate, c.position[1] = v.Ycoordinate, c.position[2] = v.Zcoordinate;
        c.hasNormal = fltKindHasNormals(entry->kind);
        std::copy(v.vertexNormal, v.vertexNormal + 3, c.normal);
        std::copy(v.texture, v.texture + 2, c.uv);
        c.color = look.appearance.vertexColors ? fltVertexColor(v, look, palettes_, revision_) : look.color;
        c.key = static_cast<uint32_t>(offset);
        c.ordinal = entry->index;
        corners.push_back(c);
    }
    for (const FltRecord* record : face.oldVertices) {
        // Obsolete vertices lie under the face itself, each used once.
        Corner c{};
        c.color = look.color;
        c.key = (uint64_t(1) << 62) | (uint64_t(face.offset) << 20) | corners.size();
        if (const auto* v = fltRecordCast<FltRecordOldVertex>(record)) {
            c.position[0] = v->Xcoordinate, c.position[1] = v->Ycoordinate, c.position[2] = v->Zcoordinate;
            std::copy(v->texture, v->texture + 2, c.uv);
        } else if (const auto* v = fltRecordCast<FltRecordOldVertexColor>(record)) {
            c.position[0] = v->Xcoordinate, c.position[1] = v->Ycoordinate, c.position[2] = v->Zcoordinate;
            std::copy(v->texture, v->texture + 2, c.uv);
        } else if (const auto* v = fltRecordCast<FltRecordOldVertexColorNormal>(record)) {
            c.position[0] = v->Xcoordinate, c.position[1] = v->Ycoordinate, c.position[2] = v->Zcoordinate;
            std::copy(v->texture, v->texture + 2, c.uv);
        }
        corners.push_back(c);
    }
    addPolygon(face, corners, transform);
}

void FltAuthoredBuilder::addPolygon(PendingFace& face, std::vector<Corner>& corners, uint64_t transform)
{
    if (corners.size() < 3) return;
    const FltAuthoredLook& look = lastLook_;
    if (lastAppearance_ < 0) {
        FltSceneAppearance appearance = look.appearance;
        appearance.texture = textureOf(look.appearance.texture);
        if (!appearance.lit) {
            // Unlit, the material's terms show nothing: every unlit face of one texture and
            // sides draws alike.
            appearance = FltSceneAppearance();
            appearance.lit = false;
            appearance.twoSided = look.appearance.twoSided;
            appearance.vertexColors = look.appearance.vertexColors;
            appearance.texture = textureOf(look.appearance.texture);
        }
        const std::string key = appearanceKey(appearance);
        auto found = appearanceIndex_.find(key);
        if (found == appearanceIndex_.end()) {
            found = appearanceIndex_.emplace(key, static_cast<int>(scene_->appearances.size())).first;
            scene_->appearances.push_back(appearance);
        }
        lastAppearance_ = found->second;
    }
    const FltSceneAppearance& appearance = scene_->appearances[static_cast<size_t>(lastAppearance_)];

    std::vector<double>& points = polygonPoints_;
    points.clear();
    for (Corner& c : corners) {
        if (face.hasMatrix) {
            transformPoint(face.matrix, c.position);
            if (c.hasNormal) transformNormal(face.matrix, c.normal);
        }
        points.insert(points.end(), c.position, c.position + 3);
    }
    float flat[3] = {0, 0, 1};
    if (appearance.lit) polygonNormal(points, flat);

    int node = face.parent;
    if (scene_->nodes[static_cast<size_t>(node)].kind == FltSceneNode::Kind::Switch) {
        // The children of a switch are what its masks turn on and off: each face one.
        const int child = static_cast<int>(scene_->nodes.size());
        scene_->nodes.emplace_back();
        nodeTransparency_.push_back(0);
        nodeHeight_.push_back(0);
        scene_->nodes[static_cast<size_t>(node)].children.push_back(child);
        nodeHeight_[static_cast<size_t>(node)] = std::max(nodeHeight_[static_cast<size_t>(node)], 1);
        node = child;
    }
    const int meshIndex = meshFor(node, lastAppearance_);
    FltSceneMesh& mesh = scene_->meshes[static_cast<size_t>(meshIndex)];
    const uint32_t meshKey = static_cast<uint32_t>(meshIndex);
    auto addVertex = [&](const Corner& c) {
        const uint32_t index = static_cast<uint32_t>(mesh.vertexCount());
        for (double p : c.position) mesh.positions.push_back(static_cast<float>(p));
        if (appearance.lit) {
            const bool own = c.hasNormal && (c.normal[0] != 0 || c.normal[1] != 0 || c.normal[2] != 0);
            const float* n = own ? c.normal : flat;
            mesh.normals.insert(mesh.normals.end(), n, n + 3);
        }
        if (appearance.texture >= 0) mesh.texCoords.insert(mesh.texCoords.end(), c.uv, c.uv + 2);
        if (appearance.vertexColors) mesh.colors.insert(mesh.colors.end(), {c.color.r, c.color.g, c.color.b, c.color.a});
        return index;
    };
    if (!appearance.vertexColors)
        mesh.colors.insert(mesh.colors.end(), {look.color.r, look.color.g, look.color.b, look.color.a});
    for (const Corner& c : corners) {
        // With colours per polygon, a vertex is the same whatever the face's colour.
        const uint32_t color = appearance.vertexColors ? colorKeyOf(c.color) : 0;
        if (c.ordinal >= 0 && static_cast<size_t>(c.ordinal) < firstUse_.size()) {
            FirstUse& first = firstUse_[static_cast<size_t>(c.ordinal)];
            if (first.mesh == meshKey && first.color == color && first.transform == transform) {
                mesh.indices.push_back(first.index);
                continue;
            }
            if (first.mesh == UINT32_MAX) {
                first = FirstUse{meshKey, addVertex(c), color, transform};
                mesh.indices.push_back(first.index);
                continue;
            }
        }
        const VertexKey key{c.key, transform, color, meshKey};
        auto found = vertexIndex_.find(key);
        const uint32_t index = found != vertexIndex_.end() ? found->second : vertexIndex_.emplace(key, addVertex(c)).first->second;
        mesh.indices.push_back(index);
    }
    mesh.polygonSizes.push_back(static_cast<uint32_t>(corners.size()));
}

int FltAuthoredBuilder::meshFor(int node, int appearance)
{
    const uint64_t key = (uint64_t(static_cast<uint32_t>(node)) << 32) | static_cast<uint32_t>(appearance);
    if (key == lastMeshKey_) return lastMesh_;
    auto found = meshIndex_.find(key);
    if (found != meshIndex_.end()) {
        lastMeshKey_ = key;
        lastMesh_ = found->second;
        return lastMesh_;
    }
    const int index = static_cast<int>(scene_->meshes.size());
    scene_->meshes.emplace_back();
    scene_->meshes.back().appearance = appearance;
    scene_->nodes[static_cast<size_t>(node)].meshes.push_back(index);
    meshIndex_.emplace(key, index);
    lastMeshKey_ = key;
    lastMesh_ = index;
    return index;
}

int FltAuthoredBuilder::textureOf(int pattern)
{
    if (pattern < 0) return -1;
    auto known = textureIndex_.find(pattern);
    if (known != textureIndex_.end()) return known->second;
    int index = -1;
    const std::string* name = palettes_.textureName(pattern);
    const char* directory = context_.input.getDirName();
    const std::string file = name ? fltFindTexture(directory ? directory : "", *name) : std::string();
    if (!file.empty()) {
        auto same = std::find(scene_->textures.begin(), scene_->textures.end(), file);
        index = static_cast<int>(same - scene_->textures.begin());
        if (same == scene_->textures.end()) scene_->textures.push_back(file);
    } else {
        FltWarningMessageConsole::notifyMessage(
            "WARNING ! Texture pattern " + std::to_string(pattern) +
                (name ? " names " + *name + ", which is found neither there nor beside " +
                            (context_.input.getFileName() ? context_.input.getFileName() : std::string("the database"))
                      : std::string(" is not in the palette")) +
                ": its faces are drawn without it",
            2, true);
    }
    textureIndex_[pattern] = index;
    return index;
}

void FltAuthoredBuilder::reportMissingVertices()
{
    if (missingVertices_ == 0) return;
    FltWarningMessageConsole::notifyMessage(
        "WARNING ! " + std::to_string(missingVertices_) +
            " vertex references name no vertex, the first in the face or mesh at byte offset " +
            std::to_string(firstMissingAt_) + ": those vertices are left out",
        2, true);
}
