// Arguments, conversion and paths shared by the qetzflt subcommands.
#include "ToolSupport.h"

#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/nodes/SoSeparator.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <streambuf>

#include "QetzFltLibrary.h"
#include "diagnostics/FltNullStream.h"

namespace fs = std::filesystem;

namespace {

// Points a standard stream elsewhere for its lifetime.
class Redirect {
public:
    Redirect(std::ostream& stream, std::streambuf* to) : stream_(stream), saved_(stream.rdbuf(to)) {}
    ~Redirect() { stream_.rdbuf(saved_); }
    Redirect(const Redirect&) = delete;
    Redirect& operator=(const Redirect&) = delete;

private:
    std::ostream& stream_;
    std::streambuf* saved_;
};

}  // namespace

Arguments parseArguments(int argc, char** argv, int first, const std::vector<std::string>& flags,
                         const std::vector<std::string>& valueOptions)
{
    Arguments args;
    auto known = [](const std::vector<std::string>& list, const std::string& a) {
        for (const std::string& k : list)
            if (k == a) return true;
        return false;
    };
    for (int i = first; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "-h" || a == "--help") {
            args.help = true;
        } else if (a == "--no-log" || a == "--log" || a == "--classic") {
            // Every command that converts takes them: no log (the default), the library's
            // log, the classic conversion.
            args.flags.insert(a);
        } else if (a == "--log-dir") {
            if (i + 1 >= argc) {
                args.error = "option " + a + " needs a value";
                return args;
            }
            args.values[a] = argv[++i];
        } else if (known(valueOptions, a)) {
            if (i + 1 >= argc) {
                args.error = "option " + a + " needs a value";
                return args;
            }
            args.values[a] = argv[++i];
        } else if (known(flags, a)) {
            args.flags.insert(a);
        } else if (a.size() > 1 && a[0] == '-') {
            args.error = "unknown option " + a;
            return args;
        } else {
            args.positional.push_back(a);
        }
    }
    return args;
}

int usageError(const std::string& command, const std::string& message, const char* usage)
{
    std::cerr << "qetzflt " << command << ": " << message << "\n" << usage;
    return kUsage;
}

QetzFltLibrary* loadLibrary()
{
    static QetzFltLibrary library;
    static bool reported = false;
    if (!library.loaded()) {
        if (reported) return nullptr;
        reported = true;
        std::cerr << "qetzflt: cannot load libQetzFlt.so: " << library.error() << "\n";
        return nullptr;
    }
    return &library;
}

Conversion::~Conversion()
{
    // A command's conversion ends as the tool does: a scene of many objects takes Coin longer
    // to free than to build, and the process's end gives its memory back at once. Kept where
    // the leak checkers see it held.
    static auto* keptUntilExit = new std::vector<SoSeparator*>;
    if (root) keptUntilExit->push_back(root);
}

bool Conversion::run(const std::string& path, bool echo, const Arguments& args)
{
    classic = args.has("--classic");
    QetzFltLibrary* library = loadLibrary();
    if (!library) return false;
    if (!isConvertibleInput(*library, path, "qetzflt")) return false;
    unsigned int log = writeLog ? logOption(args) : unsigned(QETZFLT_LOG_NONE);
    std::error_code ec;
    if (log != QETZFLT_LOG_NONE && !args.value("--log-dir").empty() && std::filesystem::exists(path + ".log", ec)) {
        // The log passes beside the input on its way to DIR: a file of that name is the user's.
        std::cerr << "qetzflt: " << path << ".log exists: no log written to " << args.value("--log-dir") << "\n";
        log = QETZFLT_LOG_NONE;
    }
    directory = directoryOf(path);
    SoInput::addDirectoryFirst(directory.c_str());
    // The messages are echoed once the conversion has ended, so that a refusal is said in
    // one line rather than as the library's error and then the tool's.
    SoSeparator* converted = nullptr;
    auto convert = [&] {
        converted = library->convertWithOptions ? convertWithOptions(*library, path, false, log)
                                                : convertPlain(*library, path, echo);
    };
    if (progress) progress->follow(*library, convert);
    else convert();
    if (!library->convertWithOptions) classic = true;
    SoInput::removeDirectory(directory.c_str());
    if (!converted) {
        std::cerr << "qetzflt: " << path << ": conversion failed\n";
        return false;
    }
    // A refused database comes back with no reference (and nothing under it).
    const bool refused = converted->getRefCount() == 0;
    converted->ref();
    root = converted;
    if (library->convertWithOptions && log != QETZFLT_LOG_NONE) settleLog(path, args, refused);
    if (refused) {
        std::cerr << "qetzflt: " << path << ": not converted: " << lastError(messages, "refused by the library") << "\n";
        return false;
    }
    if (echo && library->convertWithOptions) echoMessages(messages);
    return true;
}

