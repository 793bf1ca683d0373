// qetzflt-view, started by `qetzflt view`: an OpenFlight database (or an Inventor file) in an
// examiner viewer. It loads libQetzFlt.so at run time, as qetzflt does.
//
// Exit status: 0 when the window was closed (or the screenshot written), 1 when the file
// cannot be shown, no display can be had or the screenshot cannot be written, 2 on bad usage.
#include <Inventor/Qt/SoQt.h>
#include <Inventor/SoDB.h>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "ModelViewer.h"
#include "PictureRenderer.h"
#include "QetzFltLibrary.h"
#include "ToolSupport.h"

// After Qt's headers: X11's macros (Bool, Status, None) break them.
#include <GL/glx.h>
#include <X11/Xlib.h>

namespace {

const char* const kViewUsage =
    "usage: qetzflt view IN.flt [--classic] [--no-textures] [--size WxH] [--up z|y]\n"
    "                           [--press KEYS] [--screenshot OUT.png]\n"
    "\n"
    "Shows the database in an examiner viewer, as the OpenFlight format means it, the whole\n"
    "model in view and its up (z) upwards. Inventor and VRML files (.iv, .ivb, .wrl) are shown as\n"
    "well; other files (.glb, .obj, ...) the viewer cannot open. The title and the top left\n"
    "corner show the file's name, the conversion, its face count and its number of messages.\n"
    "\n"
    "keys:\n"
    "  c      switch between the as-authored and the classic conversion\n"
    "  t      textures off and on\n"
    "  m      print the conversion's messages to the terminal\n"
    "  Home   back to the start view; drag to turn, middle-drag to pan, wheel to zoom\n"
    "\n"
    "  --classic          start with the classic conversion\n"
    "  --no-textures      start with textures off\n"
    "  --size WxH         the drawing area in pixels (default 800x600)\n"
    "  --up z|y           the scene's up: z for databases (the default), y for .iv and .wrl\n"
    "  --press KEYS       type these keys once the window is up (such as 'ct')\n"
    "  --screenshot OUT   write the first frame drawn to a PNG picture and end; without\n"
    "                     DISPLAY it draws on a virtual X server (Xvfb) of its own\n"
    "The viewer writes no log next to the database.\n";

std::string lowerExtension(const std::string& path)
{
    std::string ext = std::filesystem::path(path).extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
    return ext;
}

// Qt ends the process when it cannot reach the display: ask X first, and say why.
bool displayWithOpenGL(std::string& error)
{
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        const char* name = std::getenv("DISPLAY");
        error = std::string("cannot open X display ") + (name && *name ? name : "(DISPLAY not set)");
        return false;
    }
    int errorBase = 0, eventBase = 0;
    const bool glx = glXQueryExtension(display, &errorBase, &eventBase);
    XCloseDisplay(display);
    if (!glx) error = "the X display offers no OpenGL (GLX missing)";
    return glx;
}

int view(int argc, char** argv)
{
    const Arguments args =
        parseArguments(argc, argv, 1, {"--no-textures"}, {"--size", "--up", "--press", "--screenshot"});
    if (args.help) {
        std::cout << kViewUsage;
        return kOk;
    }
    if (!args.error.empty()) return usageError("view", args.error, kViewUsage);
    if (args.positional.size() != 1) return usageError("view", "expects one input file", kViewUsage);
    int width = 800, height = 600;
    if (!args.value("--size").empty() && !parseSize(args.value("--size"), width, height))
        return usageError("view", "--size takes WIDTHxHEIGHT, 16 to 8192 pixels each, such as 800x600", kViewUsage);
    const std::string up = args.value("--up");
    if (!up.empty() && up != "z" && up != "y") return usageError("view", "--up is z or y", kViewUsage);

    const std::string input = args.positional[0];
    const std::string ext = lowerExtension(input);
    // Told by content where the file can be read (a binary scene.ivb is Inventor, TANK.FLT a
    // database), by its name where it cannot (missing: the load then says why).
    const bool inventor = isInventorFile(input);
    QetzFltLibrary* library = inventor || !isRegularFile(input) ? nullptr : loadLibrary();
    const bool database = !inventor && (library && library->isDatabase ? library->isDatabase(input.c_str()) != 0
                                                                        : ext == ".flt");
    if (!database && !inventor) {
        std::cerr << "qetzflt view: " << input << ": the viewer cannot open "
                  << (ext.empty() ? std::string("files without an extension") : ext + " files")
                  << "; it shows OpenFlight databases and Inventor or VRML files (told by their content)\n";
        return kFailed;
    }

    SoDB::init();
    auto file = std::make_unique<ViewedFile>();
    if (!file->load(input, database, args.has("--classic"))) return kFailed;

    const std::string screenshot = args.value("--screenshot");
    VirtualDisplay virtualDisplay;
    std::string error;
    const char* display = std::getenv("DISPLAY");
    if (screenshot.empty() && !(display && *display)) {
        std::cerr << "qetzflt view: DISPLAY is not set: the viewer needs an X display (--screenshot draws on a "
                     "virtual one)\n";
        return kFailed;
    }
    if (!virtualDisplay.ensure(width + 200, height + 200, error) || !displayWithOpenGL(error)) {
        std::cerr << "qetzflt view: " << error << "\n";
        return kFailed;
    }

    // Qt reads (and takes away) options of its own from the command line: it gets none of ours.
    static int qtArgc = 1;
    static char* qtArgv[] = {argv[0], nullptr};
    QWidget* window = SoQt::init(qtArgc, qtArgv, "qetzflt view");
    auto* viewer = new ModelViewer(window, *file, up.empty() ? database : up == "z");
    if (args.has("--no-textures")) viewer->setTextures(false);
    std::cout << "keys: " << ModelViewer::kKeys << std::endl;
    viewer->show();
    SoQt::show(window);
    viewer->setAreaSize(SbVec2s(static_cast<short>(width), static_cast<short>(height)));
    if (!args.value("--press").empty()) viewer->pressKeys(args.value("--press"));
    if (!screenshot.empty()) {
        viewer->takeScreenshot(screenshot);
        // A window that never draws (no compositor, say) must not hold the caller for ever.
        QTimer::singleShot(120000, [] {
            std::cerr << "qetzflt view: no frame was drawn within two minutes\n";
            SoQt::exitMainLoop();
        });
    }
    SoQt::mainLoop();
    const int status = screenshot.empty() ? kOk : viewer->screenshotStatus();
    delete viewer;
    // SoQt::done ends Coin too: the scenes go first. Qt lets go of the display before a
    // virtual one of our own is stopped.
    file.reset();
    SoQt::done();
    return status;
}

}  // namespace

int main(int argc, char** argv)
{
    // A file system that refuses (a loop of links, a name too long) ends with its reason.
    try {
        return view(argc, argv);
    } catch (const std::exception& e) {
        std::cerr << "qetzflt view: " << e.what() << "\n";
        return kFailed;
    }
}
