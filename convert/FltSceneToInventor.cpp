// Scene nodes and meshes into Inventor nodes.
#include "convert/FltSceneToInventor.h"

#include <Inventor/SbMatrix.h>
#include <Inventor/SbPlane.h>
#include <Inventor/nodes/SoClipPlane.h>
#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoLOD.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoMatrixTransform.h>
#include <Inventor/nodes/SoScale.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "convert/FltNodePool.h"
#include "convert/FltScene.h"

namespace {

class SceneToInventor {
public:
    SceneToInventor(const FltScene& scene, FltNodePool& pool)
        : scene_(scene), pool_(pool), nodes_(scene.nodes.size(), nullptr)
    {
    }
    ~SceneToInventor()
    {
        for (SoNode* node : nodes_)
            if (node) node->unref();
        for (auto& entry : textures_) entry.second->unref();
        for (auto& entry : references_) entry.second->unref();
        if (unlit_) unlit_->unref();
    }
    SceneToInventor(const SceneToInventor&) = delete;
    SceneToInventor& operator=(const SceneToInventor&) = delete;

    // The content of node 0 goes straight under the given separator.
    void fill(SoSeparator* separator, int index);

private:
    SoNode* node(int index);
    bool isEmpty(int index) const
    {
        const FltSceneNode& n = scene_.nodes[static_cast<size_t>(index)];
        return n.meshes.empty() && n.children.empty() && !n.reference;
    }
    SoSeparator* mesh(const FltSceneMesh& mesh);
    // The material of a mesh: one value when its colours are all alike, else one per polygon
    // or per vertex with their binding.
    SoNode* material(const FltSceneMesh& mesh, const FltSceneAppearance& appearance);

    const FltScene& scene_;
    FltNodePool& pool_;
    std::vector<SoNode*> nodes_;
    std::map<int, SoTexture2*> textures_;
    std::map<const FltScene*, SoSeparator*> references_;
    SoNode* unlit_ = nullptr;
};

void SceneToInventor::fill(SoSeparator* separator, int index)
{
    const FltSceneNode& n = scene_.nodes[static_cast<size_t>(index)];
    if (n.hasMatrix) {
        auto* transform = new SoMatrixTransform;
        const float* m = n.matrix;
        transform->matrix.setValue(SbMatrix(m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8], m[9], m[10], m[11],
                                            m[12], m[13], m[14], m[15]));
        separator->addChild(transform);
    }
    for (size_t p = 0; p + 4 <= n.clipPlanes.size(); p += 4) {
        const float* c = &n.clipPlanes[p];
        auto* clip = new SoClipPlane;
        clip->plane.setValue(SbPlane(SbVec3f(c[0], c[1], c[2]), -c[3]));
        separator->addChild(clip);
    }
    SoGroup* content = separator;
    SoLOD* lod = nullptr;
    if (n.kind == FltSceneNode::Kind::LevelOfDetail) {
        // Nearer than lodNear the first (empty) child, up to lodFar the content, beyond
        // nothing again.
        lod = new SoLOD;
        lod->center.setValue(n.lodCenter[0], n.lodCenter[1], n.lodCenter[2]);
        lod->range.set1Value(0, n.lodNear);
        lod->range.set1Value(1, n.lodFar);
        lod->addChild(new SoGroup);
        content = new SoSeparator;
        lod->addChild(content);
        lod->addChild(new SoGroup);
        separator->addChild(lod);
    }
    for (int m : n.meshes) content->addChild(mesh(scene_.meshes[static_cast<size_t>(m)]));
    for (size_t c = 0; c < n.children.size(); ++c) {
        const bool onOff = n.kind == FltSceneNode::Kind::Switch;
        // A node with nothing to draw needs no node of its own, but under a switch, whose
        // children count.
        if (!onOff && isEmpty(n.children[c])) continue;
        SoNode* child = node(n.children[c]);
        if (onOff) {
            auto* wrapper = new SoSwitch;
            wrapper->whichChild = c < n.childOn.size() && n.childOn[c] ? SO_SWITCH_ALL : SO_SWITCH_NONE;
            wrapper->addChild(child);
            child = wrapper;
        }
        content->addChild(child);
    }
    if (n.reference) {
        SoSeparator*& nested = references_[n.reference.get()];
        if (!nested) {
            nested = new SoSeparator;
            nested->ref();
            SceneToInventor(*n.reference, pool_).fill(nested, 0);
        }
        content->addChild(nested);
    }
}

SoNode* SceneToInventor::node(int index)
{
    SoNode*& slot = nodes_[static_cast<size_t>(index)];
    if (slot) return slot;
    SoSeparator* separator = pool_.separator();
    separator->ref();
    slot = separator;
    const std::string& name = scene_.nodes[static_cast<size_t>(index)].name;
    if (!name.empty()) separator->setName(name.c_str());
    fill(separator, index);
    return separator;
}

