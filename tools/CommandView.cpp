// qetzflt view: starts the interactive viewer, qetzflt-view beside this executable. The
// viewer needs SoQt and Qt, which the rest of the tool does without, so it is a program of
// its own that is built only where SoQt is found.
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "ToolSupport.h"

int commandView(int argc, char** argv)
{
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    const std::string viewer = ec ? std::string() : (self.parent_path() / "qetzflt-view").string();
    if (viewer.empty() || !isRegularFile(viewer) || access(viewer.c_str(), X_OK) != 0) {
        std::cerr << "qetzflt view: the viewer was not built with this qetzflt (no qetzflt-view beside it); it is "
                     "built where SoQt is found (Debian packages libsoqt520-dev and qtbase5-dev)\n";
        return kFailed;
    }
    std::vector<char*> arguments{const_cast<char*>(viewer.c_str())};
    for (int i = 2; i < argc; ++i) arguments.push_back(argv[i]);
    arguments.push_back(nullptr);
    std::cout.flush();
    execv(viewer.c_str(), arguments.data());
    std::cerr << "qetzflt view: cannot start " << viewer << ": " << std::strerror(errno) << "\n";
    return kFailed;
}
