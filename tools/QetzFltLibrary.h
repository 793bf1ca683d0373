// Loading libQetzFlt.so at run time and finding its entry points, as a host does: the three
// classic ones, and the qetzflt* ones of include/QetzFlt/QetzFlt.h that tell what the scene
// graph cannot (absent in a library that exports only the classic three, then null).
#pragma once

#include <string>

#include "QetzFlt/QetzFlt.h"

class QetzFltLibrary {
public:
    // Looks for the library beside the executable, in ../lib, then on the library path
    // (QETZFLT_LIBRARY names a file to use instead).
    QetzFltLibrary();
    ~QetzFltLibrary();
    QetzFltLibrary(const QetzFltLibrary&) = delete;
    QetzFltLibrary& operator=(const QetzFltLibrary&) = delete;

    bool loaded() const { return convertFrom != nullptr; }
    const std::string& error() const { return error_; }
    const std::string& path() const { return path_; }

    decltype(&::convertFrom) convertFrom = nullptr;
    decltype(&::getProductName) getProductName = nullptr;
    decltype(&::getVersion) getVersion = nullptr;
    decltype(&::qetzfltConvert) convertWithOptions = nullptr;
    decltype(&::qetzfltLastMessageCount) lastMessageCount = nullptr;
    decltype(&::qetzfltLastMessageText) lastMessageText = nullptr;
    decltype(&::qetzfltLastMessageLevel) lastMessageLevel = nullptr;
    decltype(&::qetzfltInspect) inspect = nullptr;
    decltype(&::qetzfltWriteStatistics) writeStatistics = nullptr;
    decltype(&::qetzfltMessageCount) messageCount = nullptr;
    decltype(&::qetzfltMessageText) messageText = nullptr;
    decltype(&::qetzfltMessageLevel) messageLevel = nullptr;
    decltype(&::qetzfltClearMessages) clearMessages = nullptr;
    decltype(&::qetzfltWriteImageAsPng) writeImageAsPng = nullptr;
    decltype(&::qetzfltWriteGltf) writeGltf = nullptr;
    decltype(&::qetzfltIsDatabase) isDatabase = nullptr;
    decltype(&::qetzfltLastGltfFaceCount) lastGltfFaceCount = nullptr;
    decltype(&::qetzfltSetProgress) setProgress = nullptr;

private:
    void* handle_ = nullptr;
    std::string error_;
    std::string path_;
};
