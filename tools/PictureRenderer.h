// Headless pictures of a scene: a mapped GLX window on an X display (a virtual one that
// the tool starts itself when none is set), drawn by Coin and read back with glReadPixels.
// Coin's own offscreen renderer cannot get a context from a virtual X server here, while
// a window can.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include <Inventor/SbLinear.h>

class SoNode;

// An Xvfb server started for the lifetime of this object, when DISPLAY is not set.
class VirtualDisplay {
public:
    VirtualDisplay() = default;
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    // Uses DISPLAY when set; otherwise starts Xvfb with a screen of at least the given
    // size and sets DISPLAY to it. False with a reason when no display can be had.
    bool ensure(int width, int height, std::string& error);
    bool started() const { return pid_ > 0; }

private:
    pid_t pid_ = -1;
};

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgb;  // top row first, three bytes a pixel
};

// The camera's direction: "iso" (from the south-west, above), "top" (straight down, north
// up) or "front" (from the south). The database is Z up.
bool isKnownView(const std::string& view);

// The orientation of a camera that looks along `direction` with `up` upwards in its picture.
SbRotation lookRotation(const SbVec3f& direction, const SbVec3f& up);

// Draws the scene with two directional lights and a camera that frames its bounding box.
bool renderPicture(SoNode* scene, const std::string& view, int width, int height, Picture& picture,
                   std::string& error);

bool writePng(const std::string& path, const Picture& picture, std::string& error);

// The background colour of every picture, so that tests can tell the scene from it.
constexpr unsigned char kBackground[3] = {158, 184, 212};
