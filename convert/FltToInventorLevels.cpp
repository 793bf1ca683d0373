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
    nodesStack.push_back(lastPrimaryNode ? lastPrimaryNode : result);
}

void FltToInventor::visitPopLevel()
{
    if (nodesStack.empty()) {
        FltWarningMessageConsole::notifyMessage("WARNING ! trying a pop() but stack is empty! (File corrupted ?)", 2,
                                                true);
        return;
    }
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
        node->ref();
        unattachedNodes.push_back(node);
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

bool FltToInventor::isSoSwitchTraverseHisChildren(SoGroup* group) const
{
    const std::string s = getInfoStringFromAConvertedFltSwitch(group);
    const long long n = currentNumberOfSwitchChildren(group);

    // The property string is read back number by number. After a number the scan skips as
    // many further characters as the value has digits beyond its first, counted by dividing
    // by 10 while the value exceeds 10, so a header value of 10 or of 100 to 109 is misread
    // as two numbers: kept on purpose, switch masks of existing databases depend on it.
    std::vector<long long> list;
    int numbersRead = 0;
    for (size_t p = 0; p < s.size(); ++p) {
        if (std::isdigit(static_cast<unsigned char>(s[p]))) {
            long long value = std::strtoll(s.c_str() + p, nullptr, 10);
            list.push_back(value);
            size_t skip = 0;
            for (long long v = value; v > 10; v /= 10) ++skip;
            p += skip;
            ++numbersRead;
        } else if (!list.empty() && numbersRead <= 3 && list.back() != -1) {
            list.push_back(-1);
        }
    }
    // Header: current mask, -1, words per mask, -1, number of masks, -1, then the bits.
    // A list too short for the child (a missing info node, a mask shorter than the
    // children) leaves the child off.
    if (list.size() < 3) return false;
    const long long mask = list[0];
    const long long words = list[2];
    const long long index = 32 * words + 32 * words * mask + 5 - n;
    if (index < 0 || index >= static_cast<long long>(list.size())) return false;
    return list[static_cast<size_t>(index)] == 1;
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
