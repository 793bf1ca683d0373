// FltScene: a database as it is meant to be drawn, without the scene graph library: a
// hierarchy of nodes (groups with their transforms, levels of detail, switches, referenced
// databases) holding meshes of polygons with their appearance. The as-authored builder makes
// it; one step turns it into an Inventor graph, and an exporter can write it as it stands.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// How the polygons of a mesh are drawn. Their colours (per polygon, or per vertex) are the
// faces' or vertices' own: lit, a colour c shows c times `diffuse` lit by the lights and c
// times `ambient` lit by the ambient light; unlit, it shows c itself.
struct FltSceneAppearance {
    bool lit = true;            // shaded by the lights with the vertex normals, else drawn in its colour
    bool twoSided = false;      // both sides drawn, else the back faces are culled
    bool vertexColors = false;  // colours per vertex, else per polygon
    float ambient[3] = {1, 1, 1};
    float diffuse[3] = {1, 1, 1};
    float specular[3] = {0, 0, 0};
    float emissive[3] = {0, 0, 0};
    float shininess = 0;  // 0 to 1
    int texture = -1;     // index into FltScene::textures, -1 for none

    bool operator==(const FltSceneAppearance& o) const
    {
        auto same3 = [](const float* a, const float* b) { return a[0] == b[0] && a[1] == b[1] && a[2] == b[2]; };
        return lit == o.lit && twoSided == o.twoSided && vertexColors == o.vertexColors && same3(ambient, o.ambient) &&
               same3(diffuse, o.diffuse) && same3(specular, o.specular) && same3(emissive, o.emissive) &&
               shininess == o.shininess && texture == o.texture;
    }
};

// Polygons sharing one appearance. Every vertex has a position; normals and texture
// coordinates are either there for every vertex or for none. Colours (red, green, blue and
// alpha, 0 to 1) are per vertex or per polygon, as the appearance says.
struct FltSceneMesh {
    int appearance = 0;
    std::vector<float> positions;  // x, y, z per vertex
    std::vector<float> normals;    // x, y, z per vertex, or empty
    std::vector<float> texCoords;  // u, v per vertex, or empty
    std::vector<float> colors;     // r, g, b, a per vertex or per polygon
    std::vector<uint32_t> indices;       // the polygons' vertices, one polygon after the other
    std::vector<uint32_t> polygonSizes;  // how many vertices each polygon has (3 or more)

    size_t vertexCount() const { return positions.size() / 3; }
};

struct FltScene;

struct FltSceneNode {
    enum class Kind { Group, LevelOfDetail, Switch, Reference };
    Kind kind = Kind::Group;
    std::string name;
    // A transform of the node's content: row by row, the translation in the fourth row, so
    // that a point p becomes p * matrix (the scene graph library's own convention).
    bool hasMatrix = false;
    float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    std::vector<int> meshes;    // indices into FltScene::meshes
    std::vector<int> children;  // indices into FltScene::nodes; a node may have several parents
    // A level of detail shows its content from lodNear up to lodFar, the distance measured
    // from lodCenter.
    float lodNear = 0, lodFar = 0;
    float lodCenter[3] = {0, 0, 0};
    // A switch: whether each child is on.
    std::vector<bool> childOn;
    // Clip planes of the content: a, b, c, d each, the side where a x + b y + c z + d >= 0 kept.
    std::vector<float> clipPlanes;
    // A referenced database, drawn in place of the node's content.
    std::shared_ptr<const FltScene> reference;
};

struct FltScene {
    std::vector<FltSceneNode> nodes;  // nodes[0] is the root
    std::vector<FltSceneMesh> meshes;
    std::vector<FltSceneAppearance> appearances;
    std::vector<std::string> textures;  // image files, as found
    float unitScale = 1;                // the database's units to metres

    FltScene() : nodes(1) { nodes[0].name = "root"; }
};
