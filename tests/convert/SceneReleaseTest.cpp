// qetzfltReleaseScene: a scene freed newest node first, what others hold left to them.
#include <gtest/gtest.h>

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoSeparator.h>

#include "QetzFlt/QetzFlt.h"

TEST(SceneRelease, freesWhatOnlyTheSceneHoldsAndLetsGoOfTheRest)
{
    SoDB::init();
    // root -> inner -> {shape, shared}; shared also stands in another graph, and the test
    // holds shape.
    auto* root = new SoSeparator;
    root->ref();
    auto* inner = new SoSeparator;
    auto* shape = new SoCube;
    shape->ref();
    auto* shared = new SoGroup;
    shared->addChild(new SoCube);
    auto* other = new SoSeparator;
    other->ref();
    other->addChild(shared);
    inner->addChild(shape);
    inner->addChild(shared);
    root->addChild(inner);

    qetzfltReleaseScene(root);
    // The scene let go of both; what it shared keeps its children and its notification.
    EXPECT_EQ(shape->getRefCount(), 1);
    EXPECT_EQ(shared->getRefCount(), 1);
    EXPECT_EQ(shared->getNumChildren(), 1);
    EXPECT_TRUE(shared->isNotifyEnabled());
    shape->unref();
    other->unref();

    // A root held elsewhere too is only given back, whole.
    auto* held = new SoSeparator;
    held->ref();
    held->ref();
    held->addChild(new SoCube);
    qetzfltReleaseScene(held);
    EXPECT_EQ(held->getRefCount(), 1);
    EXPECT_EQ(held->getNumChildren(), 1);
    held->unref();

    // A root nothing holds (a refused database's) is freed, null ignored: the leak and
    // address checkers of the sanitized builds watch these.
    qetzfltReleaseScene(new SoSeparator);
    qetzfltReleaseScene(nullptr);
}
