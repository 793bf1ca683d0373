// FltWarningMessageConsole: the one process-wide sink for warnings and errors.
//
// Every part of the library reports problems here with a level (1 to 3, larger is more
// severe). Each message is kept for the life of the process, in order of arrival, and is
// echoed at once to the standard error stream when the caller asks for it:
//
//     text
//     (Warning Level: 3)
//     <blank line>
//
// A conversion also keeps its own messages: those given on its thread while it runs, which
// stay readable after it ends as the last conversion's messages of that thread.
#pragma once

#include <string>
#include <utility>
#include <vector>

class FltWarningMessage {
public:
    FltWarningMessage(std::string text, int level) : message(std::move(text)), level(level) {}
    const char* getMessage() const { return message.c_str(); }
    int getLevel() const { return level; }

    std::string message;  // a copy: callers may pass text formatted into temporary buffers
    int level;
};

class FltWarningMessageConsole {
public:
    virtual ~FltWarningMessageConsole() = default;

    static void notifyMessage(const char* message, int level, bool show);
    static void notifyMessage(const std::string& message, int level, bool show)
    {
        notifyMessage(message.c_str(), level, show);
    }
    // Writes every stored message of at least the given level to standard error.
    static void showMessagesConsole(int minimumLevel);
    static void setWarningLevel(int level);
    static void setDefaultWarningLevel();
    static FltWarningMessageConsole* getInstance();

    // The stored messages, oldest first.
    static const std::vector<FltWarningMessage>& getMessages();
    // Forgets every stored message; for hosts that convert many files in one process.
    static void clearMessages();

    // Within a conversion, a message given more than kMaxRepeats times with the same text is
    // kept and echoed only that often; when the outermost conversion ends, one line says
    // how many times more it came. A damaged file can thus not fill memory or the terminal.
    static constexpr int kMaxRepeats = 1000;
    static void beginConversion();
    static void endConversion();
    // A conversion on this thread for the life of the object: conversions, inspections and
    // statistics runs all keep their repeated messages within the cap. Without echo, the
    // messages given meanwhile on this thread are kept but not echoed. Nested ones belong to
    // the outermost.
    class ConversionMessages {
    public:
        explicit ConversionMessages(bool echo = true);
        ~ConversionMessages();
        ConversionMessages(const ConversionMessages&) = delete;
        ConversionMessages& operator=(const ConversionMessages&) = delete;

    private:
        bool savedEcho_;
    };
    // The messages of the last conversion (or inspection, or statistics run) that ended on the
    // calling thread, oldest first.
    static const std::vector<FltWarningMessage>& getLastConversionMessages();

    static int currentWarningLevel;

private:
    static std::vector<FltWarningMessage>& store();
};
