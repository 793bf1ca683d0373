// The stack of open groups that push and pop levels drive, and the rule that wraps every
// child of a converted switch in a switch of its own, on or off by the switch's mask.
#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"

void FltToInventor::visitPushLevel()
{
    if (!vertexPaletteFlushed) {
        // The first push level follows the palettes: the shared vertex properties are complete
        // and go into the graph, hidden, so that every face set finds them written with it.
        SoSwitch* palette = new SoSwitch;
        palette->ref();
        palette->setName("vertexPropertyPalette");
        palette->whichChild = SO_SWITCH_NONE;
        for (SharedVertexProperty& shared : sharedProperties) {
            trimSharedVertexProperty(shared);
            if (shared.count > 0) palette->addChild(shared.property);
        }
        if (palette->getNumChildren() > 0 && result) result->addChild(palette);
        palette->unref();
        vertexPaletteFlushed = true;
    }
    SoGroup* opened = lastPrimaryNode ? lastPrimaryNode : result;
    // A node made before the latest pop level is opened again: the walk has left its level
    // once, so it may lie inside anything (an instance among others).
    const bool reopened = lastPrimaryBirth != popLevels;
    nodesStack.push_back(opened);
    reopenedEntries.push_back(reopened);
    openReopenedEntries += reopened;
    if (++stackCounts[opened] == 1 && opened && opened->isNotifyEnabled()) {
        // Every child added to an open group would notify all the groups above it, a cost
        // that grows with the depth of the hierarchy; the group notifies once, as it closes.
        opened->ref();
        opened->enableNotify(FALSE);
        quietOpenGroups.insert(opened);
    }
}

void FltToInventor::notifyClosedGroup(SoGroup* group)
{
    if (quietOpenGroups.erase(group) == 0) return;
    group->enableNotify(TRUE);
    group->touch();
    // Without deleting: a LOD's content is open before anything holds it.
    group->unrefNoDelete();
}

void FltToInventor::visitPopLevel()
{
    ++popLevels;
    if (nodesStack.empty()) {
        FltWarningMessageConsole::notifyMessage("WARNING ! trying a pop() but stack is empty! (File corrupted ?)", 2,
                                                true);
        return;
    }
    auto count = stackCounts.find(nodesStack.back());
    if (count != stackCounts.end() && --count->second == 0) {
        SoGroup* closed = count->first;
        stackCounts.erase(count);
        notifyClosedGroup(closed);
        // Closed inside a group released meanwhile, nothing may hold it any more.
        releaseCandidates.push_back(closed);
    }
    openReopenedEntries -= reopenedEntries.back();
    reopenedEntries.pop_back();
    nodesStack.pop_back();
}

SoGroup* FltToInventor::getNodesStackTop() const { return nodesStack.empty() ? nullptr : nodesStack.back(); }

void FltToInventor::addSoGroupToNodesStackTop(SoGroup* node)
{
    if (!node) return;
    SoGroup* parent = getNodesStackTop();
    if (!parent) {
        // A primary record before the first push level belongs to no group and is dropped
        // from the graph; it is kept alive because later records may still add to it.
        keepUnattached(node);
        return;
    }
    const char* parentName = parent->getName().getString();
    if (std::strstr(parentName, "flt_switch")) {
        auto* wrapper = new SoSwitch;
        wrapper->setName((std::string("child_of_") + parentName).c_str());
        wrapper->whichChild = isSoSwitchTraverseHisChildren(parent) ? SO_SWITCH_ALL : SO_SWITCH_NONE;
        wrapper->addChild(node);
        parent->addChild(wrapper);
        return;
    }
    parent->addChild(node);
}

std::string FltToInventor::getInfoStringFromAConvertedFltSwitch(SoGroup* group) const
{
    if (group) {
        for (int i = 0; i < group->getNumChildren(); ++i) {
            SoNode* child = group->getChild(i);
            if (child->isOfType(SoInfo::getClassTypeId()) && child->getName() == "SoInfo_child_of_FLT_switch")
                return static_cast<SoInfo*>(child)->string.getValue().getString();
        }
    }
    FltWarningMessageConsole::notifyMessage("ERROR ! SoInfo with switch properties not found", 3, true);
    return "No_SoInfo_switch_found";
}

int FltToInventor::currentNumberOfSwitchChildren(SoGroup* group) const
{
    if (!group) return 0;
    int count = 0;
    for (int i = 0; i < group->getNumChildren(); ++i)
        if (group->getChild(i)->getTypeId() == SoSwitch::getClassTypeId()) ++count;
    return count;
}

void FltToInventor::trimSharedVertexProperty(SharedVertexProperty& shared)
{
    SoVertexProperty* property = shared.property;
    if (!property) return;
    const int count = shared.count;
    property->vertex.setNum(count);
    property->orderedRGBA.setNum(count);
    if (hasNormals(shared.id)) property->normal.setNum(count);
    if (hasTexCoords(shared.id)) property->texCoord.setNum(count);
    property->vertex.touch();
    property->orderedRGBA.touch();
    property->normal.touch();
    property->texCoord.touch();
    // The fields now hold exactly count entries: the next vertex appended grows them afresh.
    shared.capacity = count;
    shared.sized = true;
}
