// The conversion entry points of include/QetzFlt/QetzFlt.h, under plain names for the host's
// loader, and the console's messages: the last conversion's and the process's.
#include "QetzFlt/QetzFlt.h"

#include <fcntl.h>
#include <unistd.h>

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoSeparator.h>

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "convert/FltConversion.h"
#include "convert/FltGltfWriter.h"
#include "convert/FltProgress.h"
#include "convert/FltScene.h"
#include "convert/FltSceneRelease.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltParser.h"

namespace {

SoSeparator* convertWith(const char* path, const FltConversionOptions& options)
{
    if (!path || !*path) return nullptr;
    try {
        FltConversion conversion(path, options);
        return conversion.run();
    } catch (const std::exception& e) {
        FltWarningMessageConsole::notifyMessage(std::string("ERROR ! Conversion failed: ") + e.what(), 3, true);
    } catch (...) {
        FltWarningMessageConsole::notifyMessage("ERROR ! Conversion failed", 3, true);
    }
    return nullptr;
}

const FltWarningMessage* messageAt(const std::vector<FltWarningMessage>& messages, int index)
{
    return index >= 0 && index < static_cast<int>(messages.size()) ? &messages[static_cast<size_t>(index)] : nullptr;
}

const FltWarningMessage* lastMessage(int index)
{
    return messageAt(FltWarningMessageConsole::getLastConversionMessages(), index);
}

const FltWarningMessage* processMessage(int index) { return messageAt(FltWarningMessageConsole::getMessages(), index); }

// The faces of the calling thread's last glTF write.
thread_local long lastGltfFaces = 0;

// The shares of a glTF write's time, by measure: the parse ends at the first, the scene's
// walk at the second; the writer takes the rest.
constexpr double kGltfParseShare = 0.35;
constexpr double kGltfSceneShare = 0.6;

}  // namespace

extern "C" {

SoSeparator* convertFrom(const char* path)
{
    try {
        return convertWith(path, FltConversionOptions::fromEnvironment());
    } catch (...) {
        return nullptr;
    }
}

const char* getProductName() { return "Skerrymoor"; }

const char* getVersion() { return "8.6.3"; }

SoSeparator* qetzfltConvert(const char* path, unsigned int options)
{
    try {
        FltConversionOptions chosen;
        if (!FltConversionOptions::fromWord(options, chosen)) {
            FltWarningMessageConsole::notifyMessage(
                "ERROR ! Unknown conversion options " + std::to_string(options) + ": nothing converted", 3, true);
            return nullptr;
        }
        return convertWith(path, chosen);
    } catch (...) {
        return nullptr;
    }
}

int qetzfltWriteGltf(const char* path, const char* output, unsigned int options)
{
    lastGltfFaces = 0;
    try {
        FltConversionOptions chosen;
        if (!FltConversionOptions::fromWord(options, chosen)) {
            FltWarningMessageConsole::notifyMessage(
                "ERROR ! Unknown conversion options " + std::to_string(options) + ": nothing written", 3, true);
            return 2;
        }
        if (!path || !*path || !output || !*output) return 1;
        chosen.builder = FltConversionOptions::Builder::AsAuthored;
        FltConversion conversion(path, chosen);
        FltProgress* progress = conversion.getProgress();
        if (progress) {
            progress->setParseShare(kGltfParseShare);
            progress->setWalkEnd(kGltfSceneShare);
        }
        const std::shared_ptr<const FltScene> scene = conversion.scene();
        if (!scene) return 1;
        if (progress) progress->reach(kGltfSceneShare);
        // The images of textures are read through the scene graph library.
        if (!SoDB::isInitialized()) SoDB::init();
        const FltGltfResult result = fltWriteGltf(*scene, output);
        switch (result.status) {
        case FltGltfResult::Status::Written:
            lastGltfFaces = static_cast<long>(result.faces);
            if (progress) progress->finish();
            return 0;
        case FltGltfResult::Status::NothingDrawn:
            FltWarningMessageConsole::notifyMessage(
                "ERROR ! " + std::string(path) + " draws nothing: no glTF written", 3, chosen.echo);
            return 3;
        case FltGltfResult::Status::NotWritten:
            FltWarningMessageConsole::notifyMessage("ERROR ! glTF not written: " + result.why, 3, chosen.echo);
            return 2;
        }
    } catch (const std::exception& e) {
        FltWarningMessageConsole::notifyMessage(std::string("ERROR ! glTF not written: ") + e.what(), 3, true);
    } catch (...) {
        FltWarningMessageConsole::notifyMessage("ERROR ! glTF not written", 3, true);
    }
    return 2;
}

void qetzfltReleaseScene(SoSeparator* root) { fltReleaseScene(root); }

long qetzfltLastGltfFaceCount(void) { return lastGltfFaces; }

void qetzfltSetProgress(QetzfltProgressFunction function, void* user) { FltProgress::setForThread(function, user); }

int qetzfltLastMessageCount(void)
{
    return static_cast<int>(FltWarningMessageConsole::getLastConversionMessages().size());
}

const char* qetzfltLastMessageText(int index)
{
    const FltWarningMessage* message = lastMessage(index);
    return message ? message->getMessage() : nullptr;
}

int qetzfltLastMessageLevel(int index)
{
    const FltWarningMessage* message = lastMessage(index);
    return message ? message->getLevel() : 0;
}

// The process's list grows only inside a conversion's turn, so reading it in one is safe.
int qetzfltMessageCount(void)
{
    auto turn = FltConversion::takeTurn();
    return static_cast<int>(FltWarningMessageConsole::getMessages().size());
}

const char* qetzfltMessageText(int index)
{
    auto turn = FltConversion::takeTurn();
    const FltWarningMessage* message = processMessage(index);
    return message ? message->getMessage() : nullptr;
}

int qetzfltMessageLevel(int index)
{
    auto turn = FltConversion::takeTurn();
    const FltWarningMessage* message = processMessage(index);
    return message ? message->getLevel() : 0;
}

void qetzfltClearMessages(void)
{
    try {
        auto turn = FltConversion::takeTurn();
        FltWarningMessageConsole::clearMessages();
    } catch (...) {
    }
}

int qetzfltIsDatabase(const char* path)
{
    if (!path) return 0;
    // Without blocking: a named pipe would wait for a writer.
    const int fd = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return 0;
    char start[4] = {0, 0, 0, 0};
    const ssize_t n = ::read(fd, start, sizeof start);
    ::close(fd);
    return n > 0 && FltParser::isDatabaseStart(start, static_cast<uint64_t>(n)) ? 1 : 0;
}
}
