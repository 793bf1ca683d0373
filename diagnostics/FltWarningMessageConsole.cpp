// The process-wide message list and its echo to standard error.
#include "diagnostics/FltWarningMessageConsole.h"

#include <iostream>

int FltWarningMessageConsole::currentWarningLevel = 0;

std::vector<FltWarningMessage>& FltWarningMessageConsole::store()
{
    static std::vector<FltWarningMessage> setOfMessages;
    return setOfMessages;
}

void FltWarningMessageConsole::notifyMessage(const char* message, int level, bool show)
{
    const char* text = message ? message : "";
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
