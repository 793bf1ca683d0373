// What a converted scene holds, counted from the scene graph alone: nodes, face sets,
// faces, vertices, triangles, textures and the bounding box, and the tree of named nodes.
#pragma once

#include <Inventor/SbBox3f.h>

#include <iosfwd>
#include <string>
#include <vector>

class SoNode;
class SoTexture2;

struct SceneSummary {
    int nodes = 0;       // distinct nodes, a shared node counted once
    int groups = 0;      // of them, groups (separators, switches, LODs...)
    int faceSets = 0;
    int faces = 0;
    int vertices = 0;    // distinct vertices that the faces use
    int triangles = 0;   // a face of n vertices counts n - 2
    int textures = 0;
    SbBox3f boundingBox;  // empty when nothing is drawn
};

SceneSummary summarizeScene(SoNode* root);

// Every texture node below root, each once, in traversal order.
std::vector<SoTexture2*> findTextures(SoNode* root);

// The hierarchy of groups, named nodes and face sets, two blanks per level; a shared
// subtree is written in full once and then named as shared.
void printTree(std::ostream& out, SoNode* root);