ProgressBar::ProgressBar(bool wanted)
    : terminal_(wanted && isatty(STDERR_FILENO)), start_(std::chrono::steady_clock::now())
{
    // QETZFLT_PROGRESS_DELAY (seconds) is for the tests, which would otherwise need a
    // database that takes the whole delay to convert.
    if (const char* chosen = std::getenv("QETZFLT_PROGRESS_DELAY")) {
        char* end = nullptr;
        const double value = std::strtod(chosen, &end);
        if (end != chosen && !*end && value >= 0 && value < 3600) delay_ = std::chrono::duration<double>(value);
    }
}

void ProgressBar::follow(QetzFltLibrary& library, const std::function<void()>& convert)
{
    const bool hooked = terminal_ && library.setProgress;
    if (hooked) library.setProgress(&ProgressBar::update, this);
    convert();
    if (hooked) library.setProgress(nullptr, nullptr);
    clear();
}

void ProgressBar::update(void* self, double fraction)
{
    auto& bar = *static_cast<ProgressBar*>(self);
    // At the end the line is the messages' and the output's again.
    if (fraction >= 1.0) {
        bar.clear();
        return;
    }
    const int percent = static_cast<int>(fraction * 100);
    if (percent == bar.percent_) return;
    constexpr int kWidth = 30;
    const int filled = percent * kWidth / 100;
    bar.draw("converting [" + std::string(static_cast<size_t>(filled), '#') +
             std::string(static_cast<size_t>(kWidth - filled), ' ') + "] " + std::to_string(percent) + "%");
    if (bar.drawn_) bar.percent_ = percent;
}

void ProgressBar::say(const std::string& text)
{
    draw(text);
    percent_ = -1;
}

void ProgressBar::draw(const std::string& text)
{
    if (!terminal_ || std::chrono::steady_clock::now() - start_ < delay_) return;
    // One write, so that the line never shows half drawn.
    std::cerr << "\r\033[K" + text << std::flush;
    drawn_ = true;
}

void ProgressBar::clear()
{
    if (!drawn_) return;
    std::cerr << "\r\033[K" << std::flush;
    drawn_ = false;
    percent_ = -1;
}

void echoMessages(const std::vector<ConsoleMessage>& messages)
{
    for (const ConsoleMessage& m : messages) {
        std::string text = m.text;
        while (!text.empty() && text.back() == '\n') text.pop_back();
        std::cerr << text << "\n(Warning Level: " << m.level << ")\n\n";
    }
}

std::string lastError(const std::vector<ConsoleMessage>& messages, const std::string& otherwise)
{
    for (auto it = messages.rbegin(); it != messages.rend(); ++it) {
        if (it->level < 3) continue;
        std::string text = it->text;
        while (!text.empty() && text.back() == '\n') text.pop_back();
        return text;
    }
    return otherwise;
}

SoSeparator* Conversion::convertWithOptions(QetzFltLibrary& library, const std::string& path, bool echo, unsigned int log)
{
    // The library's opening line on standard output is not the tool's output.
    const unsigned int options = QETZFLT_NO_STANDARD_OUTPUT | (echo ? 0u : unsigned(QETZFLT_NO_ECHO)) | log |
                                 (classic ? unsigned(QETZFLT_BUILD_CLASSIC) : unsigned(QETZFLT_BUILD_AS_AUTHORED));
    SoSeparator* converted = library.convertWithOptions(path.c_str(), options);
    messages = takeLastMessages(library);
    return converted;
}

std::vector<ConsoleMessage> takeLastMessages(QetzFltLibrary& library)
{
    std::vector<ConsoleMessage> messages;
    if (library.lastMessageCount && library.lastMessageText && library.lastMessageLevel)
        for (int i = 0; i < library.lastMessageCount(); ++i) {
            const char* text = library.lastMessageText(i);
            messages.push_back({text ? text : "", library.lastMessageLevel(i)});
        }
    if (library.clearMessages) library.clearMessages();
    return messages;
}

bool isConvertibleInput(QetzFltLibrary& library, const std::string& path, const std::string& command)
{
    std::string why;
    if (!isRegularFile(path, &why)) {
        std::cerr << command << ": " << path << ": " << why << "\n";
        return false;
    }
    // Told by its first bytes.
    if (library.isDatabase && !library.isDatabase(path.c_str())) {
        std::cerr << command << ": " << path << ": not an OpenFlight database\n";
        return false;
    }
    return true;
}

unsigned int logOption(const Arguments& args)
{
    return args.has("--log") || !args.value("--log-dir").empty() ? unsigned(QETZFLT_LOG_FILE)
                                                                 : unsigned(QETZFLT_LOG_NONE);
}

bool settleLog(const std::string& input, const Arguments& args, bool refused)
{
    const std::string log = input + ".log";
    std::error_code ec;
    if (refused) {
        fs::remove(log, ec);
        return true;
    }
    const std::string dir = args.value("--log-dir");
    if (dir.empty()) return true;
    const std::string target = (fs::path(dir) / fs::path(log).filename()).string();
    std::string error;
    // Copied then removed: the folder may be on another file system.
    const bool moved = writeReplacing(
        target,
        [&](const std::string& temporary) {
            std::error_code copyError;
            fs::copy_file(log, temporary, fs::copy_options::overwrite_existing, copyError);
            if (copyError) error = "cannot write " + target + ": " + copyError.message();
            return !copyError;
        },
        error);
    fs::remove(log, ec);
    if (!moved) std::cerr << "qetzflt: " << error << "\n";
    return moved;
}

