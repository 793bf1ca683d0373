// Freeing a converted scene newest node first.
#include "convert/FltSceneRelease.h"

#include <Inventor/nodes/SoGroup.h>

#include <vector>

namespace {

// A group that only this release holds, emptied from its last child before it is freed.
SoGroup* takeOver(SoNode* node)
{
    if (!node || node->getRefCount() != 1 || !node->isOfType(SoGroup::getClassTypeId())) return nullptr;
    return static_cast<SoGroup*>(node);
}

}  // namespace

void fltReleaseScene(SoNode* root) noexcept
{
    if (!root) return;
    // A refused conversion's root comes back with no reference: freed here all the same.
    if (root->getRefCount() == 0) root->ref();
    SoGroup* top = takeOver(root);
    if (!top) {
        root->unref();
        return;
    }
    // Every group on the path holds one reference of the release's, and notifies no one:
    // nothing outside the scene watches a group that only the release holds.
    std::vector<SoGroup*> path;
    try {
        path.reserve(64);
        path.push_back(top);
        top->enableNotify(FALSE);
        while (!path.empty()) {
            SoGroup* group = path.back();
            const int last = group->getNumChildren() - 1;
            if (last < 0) {
                path.pop_back();
                group->unref();
                continue;
            }
            SoGroup* child = takeOver(group->getChild(last));
            if (child) {
                path.push_back(child);  // may throw before the child changes hands
                child->ref();
                child->enableNotify(FALSE);
            }
            group->removeChild(last);
        }
    } catch (...) {
        // Out of memory for the path: what is left is freed in Coin's order.
        for (auto it = path.rbegin(); it != path.rend(); ++it) (*it)->unref();
    }
}
