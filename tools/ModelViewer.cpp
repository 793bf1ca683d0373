// The viewer window, its keys, overlay and screenshot.
#include "ModelViewer.h"

#include <GL/gl.h>
#include <Inventor/SoInput.h>
#include <Inventor/Qt/SoQt.h>
#include <Inventor/actions/SoGetPrimitiveCountAction.h>
#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoDepthBuffer.h>
#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTranslation.h>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "PictureRenderer.h"
#include "SceneSummary.h"

ViewedFile::~ViewedFile()
{
    if (inventor_) inventor_->unref();
    if (!directory_.empty()) SoInput::removeDirectory(directory_.c_str());
}

bool ViewedFile::load(const std::string& path, bool database, bool classic)
{
    path_ = path;
    database_ = database;
    if (!database) {
        inventor_ = readInventorFile(path);
        if (!inventor_) return false;
        inventor_->ref();
        // Cubes, spheres and other shapes are no face sets: the triangles drawn say more.
        SoGetPrimitiveCountAction count;
        count.apply(inventor_);
        faces_[0] = count.getTriangleCount();
        return true;
    }
    return convert(classic ? 1 : 0);
}

bool ViewedFile::convert(int which)
{
    auto conversion = std::make_unique<Conversion>();
    // The viewer converts again at a key: it leaves no log beside the database.
    conversion->writeLog = false;
    Arguments args;
    if (which == 1) args.flags.insert("--classic");
    if (!conversion->run(path_, false, args)) return false;
    // A library that exports only the classic entry points gives that one whatever was asked.
    const int got = conversion->classic ? 1 : 0;
    if (got != which) std::cerr << "qetzflt view: the library offers only the classic conversion\n";
    if (directory_.empty()) {
        directory_ = conversion->directory;
        SoInput::addDirectoryFirst(directory_.c_str());
    }
    faces_[got] = summarizeScene(conversion->root).faces;
    conversions_[got] = std::move(conversion);
    current_ = got;
    return true;
}

bool ViewedFile::switchConversion()
{
    if (!database_) return false;
    const int other = 1 - current_;
    if (conversions_[other]) {
        current_ = other;
        return true;
    }
    return convert(other) && current_ == other;
}

std::string ViewedFile::fileName() const
{
    return std::filesystem::path(path_).filename().string();
}

std::string ViewedFile::facesText() const
{
    const std::string count = std::to_string(faces_[current_]);
    if (!database_) return count + (faces_[current_] == 1 ? " triangle" : " triangles");
    return count + (faces_[current_] == 1 ? " face" : " faces");
}

std::string ViewedFile::mode() const
{
    if (!database_) return "Inventor file";
    return current_ == 1 ? "classic" : "as authored";
}

SoSeparator* ViewedFile::scene() const { return database_ ? conversions_[current_]->root : inventor_; }

const std::vector<ConsoleMessage>& ViewedFile::messages() const
{
    static const std::vector<ConsoleMessage> none;
    return database_ ? conversions_[current_]->messages : none;
}

const char* const ModelViewer::kKeys =
    "c: as authored / classic   t: textures   m: print messages   Home: start view";

ModelViewer::ModelViewer(QWidget* parent, ViewedFile& file, bool zUp)
    : SoQtExaminerViewer(parent), file_(file)
{
    root_ = new SoSeparator;
    root_->ref();
    // A camera of the viewer's own, in front of the scene: switching conversions keeps the view.
    camera_ = new SoPerspectiveCamera;
    root_->addChild(camera_);
    content_ = new SoGroup;
    root_->addChild(content_);
    // From the south-west and above, the scene's up upwards, as qetzflt render's iso view.
    camera_->orientation = zUp ? lookRotation(SbVec3f(1.0f, 1.4f, -1.1f), SbVec3f(0, 0, 1))
                               : lookRotation(SbVec3f(1.0f, -1.1f, -1.4f), SbVec3f(0, 1, 0));

    // The overlay: text in the top left corner, over whatever the scene drew there.
    overlay_ = new SoSeparator;
    overlay_->ref();
    auto* flat = new SoOrthographicCamera;
    flat->height = 2.0f;
    overlay_->addChild(flat);
    auto* depth = new SoDepthBuffer;
    depth->test = FALSE;
    depth->write = FALSE;
    overlay_->addChild(depth);
    auto* light = new SoLightModel;
    light->model = SoLightModel::BASE_COLOR;
    overlay_->addChild(light);
    auto* colour = new SoBaseColor;
    colour->rgb.setValue(0.05f, 0.07f, 0.2f);
    overlay_->addChild(colour);
    auto* font = new SoFont;
    font->size = 15.0f;
    overlay_->addChild(font);
    corner_ = new SoTranslation;
    overlay_->addChild(corner_);
    text_ = new SoText2;
    overlay_->addChild(text_);
    addSuperimposition(overlay_);

    setBackgroundColor(SbColor(kBackground[0] / 255.0f, kBackground[1] / 255.0f, kBackground[2] / 255.0f));
    setTransparencyType(SoGLRenderAction::SORTED_OBJECT_BLEND);
    showScene();
    setSceneGraph(root_);
    viewAll();
    saveHomePosition();
}

