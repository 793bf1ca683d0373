// Open groups, held notifications and the early release of unreachable nodes.
#include "convert/FltNodeStack.h"

#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoSeparator.h>

#include "diagnostics/FltWarningMessageConsole.h"

namespace {
// Actions applied by this thread's conversions to scenes they were building.
thread_local uint64_t traversals = 0;
}  // namespace

FltNodeStack::FltNodeStack(SoSeparator* root, FltGroupCache& cache)
    : root_(root), cache_(cache), traversalsAtStart_(traversals)
{
}

void FltNodeStack::noteTraversal() { ++traversals; }

bool FltNodeStack::traversed() const { return traversals != traversalsAtStart_; }

FltQuietNode::FltQuietNode(SoNode* node, const FltNodeStack& stack) : node_(node), stack_(stack)
{
    // A node already quiet stays the business of whoever quieted it.
    if (node_ && !node_->isNotifyEnabled()) node_ = nullptr;
    if (node_) node_->enableNotify(FALSE);
}

FltQuietNode::~FltQuietNode()
{
    if (!node_) return;
    node_->enableNotify(TRUE);
    if (stack_.traversed()) node_->touch();
}

FltNodeStack::~FltNodeStack()
{
    for (SoNode* node : unattachedNodes_)
        if (node) node->unref();
    releaseLastPrimary();
}

void FltNodeStack::pushLevel()
{
    SoGroup* opened = lastPrimary_ ? lastPrimary_ : root_;
    // A node made before the latest pop level is opened again: the walk has left its level
    // once, so it may lie inside anything (an instance among others).
    const bool reopened = lastPrimaryBirth_ != popLevels_;
    groups_.push_back(opened);
    reopenedEntries_.push_back(reopened);
    openReopenedEntries_ += reopened;
    if (++stackCounts_[opened] == 1 && opened && opened->isNotifyEnabled()) {
        // Every child added to an open group would notify all the groups above it, a cost
        // that grows with the depth of the hierarchy; the group notifies once, as it closes.
        opened->ref();
        opened->enableNotify(FALSE);
        quietOpenGroups_.insert(opened);
    }
}

void FltNodeStack::notifyClosedGroup(SoGroup* group)
{
    if (quietOpenGroups_.erase(group) == 0) return;
    group->enableNotify(TRUE);
    if (traversed()) group->touch();
    // Without deleting: a LOD's content is open before anything holds it.
    group->unrefNoDelete();
}

void FltNodeStack::popLevel()
{
    ++popLevels_;
    if (groups_.empty()) {
        FltWarningMessageConsole::notifyMessage("WARNING ! trying a pop() but stack is empty! (File corrupted ?)", 2,
                                                true);
        return;
    }
    auto count = stackCounts_.find(groups_.back());
    if (count != stackCounts_.end() && --count->second == 0) {
        SoGroup* closed = count->first;
        stackCounts_.erase(count);
        notifyClosedGroup(closed);
        // Closed inside a group released meanwhile, nothing may hold it any more.
        releaseCandidates_.push_back(closed);
    }
    openReopenedEntries_ -= reopenedEntries_.back();
    reopenedEntries_.pop_back();
    groups_.pop_back();
}

FltNodeStack::Containment FltNodeStack::wouldContainItself(SoGroup* instance, SoGroup* parent)
{
    // While every open group was opened by the push right after its own record, the
    // groups above the stack top are exactly the open ones (sharing adds parents only to
    // nodes that are not open), so the instance contains the top only if it is open itself.
    if (instance == parent || stackCounts_.count(instance)) return Containment::Yes;
    if (openReopenedEntries_ == 0) return Containment::No;
    // A group reopened later may lie anywhere, inside the instance among others: look for
    // the top below the instance.
    std::vector<SoNode*> pending{instance};
    std::unordered_set<SoNode*> seen{instance};
    while (!pending.empty()) {
        if (searchBudget_ == 0) return Containment::Unknown;
        --searchBudget_;
        SoNode* node = pending.back();
        pending.pop_back();
        if (node == parent) return Containment::Yes;
        if (!node->isOfType(SoGroup::getClassTypeId())) continue;
        auto* group = static_cast<SoGroup*>(node);
        for (int i = 0, n = group->getNumChildren(); i < n; ++i) {
            SoNode* child = group->getChild(i);
            if (seen.insert(child).second) pending.push_back(child);
        }
    }
    return Containment::No;
}

void FltNodeStack::holdNotification(SoNode* node)
{
    if (!node || !heldSlots_.emplace(node, notificationHeld_.size()).second) return;
    node->ref();
    node->enableNotify(FALSE);
    notificationHeld_.push_back(node);
}

void FltNodeStack::keepUnattached(SoNode* node)
{
    node->ref();
    unattachedSlots_.emplace(node, unattachedNodes_.size());
    unattachedNodes_.push_back(node);
    releaseCandidates_.push_back(node);
}

