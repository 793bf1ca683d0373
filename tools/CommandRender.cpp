// qetzflt render: a PNG picture of the converted scene, drawn without a screen.
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoSeparator.h>

#include <iostream>
#include <string>

#include "Commands.h"
#include "PictureRenderer.h"
#include "ToolSupport.h"

namespace {

const char* const kRenderUsage =
    "usage: qetzflt render IN.flt -o OUT.png [--size WxH] [--view iso|top|front] [--classic]\n"
    "\n"
    "Converts the database and draws it, lit and textured, with a camera that frames the whole\n"
    "scene, into a PNG picture. An Inventor file (.iv, .wrl) is drawn as well.\n"
    "  -o OUT.png   the picture to write\n"
    "  --size WxH   picture size in pixels (default 800x600)\n"
    "  --view V     iso: from the south-west, above (default); top: straight down, north up;\n"
    "               front: from the south\n"
    "  --classic    draw the classic conversion instead of the database as the format means it\n"
    "  --log, --log-dir DIR, --no-log   the library's log, as for convert (default: none)\n"
    "Without DISPLAY the command starts a virtual X server (Xvfb) of its own.\n";

}  // namespace

int commandRender(int argc, char** argv)
{
    const Arguments args = parseArguments(argc, argv, 2, {}, {"-o", "--size", "--view"});
    if (args.help) {
        std::cout << kRenderUsage;
        return kOk;
    }
    if (!args.error.empty()) return usageError("render", args.error, kRenderUsage);
    if (args.positional.size() != 1) return usageError("render", "expects one input file", kRenderUsage);
    const std::string output = args.value("-o");
    if (output.empty()) return usageError("render", "needs -o OUT.png", kRenderUsage);
    int width = 800, height = 600;
    if (!args.value("--size").empty() && !parseSize(args.value("--size"), width, height))
        return usageError("render", "--size takes WIDTHxHEIGHT, 16 to 8192 pixels each, such as 800x600",
                          kRenderUsage);
    const std::string view = args.value("--view").empty() ? "iso" : args.value("--view");
    if (!isKnownView(view)) return usageError("render", "--view is iso, top or front", kRenderUsage);

    const std::string input = args.positional[0];
    Conversion conversion;
    SoSeparator* scene = nullptr;
    if (isInventorFile(input)) {
        scene = readInventorFile(input);
        if (!scene) return kFailed;
        scene->ref();
    } else {
        if (!conversion.run(input, true, args)) return kFailed;
        scene = conversion.root;
        scene->ref();
        // Textures are read when drawn as well: the database's directory stays searched.
        SoInput::addDirectoryFirst(conversion.directory.c_str());
    }

    SoGetBoundingBoxAction box{SbViewportRegion(width, height)};
    box.apply(scene);
    if (box.getBoundingBox().isEmpty())
        std::cerr << "qetzflt render: the scene draws nothing; the picture shows only the background\n";

    VirtualDisplay display;
    std::string error;
    Picture picture;
    bool drawn = display.ensure(width, height, error) && renderPicture(scene, view, width, height, picture, error);
    drawn = drawn && writeReplacing(
                         output, [&](const std::string& temporary) { return writePng(temporary, picture, error); }, error);
    scene->unref();
    if (!drawn) {
        std::cerr << "qetzflt render: " << error << "\n";
        return kFailed;
    }
    std::cout << "wrote " << output << " (" << width << "x" << height << ", " << view << " view)\n";
    return kOk;
}
