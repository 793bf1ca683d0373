// FltConversion: one conversion run. It owns the options, the input, the parse and its
// records, the log and the messages of the conversion, and chooses the builder that turns
// the records into a scene graph. External references come back to it: each referenced
// database is converted by a nested run with the same options, log and reference chain.
#pragma once

#include <iosfwd>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "diagnostics/FltNullStream.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltParser.h"

class FltInput;
class FltFileInput;
class FltLogFile;
class FltProgress;
class FltReferenceChain;
class FltSceneBuilder;
class SoSeparator;
struct FltBuildContext;
struct FltScene;

struct FltConversionOptions {
    enum class Log { File, NoDump, None };
    enum class Builder { Classic, AsAuthored };
    Log log = Log::File;
    Builder builder = Builder::Classic;
    bool standardOutput = true;  // the file input's opening line
    bool echo = true;            // messages echoed, file errors written, on standard error

    // The options of the public options word; false when it holds bits this library does
    // not know.
    static bool fromWord(unsigned int word, FltConversionOptions& options);
    // The options of convertFrom: the full log, without the dump when QETZFLT_NO_LOG is set
    // (to anything but "0"). The one place that reads the variable.
    static FltConversionOptions fromEnvironment();
};

class FltConversion {
public:
    // A run on the database at path (read at once), its log next to it as the options ask.
    FltConversion(const std::string& path, const FltConversionOptions& options);
    // A run on a database already read, which stays the caller's; it has no log file.
    FltConversion(FltInput& input, const FltConversionOptions& options);
    ~FltConversion();
    FltConversion(const FltConversion&) = delete;
    FltConversion& operator=(const FltConversion&) = delete;

    // The whole run into a new root: parse, build, free the records. The root comes back
    // with a reference count of 1, or 0 when the database was refused before the walk (an
    // empty root); an exception stops the build with a message, and the scene then holds
    // what was built before.
    SoSeparator* run();

    // The steps of a run, for a host that keeps what they make. Parses the input: 0, or 1
    // when refused (no input, not a database, revision 10 or older), with a message.
    int parse();
    // Builds the scene of the parsed records under root with the builder the options
    // choose, which lives as long as the run; then frees the records. The classic builder
    // reads only the records, so the bytes of an input read for the run go before it starts.
    void build(SoSeparator* root);
    // parse(), then build() when the database was accepted; 0 or 1 as parse().
    int convert(SoSeparator* root);
    // parse(), then the as-authored scene of the records, without the scene graph library
    // (for writers of other formats); then frees the records. Null when refused.
    std::shared_ptr<const FltScene> scene();

    FltParser& getParser() { return parser_; }
    FltInput* getInput() const { return input_; }
    std::ostream& getLog() { return *log_; }
    FltSceneBuilder* getBuilder() const { return builder_.get(); }
    // How far the run has come, told to the calling thread's progress hook; null when no
    // hook was set as the run began, and in nested runs (their parent's run counts them).
    FltProgress* getProgress() const { return progress_.get(); }
    // Writes the per-opcode record counts of the parsed records next to the input (its file
    // name followed by ".stat"); false when the file could not be written (with a message).
    bool writeStatistics();

    // The process-wide turn that conversions take, for entry points that read or change
    // what conversions write (the console's messages).
    static std::unique_lock<std::recursive_mutex> takeTurn();

private:
    // A nested run on a referenced database.
    FltConversion(FltInput& input, FltConversion& parent);
    void setUp();
    // A run of its own (not nested) follows the thread's progress hook, when one is set.
    void followProgress();
    FltBuildContext context();
    void convertNested(FltInput& input, const std::string& texturePrefix, int depth, SoSeparator* root);
    std::shared_ptr<const FltScene> nestedScene(FltInput& input, int depth);

    FltConversionOptions options_;
    // Conversions run one at a time: the classic one points the process's standard output
    // at its log. Nested runs share their parent's turn.
    std::unique_lock<std::recursive_mutex> turn_;
    std::optional<FltWarningMessageConsole::ConversionMessages> messages_;
    std::unique_ptr<FltFileInput> ownedInput_;
    FltInput* input_ = nullptr;
    // The input was read for this run (its own file, or a reference a parent's builder read
    // for it), not lent by a caller: its bytes may go once the parse no longer needs them.
    bool ownsBytes_ = false;
    FltNullStream null_;
    std::unique_ptr<FltLogFile> logFile_;
    std::ostream* log_ = &null_;  // the log file's stream, or one that writes nothing
    bool logged_ = false;         // a log file receives the parse
    std::ostream* errors_ = &null_;
    FltParser parser_;
    std::shared_ptr<FltReferenceChain> references_;
    std::shared_ptr<FltLogBudget> logBudget_;  // one for the run and its nested runs
    std::string texturePrefix_;
    int startDepth_ = 0;
    std::unique_ptr<FltSceneBuilder> builder_;
    std::unique_ptr<FltProgress> progress_;
};
