// FltNodeStack: the stack of open groups that push and pop levels drive, and the lifetimes
// of the nodes a walk builds outside it.
//
// A push level opens the last primary node (the root before any); a pop level closes the
// group on top. The stack also keeps alive what no group holds yet (nodes built before the
// first push level, the last primary node), holds the change notifications of shared and
// open groups until the walk ends or they close, and frees, between records of the top level,
// nodes that no later record can reach: the scene graph library releases N nodes of one
// name in time growing with N * N, so each goes as soon as the walk has moved past it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class SoGroup;
class SoNode;
class SoSeparator;

// A cache that holds a reference on groups it describes, to be let go whenever nodes are
// freed, so that the groups below a released node go with it.
class FltGroupCache {
public:
    virtual ~FltGroupCache() = default;
    virtual bool holds(SoGroup* group) const = 0;
    virtual void forget() = 0;
};

class FltNodeStack;

// Holds a node's change notification for as long as it lives, and notifies once at the end
// if an action may have seen the node meanwhile (see FltNodeStack::noteTraversal).
class FltQuietNode {
public:
    FltQuietNode(SoNode* node, const FltNodeStack& stack);
    ~FltQuietNode();
    FltQuietNode(const FltQuietNode&) = delete;
    FltQuietNode& operator=(const FltQuietNode&) = delete;

private:
    SoNode* node_;
    const FltNodeStack& stack_;
};

class FltNodeStack {
public:
    FltNodeStack(SoSeparator* root, FltGroupCache& cache);
    // Frees the nodes kept outside the graph and gives back the last primary node.
    ~FltNodeStack();
    FltNodeStack(const FltNodeStack&) = delete;
    FltNodeStack& operator=(const FltNodeStack&) = delete;

    // Opens the last primary node (the root before any).
    void pushLevel();
    // Closes the group on top; an empty stack is reported.
    void popLevel();
    SoGroup* top() const { return groups_.empty() ? nullptr : groups_.back(); }
    // Whether adding `instance` under `parent` (the top) would make the instance contain
    // itself: No, Yes, or Unknown when the search for that ran past its limit.
    enum class Containment { No, Yes, Unknown };
    Containment wouldContainItself(SoGroup* instance, SoGroup* parent);

    // The node the next push level opens, and when it was made. The stack holds a reference
    // on it, so that it outlives a released group around it.
    void setLastPrimary(SoGroup* node);
    SoGroup* lastPrimary() const { return lastPrimary_; }
    // Gives the last primary node back once the walk is over.
    void releaseLastPrimary();

    // Stops a node's change notifications until the walk ends: a node shared by many parents
    // would otherwise pass every change under it to all of them, once per change.
    void holdNotification(SoNode* node);
    // Lets held nodes notify again, and notifies once for what changed under them.
    void releaseNotifications();
    // Keeps a node that joins no group alive, as a candidate for early release.
    void keepUnattached(SoNode* node);
    // A node that lost what held it (a replaced instance definition), to be freed if nothing
    // else does.
    void addReleaseCandidate(SoNode* node) { releaseCandidates_.push_back(node); }
    // Between records of the top level, where no visit holds a node, frees the candidates
    // (kept unattached, or that stopped being the last primary node, closed, or lost their
    // instance number) that nothing can reach any more.
    void releaseUnreachable();
    // The walk is over: notifications flow again, the last primary node is given back.
    void finishWalk();
    // Says that an action traversed part of the scene being built (and may have left caches
    // in it). Until one does, held and closed groups need not notify when they let go:
    // nothing in a scene no action has seen keeps anything that a change makes stale.
    static void noteTraversal();
    // Whether an action has traversed a scene of this thread's conversions since this walk
    // began (those of nested conversions included).
    bool traversed() const;

private:
    // Gives a group closed by a pop level its notification back, if the push held it.
    void notifyClosedGroup(SoGroup* group);

    // The nodes given (nulls dropped), each after every one of them that lies below it.
    static std::vector<SoNode*> belowBeforeAbove(const std::vector<SoNode*>& nodes);

    SoSeparator* root_;
    FltGroupCache& cache_;
    uint64_t traversalsAtStart_;
    std::deque<SoGroup*> groups_;
    // For each stack entry, whether its push reopened a node made before a later pop level
    // (a push that follows no primary record); how many such entries are open; how often
    // each group stands on the stack. Instance references need these to stay acyclic.
    std::deque<bool> reopenedEntries_;
    int openReopenedEntries_ = 0;
    std::unordered_map<SoGroup*, int> stackCounts_;
    // Nodes the searches under reopened groups may still visit, all together: a file of many
    // references to a large instance would otherwise search it whole each time.
    uint64_t searchBudget_ = uint64_t(1) << 24;
    // Open groups whose notification is held until they close (see pushLevel).
    std::unordered_set<SoGroup*> quietOpenGroups_;
    uint64_t popLevels_ = 0;
    uint64_t lastPrimaryBirth_ = 0;
    SoGroup* lastPrimary_ = nullptr;
    // Held nodes in the order they were held (null where released early), and where each is.
    std::vector<SoNode*> notificationHeld_;
    std::unordered_map<SoNode*, size_t> heldSlots_;
    // Nodes built while no group was open: in no graph, so the stack keeps them alive while
    // later records may still reach them (null where released early), where each is, and
    // those to test at the next record of the top level.
    std::vector<SoNode*> unattachedNodes_;
    std::unordered_map<SoNode*, size_t> unattachedSlots_;
    std::vector<SoNode*> releaseCandidates_;
};
