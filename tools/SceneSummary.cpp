// Counting and printing a converted scene.
#include "SceneSummary.h"

#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <functional>
#include <ostream>
#include <set>
#include <utility>

namespace {

// Faces of a face set: runs of indices closed by -1 (or by the end of the field).
int faceCount(const SoIndexedFaceSet* faceSet, int* triangles, std::set<std::pair<const SoNode*, int>>* used)
{
    const int n = faceSet->coordIndex.getNum();
    const int32_t* indices = faceSet->coordIndex.getValues(0);
    const SoNode* property = faceSet->vertexProperty.getValue();
    int faces = 0, run = 0;
    for (int i = 0; i <= n; ++i) {
        if (i == n || indices[i] < 0) {
            if (run > 0) {
                ++faces;
                if (run >= 3) *triangles += run - 2;
            }
            run = 0;
        } else {
            ++run;
            used->insert({property, indices[i]});
        }
    }
    return faces;
}

std::string typeName(const SoNode* node) { return node->getTypeId().getName().getString(); }

// Calls visit for every node below root once, parents before children.
void forEachNode(SoNode* root, const std::function<void(SoNode*)>& visit)
{
    std::set<SoNode*> seen;
    std::function<void(SoNode*)> walk = [&](SoNode* node) {
        if (!node || !seen.insert(node).second) return;
        visit(node);
        if (node->isOfType(SoGroup::getClassTypeId())) {
            auto* group = static_cast<SoGroup*>(node);
            for (int i = 0; i < group->getNumChildren(); ++i) walk(group->getChild(i));
        }
    };
    walk(root);
}

}  // namespace

SceneSummary summarizeScene(SoNode* root)
{
    SceneSummary summary;
    if (!root) return summary;
    std::set<std::pair<const SoNode*, int>> usedVertices;
    forEachNode(root, [&](SoNode* node) {
        ++summary.nodes;
        if (node->isOfType(SoGroup::getClassTypeId())) ++summary.groups;
        if (node->isOfType(SoTexture2::getClassTypeId())) ++summary.textures;
        if (node->isOfType(SoIndexedFaceSet::getClassTypeId())) {
            ++summary.faceSets;
            summary.faces += faceCount(static_cast<SoIndexedFaceSet*>(node), &summary.triangles, &usedVertices);
        }
    });
    summary.vertices = static_cast<int>(usedVertices.size());
    SoGetBoundingBoxAction box{SbViewportRegion(640, 480)};
    box.apply(root);
    summary.boundingBox = box.getBoundingBox();
    return summary;
}

std::vector<SoTexture2*> findTextures(SoNode* root)
{
    std::vector<SoTexture2*> found;
    forEachNode(root, [&](SoNode* node) {
        if (node->isOfType(SoTexture2::getClassTypeId())) found.push_back(static_cast<SoTexture2*>(node));
    });
    return found;
}

void printTree(std::ostream& out, SoNode* root)
{
    std::set<SoNode*> printed;
    std::function<void(SoNode*, int)> walk = [&](SoNode* node, int depth) {
        if (!node) return;
        const bool isGroup = node->isOfType(SoGroup::getClassTypeId());
        const bool isFaceSet = node->isOfType(SoIndexedFaceSet::getClassTypeId());
        const std::string name = node->getName().getString();
        if (!isGroup && !isFaceSet && name.empty()) return;
        out << std::string(2 * depth, ' ') << typeName(node);
        if (!name.empty()) out << " \"" << name << "\"";
        if (isFaceSet) {
            int triangles = 0;
            std::set<std::pair<const SoNode*, int>> used;
            const int faces = faceCount(static_cast<SoIndexedFaceSet*>(node), &triangles, &used);
            out << "  " << faces << (faces == 1 ? " face" : " faces");
        }
        if (isGroup && !printed.insert(node).second) {
            out << "  (shared, shown above)\n";
            return;
        }
        out << "\n";
        if (isGroup) {
            auto* group = static_cast<SoGroup*>(node);
            for (int i = 0; i < group->getNumChildren(); ++i) walk(group->getChild(i), depth + 1);
        }
    };
    walk(root, 0);
}