SoSeparator* Conversion::convertPlain(QetzFltLibrary& library, const std::string& path, bool echo)
{
    // A library that exports only the classic entry points takes no options: its lines on
    // standard output, and without echo those on standard error, are held back here.
    const int before = library.messageCount ? library.messageCount() : 0;
    SoSeparator* converted = nullptr;
    {
        FltNullBuffer null;
        Redirect out(std::cout, &null);
        Redirect err(std::cerr, echo ? std::cerr.rdbuf() : &null);
        converted = library.convertFrom(path.c_str());
    }
    if (library.messageCount && library.messageText && library.messageLevel) {
        for (int i = before; i < library.messageCount(); ++i) {
            const char* text = library.messageText(i);
            messages.push_back({text ? text : "", library.messageLevel(i)});
        }
    }
    return converted;
}

bool parseSize(const std::string& text, int& width, int& height)
{
    const size_t x = text.find('x');
    if (x == std::string::npos || x == 0 || x + 1 >= text.size()) return false;
    try {
        size_t used = 0;
        width = std::stoi(text.substr(0, x), &used);
        if (used != x) return false;
        height = std::stoi(text.substr(x + 1), &used);
        if (used != text.size() - x - 1) return false;
    } catch (...) {
        return false;
    }
    return width >= 16 && height >= 16 && width <= 8192 && height <= 8192;
}

bool isInventorFile(const std::string& path)
{
    if (!isRegularFile(path)) {
        const std::string ext = fs::path(path).extension().string();
        return ext == ".iv" || ext == ".wrl";
    }
    // Not opened when it is no regular file (a pipe could block); the header names it.
    std::ifstream in(path, std::ios::binary);
    char head[9] = {};
    in.read(head, 9);
    const std::string start(head, static_cast<size_t>(in.gcount()));
    return start.rfind("#Inventor", 0) == 0 || start.rfind("#VRML", 0) == 0;
}

SoSeparator* readInventorFile(const std::string& path)
{
    std::string why;
    SoInput in;
    if (!isRegularFile(path, &why) || !in.openFile(path.c_str())) {
        std::cerr << "qetzflt: " << path << ": cannot open" << (why.empty() ? "" : " (" + why + ")") << "\n";
        return nullptr;
    }
    SoSeparator* root = SoDB::readAll(&in);
    if (!root) std::cerr << "qetzflt: " << path << ": not a readable Inventor file\n";
    return root;
}

std::string directoryOf(const std::string& path)
{
    std::error_code ec;
    fs::path absolute = fs::absolute(path, ec);
    if (ec) absolute = path;
    return absolute.lexically_normal().parent_path().string();
}

std::string resolveAgainst(const std::string& name, const std::string& base)
{
    fs::path p(name);
    if (p.is_relative()) p = fs::path(base) / p;
    return p.lexically_normal().string();
}

std::string relativePath(const std::string& target, const std::string& from)
{
    fs::path rel = fs::path(target).lexically_relative(from);
    return rel.empty() ? target : rel.string();
}

bool makeParentDirectory(const std::string& path, std::string* why)
{
    const fs::path parent = fs::path(path).parent_path();
    if (parent.empty()) return true;
    std::error_code ec;
    fs::create_directories(parent, ec);
    std::error_code isError;
    if (fs::is_directory(parent, isError)) return true;
    if (why) *why = ec ? ec.message() : "Not a directory";
    return false;
}

bool writeReplacing(const std::string& path, const std::function<bool(const std::string& temporary)>& write,
                    std::string& error)
{
    std::string why;
    if (!makeParentDirectory(path, &why)) {
        error = "cannot write " + path + ": " + why;
        return false;
    }
    std::string temporary = path + ".XXXXXX";
    const int fd = mkstemp(temporary.data());
    if (fd < 0) {
        error = "cannot write " + path + ": " + std::strerror(errno);
        return false;
    }
    // mkstemp makes the file private; an output gets the modes any new file would.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, 0666 & ~mask);
    close(fd);
    if (!write(temporary) || std::rename(temporary.c_str(), path.c_str()) != 0) {
        if (error.empty()) error = "cannot write " + path + ": " + std::strerror(errno);
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

bool isRegularFile(const std::string& path, std::string* why)
{
    struct stat info;
    if (::stat(path.c_str(), &info) != 0) {
        if (why) *why = errno == ENOENT || errno == ENOTDIR ? "no such file" : std::strerror(errno);
        return false;
    }
    if (S_ISREG(info.st_mode)) return true;
    if (why) *why = S_ISDIR(info.st_mode) ? "is a directory" : "not a regular file";
    return false;
}

std::string workingDirectory()
{
    std::error_code ec;
    const fs::path current = fs::current_path(ec);
    return ec ? std::string(".") : current.string();
}
