// The classic builder's set-up and teardown, and the stack of open groups that push and pop
// levels drive, with the rule that wraps every child of a converted switch in a switch.
#include "convert/FltToInventor.h"

#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <cstring>
#include <string>

#include "reader/FltInput.h"

namespace {

SoLabel* newLabel(const char* text)
{
    auto* label = new SoLabel;
    label->ref();
    label->label.setValue(text);
    return label;
}

}  // namespace

FltToInventor::FltToInventor(const FltBuildContext& context, SoSeparator* root)
    : context(context), result(root), nodes(root, switchChildren), hierarchyDepth(context.startDepth)
{
    for (int kind = VERTEX_COLOR_PROPERTY_ID; kind <= VERTEX_COLOR_NORMAL_UV_PROPERTY_ID; ++kind)
        nodes.holdNotification(vertexProperties.property(kind));
    minRangeLimitLabel = newLabel("MinRangeLimitForLOD");
    maxRangeLimitLabel = newLabel("MaxRangeLimitForLOD");
    // A comment of many short lines repeats its text once per line (see visitComment).
    commentTextBudget = 16 * context.input.getSize() + (uint64_t(16) << 20);
}

FltToInventor::~FltToInventor()
{
    nodes.releaseNotifications();
    for (auto& entry : textures) entry.second->unref();
    for (auto& entry : lineStyles) entry.second->unref();
    for (auto& entry : instances)
        if (entry.second) entry.second->unref();
    minRangeLimitLabel->unref();
    maxRangeLimitLabel->unref();
}

void FltToInventor::visitPushLevel()
{
    if (!vertexPaletteFlushed) {
        // The first push level follows the palettes: the shared vertex properties are complete
        // and go into the graph, hidden, so that every face set finds them written with it.
        SoSwitch* palette = new SoSwitch;
        palette->ref();
        palette->setName("vertexPropertyPalette");
        palette->whichChild = SO_SWITCH_NONE;
        for (int kind = VERTEX_COLOR_PROPERTY_ID; kind <= VERTEX_COLOR_NORMAL_UV_PROPERTY_ID; ++kind) {
            vertexProperties.trim(kind);
            if (vertexProperties.count(kind) > 0) palette->addChild(vertexProperties.property(kind));
        }
        if (palette->getNumChildren() > 0 && result) result->addChild(palette);
        palette->unref();
        vertexPaletteFlushed = true;
    }
    nodes.pushLevel();
}

void FltToInventor::visitPopLevel() { nodes.popLevel(); }

void FltToInventor::addSoGroupToNodesStackTop(SoGroup* node)
{
    if (!node) return;
    SoGroup* parent = nodes.top();
    if (!parent) {
        // A primary record before the first push level belongs to no group and is dropped
        // from the graph; it is kept alive because later records may still add to it.
        nodes.keepUnattached(node);
        return;
    }
    const char* parentName = parent->getName().getString();
    if (std::strstr(parentName, "flt_switch")) {
        auto* wrapper = new SoSwitch;
        wrapper->setName((std::string("child_of_") + parentName).c_str());
        wrapper->whichChild = switchChildren.isNextChildOn(parent) ? SO_SWITCH_ALL : SO_SWITCH_NONE;
        wrapper->addChild(node);
        parent->addChild(wrapper);
        return;
    }
    parent->addChild(node);
}
