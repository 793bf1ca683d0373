// Finding and opening the library.
#include "QetzFltLibrary.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <type_traits>
#include <vector>

namespace {
std::filesystem::path executableDir()
{
    std::error_code ec;
    std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::filesystem::path() : exe.parent_path();
}
}  // namespace

QetzFltLibrary::QetzFltLibrary()
{
    std::vector<std::string> candidates;
    if (const char* chosen = std::getenv("QETZFLT_LIBRARY")) candidates.push_back(chosen);
    const std::filesystem::path dir = executableDir();
    if (!dir.empty()) {
        for (const char* rel : {"libQetzFlt.so", "../lib/libQetzFlt.so", "../lib/x86_64-linux-gnu/libQetzFlt.so",
                                "../lib64/libQetzFlt.so"}) {
            std::filesystem::path p = dir / rel;
            std::error_code missing;
            if (std::filesystem::exists(p, missing)) candidates.push_back(p.string());
        }
    }
    candidates.push_back("libQetzFlt.so");

    for (const std::string& candidate : candidates) {
        handle_ = dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle_) {
            path_ = candidate;
            break;
        }
        // The first candidate that exists but fails says most (a missing symbol, say).
        const char* why = dlerror();
        if (error_.empty()) error_ = why ? why : ("cannot load " + candidate);
    }
    if (!handle_) return;
    auto find = [this](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(handle_, name));
    };
    find(convertFrom, "convertFrom");
    find(getProductName, "getProductName");
    find(getVersion, "getVersion");
    find(convertWithOptions, "qetzfltConvert");
    find(lastMessageCount, "qetzfltLastMessageCount");
    find(lastMessageText, "qetzfltLastMessageText");
    find(lastMessageLevel, "qetzfltLastMessageLevel");
    find(inspect, "qetzfltInspect");
    find(writeStatistics, "qetzfltWriteStatistics");
    find(messageCount, "qetzfltMessageCount");
    find(messageText, "qetzfltMessageText");
    find(messageLevel, "qetzfltMessageLevel");
    find(clearMessages, "qetzfltClearMessages");
    find(writeImageAsPng, "qetzfltWriteImageAsPng");
    find(writeGltf, "qetzfltWriteGltf");
    find(isDatabase, "qetzfltIsDatabase");
    find(lastGltfFaceCount, "qetzfltLastGltfFaceCount");
    find(setProgress, "qetzfltSetProgress");
    if (!convertFrom) error_ = path_ + " does not export convertFrom";
}

QetzFltLibrary::~QetzFltLibrary()
{
    // The library stays loaded: scene nodes it created may outlive this object.
}
