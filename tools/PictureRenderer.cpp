// Virtual display, GLX window rendering and PNG output for qetzflt render.
#include "PictureRenderer.h"

#include <GL/gl.h>
#include <GL/glx.h>
#include <Inventor/SbLinear.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/elements/SoGLCacheContextElement.h>
#include <Inventor/nodes/SoDirectionalLight.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <X11/Xlib.h>
#include <fcntl.h>
#include <png.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Reads the display number that Xvfb writes to its -displayfd descriptor once it is ready.
bool readDisplayNumber(int fd, std::string& number)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    char c;
    while (std::chrono::steady_clock::now() < deadline) {
        pollfd p{fd, POLLIN, 0};
        if (poll(&p, 1, 200) <= 0) continue;
        const ssize_t n = read(fd, &c, 1);
        if (n <= 0) return false;
        if (c == '\n') return !number.empty();
        number += c;
    }
    return false;
}

struct X11Window {
    Display* display = nullptr;
    Window window = 0;
    Colormap colormap = 0;
    GLXContext context = nullptr;
    XVisualInfo* visual = nullptr;

    ~X11Window()
    {
        if (!display) return;
        if (context) {
            glXMakeCurrent(display, None, nullptr);
            glXDestroyContext(display, context);
        }
        if (window) XDestroyWindow(display, window);
        if (colormap) XFreeColormap(display, colormap);
        if (visual) XFree(visual);
        XCloseDisplay(display);
    }

    bool open(int width, int height, std::string& error)
    {
        display = XOpenDisplay(nullptr);
        if (!display) {
            const char* name = std::getenv("DISPLAY");
            error = std::string("cannot open X display ") + (name ? name : "(DISPLAY not set)");
            return false;
        }
        int withDepth24[] = {GLX_RGBA, GLX_DOUBLEBUFFER, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8,
                             GLX_DEPTH_SIZE, 24, None};
        int withDepth16[] = {GLX_RGBA, GLX_DOUBLEBUFFER, GLX_RED_SIZE, 5, GLX_GREEN_SIZE, 5, GLX_BLUE_SIZE, 5,
                             GLX_DEPTH_SIZE, 16, None};
        const int screen = DefaultScreen(display);
        visual = glXChooseVisual(display, screen, withDepth24);
        if (!visual) visual = glXChooseVisual(display, screen, withDepth16);
        if (!visual) {
            error = "the X display offers no OpenGL visual with a depth buffer (GLX missing?)";
            return false;
        }
        context = glXCreateContext(display, visual, nullptr, True);
        if (!context) {
            error = "cannot create an OpenGL context";
            return false;
        }
        const Window rootWindow = RootWindow(display, visual->screen);
        colormap = XCreateColormap(display, rootWindow, visual->visual, AllocNone);
        XSetWindowAttributes attributes{};
        attributes.colormap = colormap;
        attributes.border_pixel = 0;
        attributes.event_mask = StructureNotifyMask | ExposureMask;
        window = XCreateWindow(display, rootWindow, 0, 0, static_cast<unsigned>(width), static_cast<unsigned>(height),
                               0, visual->depth, InputOutput, visual->visual, CWBorderPixel | CWColormap | CWEventMask,
                               &attributes);
        XStoreName(display, window, "qetzflt render");
        XMapWindow(display, window);
        // A window draws only once it is mapped.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        bool mapped = false;
        while (!mapped && std::chrono::steady_clock::now() < deadline) {
            while (XPending(display)) {
                XEvent event;
                XNextEvent(display, &event);
                if (event.type == MapNotify && event.xmap.window == window) mapped = true;
            }
            if (!mapped) usleep(10000);
        }
        if (!mapped) {
            error = "the render window was never mapped";
            return false;
        }
        if (!glXMakeCurrent(display, window, context)) {
            error = "cannot make the OpenGL context current";
            return false;
        }
        return true;
    }
};

}  // namespace

VirtualDisplay::~VirtualDisplay()
{
    if (pid_ > 0) {
        kill(pid_, SIGTERM);
        int status = 0;
        waitpid(pid_, &status, 0);
    }
}