void FltNodeStack::setLastPrimary(SoGroup* node)
{
    if (node) node->ref();
    SoGroup* previous = lastPrimary_;
    lastPrimary_ = node;
    lastPrimaryBirth_ = popLevels_;
    if (!previous) return;
    // Without deleting: a LOD's content is the last primary node before its LOD holds it.
    // A node that nothing holds once the visit ends is freed between records of the top level.
    previous->unrefNoDelete();
    releaseCandidates_.push_back(previous);
}

void FltNodeStack::releaseLastPrimary()
{
    SoGroup* last = lastPrimary_;
    lastPrimary_ = nullptr;
    if (last) last->unref();
}

void FltNodeStack::releaseUnreachable()
{
    if (releaseCandidates_.empty()) return;
    std::vector<SoNode*> candidates;
    candidates.swap(releaseCandidates_);
    // No visit runs here, and every table and open group holds what it points to, so two
    // kinds of node are out of reach: former primary nodes that nothing holds (in no graph),
    // and unattached nodes held only by the walk that no later record can reach.
    std::unordered_set<SoNode*> orphans;
    std::unordered_set<SoNode*> unreachable;
    for (SoNode* node : candidates) {
        auto unattached = unattachedSlots_.find(node);
        if (unattached == unattachedSlots_.end()) {
            if (node != lastPrimary_ && node != root_ && node->getRefCount() == 0) orphans.insert(node);
            continue;
        }
        SoGroup* group = node->isOfType(SoGroup::getClassTypeId()) ? static_cast<SoGroup*>(node) : nullptr;
        if (group && (group == lastPrimary_ || group == root_ || stackCounts_.count(group))) continue;
        const int ours = 1 + int(heldSlots_.count(node)) + int(group && cache_.holds(group));
        // Anything else holding it (a group it was added to later, the instance table) keeps it.
        if (node->getRefCount() == ours) unreachable.insert(node);
    }
    if (orphans.empty() && unreachable.empty()) return;
    cache_.forget();
    for (SoNode* node : orphans) {
        node->ref();
        node->unref();
    }
    for (SoNode* node : unreachable) {
        auto unattached = unattachedSlots_.find(node);
        unattachedNodes_[unattached->second] = nullptr;
        unattachedSlots_.erase(unattached);
        auto held = heldSlots_.find(node);
        if (held != heldSlots_.end()) {
            notificationHeld_[held->second] = nullptr;
            heldSlots_.erase(held);
            node->unrefNoDelete();
        }
        node->unref();
    }
}

void FltNodeStack::releaseNotifications()
{
    // Groups that no pop level closed notify now.
    std::vector<SoGroup*> open(quietOpenGroups_.begin(), quietOpenGroups_.end());
    for (SoGroup* group : open) group->enableNotify(TRUE);
    for (SoGroup* group : open) {
        notifyClosedGroup(group);
        // Left open inside a group released early: nothing else holds it.
        if (group->getRefCount() == 0 && group != lastPrimary_ && group != root_) {
            group->ref();
            group->unref();
        }
    }
    std::vector<SoNode*> held;
    held.swap(notificationHeld_);
    heldSlots_.clear();
    // A node whose notification is still held takes a change from below and goes no further,
    // and its own touch carries it on: touched below before above, each change climbs to the
    // next held node only. All at once, a chain of instances inside instances would pass
    // every touch through every instance above it, in time growing with its length squared.
    if (traversed()) {
        for (SoNode* node : belowBeforeAbove(held)) {
            node->enableNotify(TRUE);
            node->touch();
        }
    } else {
        for (SoNode* node : held)
            if (node) node->enableNotify(TRUE);
    }
    for (SoNode* node : held)
        if (node) node->unref();
}

std::vector<SoNode*> FltNodeStack::belowBeforeAbove(const std::vector<SoNode*>& nodes)
{
    const std::unordered_set<SoNode*> wanted(nodes.begin(), nodes.end());
    std::unordered_set<SoNode*> seen;
    std::vector<SoNode*> order;
    struct Step {
        SoNode* node;
        int next;
    };
    std::vector<Step> path;
    for (SoNode* start : nodes) {
        if (!start || !seen.insert(start).second) continue;
        path.push_back({start, 0});
        while (!path.empty()) {
            Step& step = path.back();
            auto* group = step.node->isOfType(SoGroup::getClassTypeId()) ? static_cast<SoGroup*>(step.node) : nullptr;
            if (group && step.next < group->getNumChildren()) {
                SoNode* child = group->getChild(step.next++);
                if (seen.insert(child).second) path.push_back({child, 0});
                continue;
            }
            if (wanted.count(step.node)) order.push_back(step.node);
            path.pop_back();
        }
    }
    return order;
}

void FltNodeStack::finishWalk()
{
    releaseNotifications();
    // The walk is over: the caller may release the root before the builder.
    releaseLastPrimary();
    releaseCandidates_.clear();
}
