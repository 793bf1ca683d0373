// Freeing a converted scene in the order Coin frees fastest.
#pragma once

class SoNode;

// Gives back one reference to root; when it was the last, frees the scene below it last
// child first, depth first, with change notification off. Coin keeps one process-wide list
// per node name and searches and shifts it as each node dies: freed newest first, a node
// leaves from the end of its list, where nothing has to move. Nodes that something else
// still holds are only let go of. Never throws: a step that cannot be taken falls back to
// plain unreferencing, which frees the same nodes, only in Coin's own order.
void fltReleaseScene(SoNode* root) noexcept;