bool VirtualDisplay::ensure(int width, int height, std::string& error)
{
    const char* current = std::getenv("DISPLAY");
    if (current && *current) return true;
    int fds[2];
    if (pipe(fds) != 0) {
        error = "cannot create a pipe for Xvfb";
        return false;
    }
    const std::string fd = std::to_string(fds[1]);
    const std::string screen = std::to_string(std::max(width, 1280)) + "x" + std::to_string(std::max(height, 1024)) +
                               "x24";
    pid_ = fork();
    if (pid_ < 0) {
        error = "cannot start Xvfb";
        return false;
    }
    if (pid_ == 0) {
        close(fds[0]);
        const int devnull = open("/dev/null", O_RDWR);
        if (devnull >= 0) {
            dup2(devnull, 0);
            dup2(devnull, 1);
            dup2(devnull, 2);
        }
        execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", screen.c_str(), "-nolisten", "tcp",
               "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    std::string number;
    const bool ready = readDisplayNumber(fds[0], number);
    close(fds[0]);
    if (!ready) {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
        error = "DISPLAY is not set and no virtual X server could be started (is Xvfb installed? Debian package xvfb)";
        return false;
    }
    setenv("DISPLAY", (":" + number).c_str(), 1);
    return true;
}

SbRotation lookRotation(const SbVec3f& direction, const SbVec3f& up)
{
    SbVec3f d = direction;
    d.normalize();
    SbVec3f right = d.cross(up);
    right.normalize();
    const SbVec3f trueUp = right.cross(d);
    // Rows are the images of the camera's x, y and z axes; the camera looks along -z.
    const SbMatrix m(right[0], right[1], right[2], 0, trueUp[0], trueUp[1], trueUp[2], 0, -d[0], -d[1], -d[2], 0, 0,
                     0, 0, 1);
    return SbRotation(m);
}

bool isKnownView(const std::string& view) { return view == "iso" || view == "top" || view == "front"; }

bool renderPicture(SoNode* scene, const std::string& view, int width, int height, Picture& picture,
                   std::string& error)
{
    X11Window x11;
    if (!x11.open(width, height, error)) return false;

    const SbViewportRegion viewport(static_cast<short>(width), static_cast<short>(height));
    SoSeparator* top = new SoSeparator;
    top->ref();
    auto* camera = new SoPerspectiveCamera;
    top->addChild(camera);
    SbVec3f direction(1.0f, 1.4f, -1.1f), up(0, 0, 1);
    if (view == "top") direction = SbVec3f(0, 0, -1), up = SbVec3f(0, 1, 0);
    if (view == "front") direction = SbVec3f(0, 1, 0), up = SbVec3f(0, 0, 1);
    auto* key = new SoDirectionalLight;
    key->direction.setValue(0.4f, 0.8f, -1.0f);
    key->intensity = 0.85f;
    auto* fill = new SoDirectionalLight;
    fill->direction.setValue(-0.6f, -0.3f, -0.4f);
    fill->intensity = 0.35f;
    top->addChild(key);
    top->addChild(fill);
    top->addChild(scene);

    camera->orientation.setValue(lookRotation(direction, up));
    SoGetBoundingBoxAction box(viewport);
    box.apply(scene);
    if (!box.getBoundingBox().isEmpty()) {
        camera->viewAll(scene, viewport, 1.0f);
        // viewAll frames the bounding sphere, loose for flat databases: step a fifth closer.
        SbVec3f forward;
        camera->orientation.getValue().multVec(SbVec3f(0, 0, -1), forward);
        const float step = camera->focalDistance.getValue() * 0.2f;
        camera->position = camera->position.getValue() + forward * step;
        camera->focalDistance = camera->focalDistance.getValue() - step;
        camera->nearDistance = camera->nearDistance.getValue() * 0.5f;
    }

    glViewport(0, 0, width, height);
    glClearColor(kBackground[0] / 255.0f, kBackground[1] / 255.0f, kBackground[2] / 255.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    // Coin leaves the depth test to the viewer that owns the window, as its GUI bindings do.
    glEnable(GL_DEPTH_TEST);
    SoGLRenderAction render(viewport);
    render.setCacheContext(SoGLCacheContextElement::getUniqueCacheContext());
    render.setTransparencyType(SoGLRenderAction::SORTED_OBJECT_BLEND);
    render.apply(top);
    glFinish();

    std::vector<unsigned char> bottomUp(static_cast<size_t>(width) * height * 3);
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, bottomUp.data());
    top->unref();

    picture.width = width;
    picture.height = height;
    picture.rgb.resize(bottomUp.size());
    const size_t row = static_cast<size_t>(width) * 3;
    for (int y = 0; y < height; ++y)
        std::memcpy(&picture.rgb[y * row], &bottomUp[(height - 1 - y) * row], row);
    return true;
}

bool writePng(const std::string& path, const Picture& picture, std::string& error)
{
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) {
        error = "cannot write " + path;
        return false;
    }
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!png || !info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, info ? &info : nullptr);
        std::fclose(file);
        error = "PNG encoding failed for " + path;
        return false;
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 9);
    png_write_info(png, info);
    const size_t row = static_cast<size_t>(picture.width) * 3;
    for (int y = 0; y < picture.height; ++y)
        png_write_row(png, const_cast<png_bytep>(&picture.rgb[y * row]));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    const bool closed = std::fclose(file) == 0;
    if (!closed) error = "cannot finish writing " + path;
    return closed;
}
