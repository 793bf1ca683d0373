// A host built against an installed QetzFlt, by its CMake package or its pkg-config file,
// with the one public header: it converts the database named on its command line as
// authored and prints the library's name and version and the shapes of the scene.
//
//   qetzflt-installed-host FILE
#include <Inventor/SoDB.h>
#include <Inventor/actions/SoCallbackAction.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShape.h>

#include <cstdio>

#include <QetzFlt/QetzFlt.h>

static SoCallbackAction::Response countShape(void* count, SoCallbackAction*, const SoNode*)
{
    ++*static_cast<int*>(count);
    return SoCallbackAction::CONTINUE;
}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: qetzflt-installed-host FILE\n");
        return 2;
    }
    SoDB::init();
    SoSeparator* root = qetzfltConvert(argv[1], QETZFLT_BUILD_AS_AUTHORED | QETZFLT_LOG_NONE | QETZFLT_NO_STANDARD_OUTPUT);
    if (!root || root->getRefCount() == 0) {
        std::fprintf(stderr, "qetzflt-installed-host: %s not converted\n", argv[1]);
        if (root) {  // refused: an empty root nobody holds yet
            root->ref();
            root->unref();
        }
        return 1;
    }
    int shapes = 0;
    SoCallbackAction walk;
    walk.addPreCallback(SoShape::getClassTypeId(), countShape, &shapes);
    walk.apply(root);
    std::printf("%s %s shapes %d\n", getProductName(), getVersion(), shapes);
    root->unref();
    return 0;
}