ModelViewer::~ModelViewer()
{
    removeSuperimposition(overlay_);
    overlay_->unref();
    root_->unref();
}

void ModelViewer::showScene()
{
    content_->removeAllChildren();
    if (SoSeparator* scene = file_.scene()) content_->addChild(scene);
    const int messages = static_cast<int>(file_.messages().size());
    const std::string status = file_.fileName() + "   " + file_.mode() + "   " + file_.facesText() + "   " +
                               std::to_string(messages) + (messages == 1 ? " message" : " messages") +
                               "   textures " + (textures_ ? "on" : "off");
    text_->string.setNum(2);
    text_->string.set1Value(0, status.c_str());
    text_->string.set1Value(1, kKeys);
    if (QWidget* widget = getWidget()) widget->window()->setWindowTitle(QString::fromStdString(status));
    std::cout << status << std::endl;
}

void ModelViewer::setAreaSize(const SbVec2s& size)
{
    setSize(getSize() + size - getGLSize());
}

void ModelViewer::setTextures(bool on)
{
    textures_ = on;
    setDrawStyle(STILL, on ? VIEW_AS_IS : VIEW_NO_TEXTURE);
    setDrawStyle(INTERACTIVE, VIEW_SAME_AS_STILL);
    showScene();
}

SbBool ModelViewer::processSoEvent(const SoEvent* const event)
{
    // Ahead of the examiner's own keys, which these letters are not among.
    if (SO_KEY_PRESS_EVENT(event, C)) {
        if (!file_.holdsDatabase())
            std::cout << file_.fileName() << ": an Inventor file has no other conversion" << std::endl;
        else if (file_.switchConversion())
            showScene();
        return TRUE;
    }
    if (SO_KEY_PRESS_EVENT(event, T)) {
        setTextures(!textures_);
        return TRUE;
    }
    if (SO_KEY_PRESS_EVENT(event, M)) {
        const std::vector<ConsoleMessage>& messages = file_.messages();
        std::cout << "messages of " << file_.fileName() << " (" << file_.mode() << "): "
                  << (messages.empty() ? "none" : std::to_string(messages.size())) << "\n";
        for (const ConsoleMessage& m : messages) std::cout << "  [level " << m.level << "] " << m.text << "\n";
        std::cout.flush();
        return TRUE;
    }
    return SoQtExaminerViewer::processSoEvent(event);
}

void ModelViewer::pressKeys(const std::string& keys)
{
    QWidget* area = getGLWidget();
    for (const char c : keys) {
        if (!std::isalpha(static_cast<unsigned char>(c))) continue;
        const int key = Qt::Key_A + (std::toupper(static_cast<unsigned char>(c)) - 'A');
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(QChar(c)));
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(QChar(c)));
        QCoreApplication::sendEvent(area, &press);
        QCoreApplication::sendEvent(area, &release);
    }
}

void ModelViewer::sizeChanged(const SbVec2s& size)
{
    SoQtExaminerViewer::sizeChanged(size);
    // `size` is the whole viewer's, with its decorations: the text goes by the drawing area's.
    // The overlay camera spans 2 units in height; the text's first baseline sits 20 pixels down.
    const SbVec2s area = getGLSize();
    if (area[1] <= 0) return;
    const float pixel = 2.0f / area[1];
    const float halfWidth = float(area[0]) / area[1];
    corner_->translation.setValue(-halfWidth + 10 * pixel, 1.0f - 20 * pixel, 0.0f);
}

void ModelViewer::takeScreenshot(const std::string& path) { screenshot_ = path; }

void ModelViewer::actualRedraw()
{
    SoQtExaminerViewer::actualRedraw();
    if (!screenshot_.empty() && !screenshotTaken_) {
        if (++framesDrawn_ < 2) { scheduleRedraw(); return; }
        screenshotTaken_ = true;
        writeScreenshot();
        SoQt::exitMainLoop();
    }
}

void ModelViewer::writeScreenshot()
{
    const SbVec2s size = getGLSize();
    Picture picture;
    picture.width = size[0];
    picture.height = size[1];
    std::vector<unsigned char> bottomUp(static_cast<size_t>(picture.width) * picture.height * 3);
    // Read before the buffers swap: the frame just drawn is in the back buffer.
    glReadBuffer(isDoubleBuffer() ? GL_BACK : GL_FRONT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, picture.width, picture.height, GL_RGB, GL_UNSIGNED_BYTE, bottomUp.data());
    picture.rgb.resize(bottomUp.size());
    const size_t row = static_cast<size_t>(picture.width) * 3;
    for (int y = 0; y < picture.height; ++y)
        std::memcpy(&picture.rgb[y * row], &bottomUp[(picture.height - 1 - y) * row], row);
    std::string error;
    if (!writeReplacing(
            screenshot_, [&](const std::string& temporary) { return writePng(temporary, picture, error); }, error)) {
        std::cerr << "qetzflt view: " << error << "\n";
        return;
    }
    screenshotStatus_ = kOk;
    std::cout << "wrote " << screenshot_ << " (" << picture.width << "x" << picture.height << ")" << std::endl;
}