SoNode* SceneToInventor::material(const FltSceneMesh& m, const FltSceneAppearance& a)
{
    SoMaterial* material = pool_.material();
    const FltFreshField freshSpecular(material->specularColor), freshEmissive(material->emissiveColor),
        freshShininess(material->shininess), freshDiffuse(material->diffuseColor),
        freshTransparency(material->transparency), freshAmbient(material->ambientColor);
    material->specularColor.setValue(a.specular);
    material->emissiveColor.setValue(a.emissive);
    material->shininess = a.shininess;
    const size_t count = m.colors.size() / 4;
    bool uniform = true;
    for (size_t i = 1; i < count && uniform; ++i)
        for (int k = 0; k < 4; ++k) uniform = uniform && m.colors[4 * i + k] == m.colors[k];
    const size_t values = uniform ? std::min<size_t>(count, 1) : count;
    // Lit, the colour modulates the material's ambient and diffuse; unlit it is drawn as is.
    std::vector<SbColor> diffuse(values), ambient(values);
    std::vector<float> transparency(values);
    for (size_t i = 0; i < values; ++i) {
        const float* c = &m.colors[4 * i];
        const SbColor color(c[0], c[1], c[2]);
        diffuse[i] = a.lit ? SbColor(color[0] * a.diffuse[0], color[1] * a.diffuse[1], color[2] * a.diffuse[2]) : color;
        ambient[i] = SbColor(color[0] * a.ambient[0], color[1] * a.ambient[1], color[2] * a.ambient[2]);
        transparency[i] = 1.0f - c[3];
    }
    if (values > 0) {
        material->diffuseColor.setValues(0, static_cast<int>(values), diffuse.data());
        material->transparency.setValues(0, static_cast<int>(values), transparency.data());
        if (a.lit) material->ambientColor.setValues(0, static_cast<int>(values), ambient.data());
    }
    if (values <= 1) return material;
    auto* group = new SoGroup;
    group->addChild(material);
    auto* binding = new SoMaterialBinding;
    binding->value = a.vertexColors ? SoMaterialBinding::PER_VERTEX_INDEXED : SoMaterialBinding::PER_FACE;
    group->addChild(binding);
    return group;
}

SoSeparator* SceneToInventor::mesh(const FltSceneMesh& m)
{
    const FltSceneAppearance& a = scene_.appearances[static_cast<size_t>(m.appearance)];
    SoSeparator* separator = pool_.separator();
    // Draw type 0 culls the back faces, the front being the counter-clockwise side. Both
    // sides of a two-sided face are shaded with its normals as they are, whichever way it
    // winds (one writer winds clockwise about them).
    SoShapeHints* hints = pool_.shapeHints();
    {
        const FltFreshField freshOrdering(hints->vertexOrdering), freshShape(hints->shapeType),
            freshFace(hints->faceType);
        hints->vertexOrdering = a.twoSided ? SoShapeHints::UNKNOWN_ORDERING : SoShapeHints::COUNTERCLOCKWISE;
        hints->shapeType = a.twoSided ? SoShapeHints::UNKNOWN_SHAPE_TYPE : SoShapeHints::SOLID;
        bool polygons = false;
        for (uint32_t size : m.polygonSizes) polygons = polygons || size > 3;
        if (polygons) hints->faceType = SoShapeHints::UNKNOWN_FACE_TYPE;
    }
    separator->addChild(hints);
    if (!a.lit) {
        if (!unlit_) {
            auto* model = new SoLightModel;
            model->model = SoLightModel::BASE_COLOR;
            unlit_ = model;
            unlit_->ref();
        }
        separator->addChild(unlit_);
    }

    separator->addChild(material(m, a));
    if (a.texture >= 0) {
        SoTexture2*& texture = textures_[a.texture];
        if (!texture) {
            texture = new SoTexture2;
            texture->ref();
            texture->filename.setValue(scene_.textures[static_cast<size_t>(a.texture)].c_str());
        }
        separator->addChild(texture);
    }

    const size_t vertices = m.vertexCount();
    SoVertexProperty* property = pool_.vertexProperty();
    const FltFreshField freshVertices(property->vertex), freshNormals(property->normal),
        freshBinding(property->normalBinding), freshUv(property->texCoord);
    property->vertex.setNum(static_cast<int>(vertices));
    SbVec3f* points = property->vertex.startEditing();
    for (size_t v = 0; v < vertices; ++v) points[v].setValue(&m.positions[3 * v]);
    property->vertex.finishEditing();
    if (m.normals.size() == 3 * vertices && vertices > 0) {
        property->normal.setNum(static_cast<int>(vertices));
        SbVec3f* normals = property->normal.startEditing();
        for (size_t v = 0; v < vertices; ++v) normals[v].setValue(&m.normals[3 * v]);
        property->normal.finishEditing();
        property->normalBinding = SoVertexProperty::PER_VERTEX_INDEXED;
    }
    if (m.texCoords.size() == 2 * vertices && vertices > 0) {
        property->texCoord.setNum(static_cast<int>(vertices));
        SbVec2f* uv = property->texCoord.startEditing();
        for (size_t v = 0; v < vertices; ++v) uv[v].setValue(m.texCoords[2 * v], m.texCoords[2 * v + 1]);
        property->texCoord.finishEditing();
    }

    SoIndexedFaceSet* faces = pool_.faceSet();
    const FltFreshField freshProperty(faces->vertexProperty), freshCoords(faces->coordIndex);
    faces->vertexProperty = property;
    std::vector<int32_t> coordIndex;
    coordIndex.reserve(m.indices.size() + m.polygonSizes.size());
    size_t at = 0;
    for (uint32_t size : m.polygonSizes) {
        for (uint32_t k = 0; k < size && at < m.indices.size(); ++k) coordIndex.push_back(static_cast<int32_t>(m.indices[at++]));
        coordIndex.push_back(-1);
    }
    faces->coordIndex.setValues(0, static_cast<int>(coordIndex.size()), coordIndex.data());
    separator->addChild(faces);
    return separator;
}

}  // namespace

void fltSceneToInventor(const FltScene& scene, SoSeparator* root, FltNodePool& pool)
{
    if (scene.unitScale != 1.0f) {
        auto* scale = new SoScale;
        scale->scaleFactor.setValue(scene.unitScale, scene.unitScale, scene.unitScale);
        root->addChild(scale);
    }
    SceneToInventor(scene, pool).fill(root, 0);
}
