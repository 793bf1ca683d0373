// Running the built programs (qetzflt, qetzflt-demo, the Coin host) as a user would, and
// reading what they wrote: exit status, standard output and error, PNG pictures.
#pragma once

#include <fcntl.h>
#include <png.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "TestSupport.h"

struct RunResult {
    int status = -1;  // the exit status, or -1 when the program did not exit normally
    std::string out;
    std::string err;
};

using Environment = std::vector<std::pair<std::string, std::string>>;

// In a forked child: standard output and error to these descriptors, the working directory
// `cwd` (the current one when empty), the extra environment variables given (an empty value
// removes the variable), then the program.
[[noreturn]] inline void execInChild(const std::string& program, const std::vector<std::string>& args,
                                     const Environment& env, const std::string& cwd, int out, int err)
{
    if (out < 0 || err < 0 || (!cwd.empty() && chdir(cwd.c_str()) != 0)) _exit(126);
    dup2(out, 1);
    dup2(err, 2);
    for (const auto& [name, value] : env)
        if (value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1)) _exit(126);
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
}

// The exit status of a child, or -1 when it did not exit normally.
inline int exitStatusOf(pid_t pid)
{
    int status = 0;
    return pid > 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline int openForChild(const std::string& path) { return open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600); }

// Runs program with args (see execInChild), its standard output and error captured.
inline RunResult runProgram(const std::string& program, const std::vector<std::string>& args,
                            const Environment& env = {}, const std::string& cwd = "")
{
    ScratchDir capture;
    const std::string outPath = capture.file("out"), errPath = capture.file("err");
    const pid_t pid = fork();
    if (pid == 0) execInChild(program, args, env, cwd, openForChild(outPath), openForChild(errPath));
    RunResult result;
    result.status = exitStatusOf(pid);
    result.out = readFile(outPath);
    result.err = readFile(errPath);
    return result;
}

inline RunResult runTool(const std::vector<std::string>& args, const std::string& cwd = "", const Environment& env = {})
{
    return runProgram(QETZFLT_TOOL_PATH, args, env, cwd);
}

// Runs the tool with its standard error on a pseudo-terminal, as from a user's shell: err
// holds what the terminal received (standard output goes to out, not to the terminal).
inline RunResult runToolOnTerminal(const std::vector<std::string>& args, const Environment& env = {})
{
    RunResult result;
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0) return result;
    // The terminal's side is opened here before the fork, so that reading ends (EIO) only
    // once the tool has closed its copy.
    const int terminal = grantpt(master) == 0 && unlockpt(master) == 0 ? open(ptsname(master), O_RDWR | O_NOCTTY) : -1;
    if (terminal < 0) {
        close(master);
        return result;
    }
    ScratchDir capture;
    const std::string outPath = capture.file("out");
    const pid_t pid = fork();
    if (pid == 0) {
        close(master);
        execInChild(QETZFLT_TOOL_PATH, args, env, "", openForChild(outPath), terminal);
    }
    close(terminal);
    char buffer[4096];
    for (ssize_t n; (n = read(master, buffer, sizeof buffer)) > 0;) result.err.append(buffer, static_cast<size_t>(n));
    close(master);
    result.status = exitStatusOf(pid);
    result.out = readFile(outPath);
    return result;
}

inline bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The lines of text that begin with start.
inline size_t linesStartingWith(const std::string& text, const std::string& start)
{
    return occurrences("\n" + text, "\n" + start);
}

// A decoded PNG picture, three bytes a pixel, top row first.
struct PngPicture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgb;

    const unsigned char* at(int x, int y) const { return &rgb[(static_cast<size_t>(y) * width + x) * 3]; }
};

inline bool readPng(const std::string& path, PngPicture& picture)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return false;
    image.format = PNG_FORMAT_RGB;
    picture.width = static_cast<int>(image.width);
    picture.height = static_cast<int>(image.height);
    picture.rgb.resize(PNG_IMAGE_SIZE(image));
    const bool ok = png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr) != 0;
    png_image_free(&image);
    return ok;
}

// Whether a pixel has the background colour of the tool's pictures (158, 184, 212).
inline bool isBackground(const unsigned char* p)
{
    return std::abs(p[0] - 158) < 4 && std::abs(p[1] - 184) < 4 && std::abs(p[2] - 212) < 4;
}

// The pixels of a picture that show the model: those not of the background.
inline int modelPixels(const PngPicture& picture)
{
    int model = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) model += isBackground(picture.at(x, y)) ? 0 : 1;
    return model;
}

// Whether a drawing command failed for want of a screen (no X server, no OpenGL on it)
// rather than for a fault of its own.
inline bool failedForWantOfDisplay(const RunResult& r)
{
    if (r.status == 0) return false;
    for (const char* reason : {"X server", "X display", "GLX", "OpenGL"})
        if (contains(r.err, reason)) return true;
    return false;
}

// Writes the demo database and its files into dir; the path of the main file.
inline std::string writeDemoDatabase(const ScratchDir& dir)
{
    const std::string path = dir.file("demo.flt");
    runProgram(QETZFLT_DEMO_PATH, {path});
    return path;
}
