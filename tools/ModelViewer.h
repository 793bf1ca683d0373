// The window of qetzflt view: an examiner viewer (SoQt) showing a database in either of its
// two conversions, or an Inventor file, with what it holds in an overlay and the title.
#pragma once

#include <Inventor/Qt/viewers/SoQtExaminerViewer.h>

#include <memory>
#include <string>
#include <vector>

#include "ToolSupport.h"

class SoGroup;
class SoPerspectiveCamera;
class SoSeparator;
class SoText2;
class SoTranslation;

// The file on view: a database, converted as authored or classic (each at most once, then
// kept, so that switching back and forth is immediate), or an Inventor file read as it is.
class ViewedFile {
public:
    ViewedFile() = default;
    ~ViewedFile();
    ViewedFile(const ViewedFile&) = delete;
    ViewedFile& operator=(const ViewedFile&) = delete;

    // False, with the reason on standard error, when the file cannot be shown.
    bool load(const std::string& path, bool database, bool classic);
    // Converts the database the other way; false (the current one staying) when that fails
    // or the file is no database.
    bool switchConversion();

    bool holdsDatabase() const { return database_; }
    std::string fileName() const;
    std::string mode() const;  // "as authored", "classic" or "Inventor file"
    SoSeparator* scene() const;
    // "237 faces" of a database's face sets, "12 triangles" drawn for an Inventor file.
    std::string facesText() const;
    const std::vector<ConsoleMessage>& messages() const;

private:
    bool convert(int which);

    std::string path_;
    bool database_ = false;
    int current_ = 0;  // 0 as authored (or the Inventor file), 1 classic
    std::unique_ptr<Conversion> conversions_[2];
    SoSeparator* inventor_ = nullptr;
    int faces_[2] = {0, 0};
    std::string directory_;  // kept on Coin's search path: textures are read when drawn
};

class ModelViewer : public SoQtExaminerViewer {
public:
    // zUp: the scene's up is +z (OpenFlight), else +y (Inventor's habit).
    ModelViewer(QWidget* parent, ViewedFile& file, bool zUp);
    ~ModelViewer() override;

    void setTextures(bool on);
    // The drawing area's size in pixels (the window grows around it).
    void setAreaSize(const SbVec2s& size);
    // Sends the keys to the drawing area as if typed (for scripts and tests).
    void pressKeys(const std::string& keys);
    // After the next frame is drawn, writes it to a PNG file and ends the main loop.
    void takeScreenshot(const std::string& path);
    // kOk once the screenshot is written, kFailed when it could not be.
    int screenshotStatus() const { return screenshotStatus_; }

    static const char* const kKeys;

protected:
    SbBool processSoEvent(const SoEvent* const event) override;
    void actualRedraw() override;
    void sizeChanged(const SbVec2s& size) override;

private:
    void showScene();
    void writeScreenshot();

    ViewedFile& file_;
    SoSeparator* root_ = nullptr;
    SoPerspectiveCamera* camera_ = nullptr;
    SoGroup* content_ = nullptr;
    SoSeparator* overlay_ = nullptr;
    SoTranslation* corner_ = nullptr;
    SoText2* text_ = nullptr;
    bool textures_ = true;
    std::string screenshot_;
    int screenshotStatus_ = kFailed;
    bool screenshotTaken_ = false;
    int framesDrawn_ = 0;
};
