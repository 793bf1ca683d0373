// The process-wide message list and its echo to standard error.
#include "diagnostics/FltWarningMessageConsole.h"

#include <iostream>
#include <string>
#include <unordered_map>

namespace {

struct Repeats {
    int count = 0;
    int level = 0;
    bool show = false;
};

struct ConversionScope {
    int depth = 0;
    std::unordered_map<std::string, Repeats> byText;
    std::vector<std::string> suppressedInOrder;
};

ConversionScope& scope()
{
    static ConversionScope instance;
    return instance;
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
    }
    store().emplace_back(text, level);
    if (show) {
        std::cerr << text << std::endl;
        std::cerr << "(Warning Level: " << level << ")" << std::endl;
        std::cerr << std::endl;
    }
}

void FltWarningMessageConsole::showMessagesConsole(int minimumLevel)
{
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

void FltWarningMessageConsole::clearMessages() { store().clear(); }

void FltWarningMessageConsole::beginConversion() { ++scope().depth; }

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
        notifyMessage("WARNING ! The message \"" + text + "\" came " + std::to_string(repeats.count - kMaxRepeats) +
                          " more times and was not repeated",
                      repeats.level, repeats.show);
    }
}
