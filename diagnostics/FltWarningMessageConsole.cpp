// The process-wide message list and its echo to standard error.
#include "diagnostics/FltWarningMessageConsole.h"

#include <iostream>
#include <mutex>
#include <string>
#include <unordered_map>

namespace {

struct Repeats {
    int count = 0;
    int level = 0;
    bool show = false;
};

// A conversion runs on one thread from start to end, so what it counts is the thread's.
struct ConversionScope {
    int depth = 0;
    bool echo = true;
    std::unordered_map<std::string, Repeats> byText;
    std::vector<std::string> suppressedInOrder;
    std::vector<FltWarningMessage> current;
    std::vector<FltWarningMessage> last;
};

ConversionScope& scope()
{
    thread_local ConversionScope instance;
    return instance;
}

// Guards the process-wide list and the echo, which every thread shares.
std::mutex& storeMutex()
{
    static std::mutex mutex;
    return mutex;
}

}  // namespace

int FltWarningMessageConsole::currentWarningLevel = 0;

std::vector<FltWarningMessage>& FltWarningMessageConsole::store()
{
    static std::vector<FltWarningMessage> setOfMessages;
    return setOfMessages;
}

void FltWarningMessageConsole::notifyMessage(const char* message, int level, bool show)
{
    const char* text = message ? message : "";
    ConversionScope& conversion = scope();
    if (conversion.depth > 0) {
        Repeats& repeats = conversion.byText[text];
        if (++repeats.count > kMaxRepeats) {
            if (repeats.count == kMaxRepeats + 1) conversion.suppressedInOrder.push_back(text);
            repeats.level = level;
            repeats.show = repeats.show || show;
            return;
        }
        conversion.current.emplace_back(text, level);
    }
    std::lock_guard<std::mutex> lock(storeMutex());
    store().emplace_back(text, level);
    if (show && conversion.echo) {
        std::cerr << text << std::endl;
        std::cerr << "(Warning Level: " << level << ")" << std::endl;
        std::cerr << std::endl;
    }
}

void FltWarningMessageConsole::showMessagesConsole(int minimumLevel)
{
    std::lock_guard<std::mutex> lock(storeMutex());
    for (const FltWarningMessage& m : store()) {
        if (m.level < minimumLevel) continue;
        std::cerr << m.message << std::endl;
        std::cerr << "(Warning Level: " << m.level << ")" << std::endl;
    }
}

void FltWarningMessageConsole::setWarningLevel(int level) { currentWarningLevel = level; }

void FltWarningMessageConsole::setDefaultWarningLevel() { currentWarningLevel = 2; }

FltWarningMessageConsole* FltWarningMessageConsole::getInstance()
{
    static FltWarningMessageConsole instance;
    return &instance;
}

const std::vector<FltWarningMessage>& FltWarningMessageConsole::getMessages() { return store(); }

void FltWarningMessageConsole::clearMessages()
{
    std::lock_guard<std::mutex> lock(storeMutex());
    store().clear();
}

const std::vector<FltWarningMessage>& FltWarningMessageConsole::getLastConversionMessages() { return scope().last; }

void FltWarningMessageConsole::beginConversion()
{
    ConversionScope& conversion = scope();
    if (conversion.depth++ == 0) conversion.current.clear();
}

FltWarningMessageConsole::ConversionMessages::ConversionMessages(bool echo) : savedEcho_(scope().echo)
{
    scope().echo = savedEcho_ && echo;
    beginConversion();
}

FltWarningMessageConsole::ConversionMessages::~ConversionMessages()
{
    endConversion();
    scope().echo = savedEcho_;
}

void FltWarningMessageConsole::endConversion()
{
    ConversionScope& conversion = scope();
    if (conversion.depth == 0 || --conversion.depth > 0) return;
    std::vector<std::string> suppressed;
    suppressed.swap(conversion.suppressedInOrder);
    std::unordered_map<std::string, Repeats> byText;
    byText.swap(conversion.byText);
    for (const std::string& text : suppressed) {
        const Repeats& repeats = byText[text];
        const std::string summary = "WARNING ! The message \"" + text + "\" came " +
                                    std::to_string(repeats.count - kMaxRepeats) + " more times and was not repeated";
        notifyMessage(summary, repeats.level, repeats.show);
        // Given outside the conversion, the summary belongs to it all the same.
        conversion.current.emplace_back(summary, repeats.level);
    }
    conversion.last.swap(conversion.current);
    conversion.current.clear();
}
