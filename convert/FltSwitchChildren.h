// The rule that turns each child of a converted switch on or off: the switch's masks are
// kept as text in an info node named "SoInfo_child_of_FLT_switch" under its separator, and
// every child added later is wrapped in a switch of its own whose state that text decides.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "convert/FltNodeStack.h"

class FltRecordSwitch;
class SoGroup;

// The name of the info node that carries a switch's masks.
extern const char* const kFltSwitchInfoName;

// The info text of a switch: its current mask, its counts and every mask word the record
// holds, bit by bit.
std::string fltSwitchMaskText(const FltRecordSwitch& record);

// A switch's info text read back by the rule that decides its children: the first three
// numbers of the list (current mask, then a separator or a misread digit, then the words
// per mask) and, for every element, whether it equals 1. Nothing else of the list is ever
// consulted, so a long mask costs one byte per bit.
struct FltSwitchMaskList {
    size_t size = 0;
    long long head[3] = {0, 0, 0};
    std::vector<bool> isOne;
};
FltSwitchMaskList fltParseSwitchMaskText(const std::string& text);
// Whether child `childIndex` (the wrappers already added) is on by the parsed list; off
// whenever the selected element lies outside the list.
bool fltIsSwitchChildOn(const FltSwitchMaskList& list, long long childIndex);

// Decides the next child of switch separators. Each answer looks only at the children
// appended since the last one (children are only ever appended), so that each child costs
// the same whatever the switch already holds.
class FltSwitchChildren : public FltGroupCache {
public:
    FltSwitchChildren() = default;
    ~FltSwitchChildren() override { forget(); }
    FltSwitchChildren(const FltSwitchChildren&) = delete;
    FltSwitchChildren& operator=(const FltSwitchChildren&) = delete;

    // Whether the next child added under this switch separator is on. A separator without
    // its info node is reported, and its children are off.
    bool isNextChildOn(SoGroup* group);

    // FltGroupCache: each described group is referenced while its state is kept, so that a
    // freed group's address can never meet a stale state.
    bool holds(SoGroup* group) const override { return states_.count(group) != 0; }
    void forget() override;

private:
    struct State {
        int scannedChildren = 0;
        int switchChildren = 0;  // children of type exactly SoSwitch
        bool infoFound = false;
        FltSwitchMaskList list;
    };
    std::unordered_map<SoGroup*, State> states_;
};
