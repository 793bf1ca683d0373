// The one step from a scene to an Inventor graph.
#pragma once

class FltNodePool;
struct FltScene;
class SoSeparator;

// Puts the scene's graph under root: a separator per node (a matrix transform first when
// it has one, levels of detail as SoLOD, switch children each in an SoSwitch on or off, a
// referenced database's graph, shared by its references), and per mesh a separator with
// its shape hints, light model, material, texture and indexed face set. Nodes and textures
// that several parents share are shared in the graph too. Nodes come from the pool.
void fltSceneToInventor(const FltScene& scene, SoSeparator* root, FltNodePool& pool);
