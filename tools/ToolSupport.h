// Shared parts of the qetzflt subcommands: arguments, the conversion through the loaded
// library, and the paths of files that a database names.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

class QetzFltLibrary;
class SoSeparator;

constexpr int kOk = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

// The command line of one subcommand, options separated from positional arguments.
struct Arguments {
    std::vector<std::string> positional;
    std::set<std::string> flags;
    std::map<std::string, std::string> values;
    bool help = false;
    std::string error;

    bool has(const std::string& flag) const { return flags.count(flag) != 0; }
    std::string value(const std::string& option) const
    {
        auto it = values.find(option);
        return it == values.end() ? std::string() : it->second;
    }
};

// Reads argv[first..]; `flags` take no value, `valueOptions` take the next argument.
Arguments parseArguments(int argc, char** argv, int first, const std::vector<std::string>& flags,
                         const std::vector<std::string>& valueOptions);

// Prints "qetzflt COMMAND: MESSAGE" and the usage text to standard error; returns kUsage.
int usageError(const std::string& command, const std::string& message, const char* usage);

// The library, loaded once per process; null with a message on standard error when absent.
QetzFltLibrary* loadLibrary();

struct ConsoleMessage {
    std::string text;
    int level = 0;
};

// The line on standard error that shows how far the conversion of one database has come: a
// bar that follows the library's conversion, then what the tool does after it. Drawn only
// when standard error is a terminal, and only once the command has run a while, so that
// small files never flicker; cleared for any other line.
class ProgressBar {
public:
    // The clock starts; nothing is drawn unless wanted (a batch's workers draw nothing).
    explicit ProgressBar(bool wanted = true);
    ~ProgressBar() { clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // Runs convert, a call into the library, with the bar following the conversion it makes
    // on this thread; the line is cleared after it.
    void follow(QetzFltLibrary& library, const std::function<void()>& convert);
    // Shows what the tool does now in place of the bar, for a step it cannot measure.
    void say(const std::string& text);
    void clear();

private:
    static void update(void* self, double fraction);
    void draw(const std::string& text);

    bool terminal_ = false;
    std::chrono::steady_clock::time_point start_;
    std::chrono::duration<double> delay_{0.3};
    int percent_ = -1;     // the percentage the bar shows, -1 when it shows none
    bool drawn_ = false;  // whether the line holds anything
};

// One conversion through the library. The root is held until the process ends: a command
// converts once and exits, and Coin would take longer to free a scene of many objects than
// the conversion took.
class Conversion {
public:
    Conversion() = default;
    ~Conversion();
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    // Converts as the arguments say (--classic: the classic conversion, else as-authored;
    // --log: the library's log IN.flt.log beside the input, --log-dir DIR: that log moved
    // into DIR; else no log), with the database's directory first
    // on Coin's search path, so that its textures load whatever the working directory. With
    // echo, the messages go to standard error once the conversion has ended (a refusal as one
    // line); without, they are only collected. False, with one message on standard error, when the file is missing, is
    // no OpenFlight database or the conversion was refused; a refused input leaves no log.
    bool run(const std::string& path, bool echo, const Arguments& args);

    SoSeparator* root = nullptr;
    std::vector<ConsoleMessage> messages;
    std::string directory;  // the database's directory, absolute
    bool classic = false;   // which conversion ran
    bool writeLog = true;   // false: no log file whatever the arguments (QETZFLT_LOG_NONE)
    ProgressBar* progress = nullptr;  // follows the library's conversion when set

private:
    SoSeparator* convertWithOptions(QetzFltLibrary& library, const std::string& path, bool echo, unsigned int log);
    SoSeparator* convertPlain(QetzFltLibrary& library, const std::string& path, bool echo);
};

// The messages on standard error as the library's console echoes them.
void echoMessages(const std::vector<ConsoleMessage>& messages);

// The messages of the library's last conversion, which the library then forgets: a batch
// must not grow its list without end.
std::vector<ConsoleMessage> takeLastMessages(QetzFltLibrary& library);

// Whether `path` can be converted at all: a regular file that begins as a database does.
// When not, one line "COMMAND: PATH: REASON" on standard error; a file that is no database
// is then never handed to the library, so it gets no log either.
bool isConvertibleInput(QetzFltLibrary& library, const std::string& path, const std::string& command);

// The text of the last error (level 3) among the messages, or `otherwise`.
std::string lastError(const std::vector<ConsoleMessage>& messages, const std::string& otherwise);

// A picture size "WIDTHxHEIGHT", 16 to 8192 pixels each.
bool parseSize(const std::string& text, int& width, int& height);

// Whether the file is one that Coin reads itself (Inventor or VRML, ASCII or binary, told by
// its "#Inventor" or "#VRML" header whatever its name) rather than a database.
bool isInventorFile(const std::string& path);

// The log choice of the options word as the arguments ask (--log, --log-dir: the full log;
// else none).
unsigned int logOption(const Arguments& args);

// After a run that wrote IN.flt.log: a refused input keeps no log; with --log-dir the log
// is moved to DIR/NAME.flt.log. False, with a message on standard error, when it cannot be.
bool settleLog(const std::string& input, const Arguments& args, bool refused);

// An Inventor file read as it is; null with a message on standard error when it cannot be
// read (a pipe or a device is not opened: reading it could block).
SoSeparator* readInventorFile(const std::string& path);

// The absolute directory that holds a file.
std::string directoryOf(const std::string& path);

// Where a file named in a database is looked for: absolute names as they are, others
// below `base`. The result is absolute and normalised.
std::string resolveAgainst(const std::string& name, const std::string& base);

// Creates the directory that will hold an output file; false, with the system's reason,
// when it cannot be.
bool makeParentDirectory(const std::string& path, std::string* why = nullptr);

// Writes an output file as a whole or not at all: `write` fills a new file under a
// temporary name beside path (its folders made first), which is then renamed over path,
// so a link at that name is replaced, never followed, and no half-written file is left.
// False, with `error` set (by `write` or here), when it could not be written.
bool writeReplacing(const std::string& path, const std::function<bool(const std::string& temporary)>& write,
                    std::string& error);

// Whether path names a regular file, links followed as the library follows them. When not,
// `why` says so: "no such file", "is a directory", "not a regular file", or the system's reason (a loop of
// links, a name too long).
bool isRegularFile(const std::string& path, std::string* why = nullptr);

// The first word of the line a batch worker prints: "qetzflt-batch FACES NOTES WARNINGS ERRORS".
constexpr const char* kBatchReport = "qetzflt-batch";

// qetzflt convert with several inputs or folders (args as parsed by convert).
int convertBatch(const Arguments& args, const char* usage);

// The working directory, or "." when it cannot be told (removed meanwhile, say).
std::string workingDirectory();

// `target` written relative to the directory `from` (both absolute).
std::string relativePath(const std::string& target, const std::string& from);
