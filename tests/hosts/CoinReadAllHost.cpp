// A plain Coin application that knows nothing of OpenFlight: it reads the file named on
// its command line with SoDB::readAll, as viewers do, and writes what it read as ASCII
// Inventor to standard output, followed by the scene's bounding box.
//
//   coin-readall-host FILE
#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/actions/SoWriteAction.h>
#include <Inventor/nodekits/SoNodeKit.h>
#include <Inventor/nodes/SoSeparator.h>

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: coin-readall-host FILE\n");
        return 2;
    }
    SoDB::init();
    SoNodeKit::init();
    SoInput in;
    if (!in.openFile(argv[1])) return 1;
    SoSeparator* root = SoDB::readAll(&in);
    if (!root) {
        std::fprintf(stderr, "coin-readall-host: cannot read %s\n", argv[1]);
        return 1;
    }
    root->ref();
    SoWriteAction writer;
    writer.apply(root);
    SoGetBoundingBoxAction box{SbViewportRegion(640, 480)};
    box.apply(root);
    float x0, y0, z0, x1, y1, z1;
    box.getBoundingBox().getBounds(x0, y0, z0, x1, y1, z1);
    std::printf("\nbounding box: %g %g %g %g %g %g\n", x0, y0, z0, x1, y1, z1);
    root->unref();
    return 0;
}
