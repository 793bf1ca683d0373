// Per-opcode record counts written to the ".stat" file.
#include "diagnostics/FltStatisticsTool.h"

#include <cstring>
#include <string>

#include <unistd.h>

#include "diagnostics/FltOwnFile.h"
#include "diagnostics/FltWarningMessageConsole.h"

namespace {
char* copyOf(const char* text)
{
    if (!text) return nullptr;
    const size_t n = std::strlen(text);
    char* copy = new char[n + 1];
    std::memcpy(copy, text, n + 1);
    return copy;
}

void reportUnopened(const char* name, const std::string& refusal)
{
    if (!refusal.empty()) {
        FltWarningMessageConsole::notifyMessage(
            std::string("WARNING ! The statistics file ") + name + " is " + refusal + ": not written", 2, true);
        return;
    }
    FltWarningMessageConsole::notifyMessage(
        std::string("ERROR ! Cannot open the statistics file ") + (name ? name : "(no name)"), 3, true);
}

// The statistics file, emptied or to append to, opened as nothing else than a file of ours.
FILE* openStatistics(const char* name, bool append)
{
    std::string refusal;
    const int fd = name ? fltOpenOwnFile(name, append, refusal) : -1;
    FILE* file = fd >= 0 ? fdopen(fd, append ? "at" : "wt") : nullptr;
    if (!file && fd >= 0) close(fd);
    if (!file) reportUnopened(name, refusal);
    return file;
}
}  // namespace

FltStatisticsTool::~FltStatisticsTool()
{
    delete[] fltFileName;
    delete[] statFileName;
    if (output) std::fclose(output);
}

void FltStatisticsTool::setFltFile(const char* name)
{
    delete[] fltFileName;
    fltFileName = copyOf(name);
}

void FltStatisticsTool::setStatFile(const char* name)
{
    delete[] statFileName;
    statFileName = copyOf(name);
}

void FltStatisticsTool::makeEmptyFile()
{
    if (FILE* file = openStatistics(statFileName, false)) std::fclose(file);
}

bool FltStatisticsTool::isOutputFileEmpty()
{
    if (!output) return true;
    std::fseek(output, 0, SEEK_END);
    const long end = std::ftell(output);
    std::rewind(output);
    return end == 0;
}

void FltStatisticsTool::writeFltStatisticsHeader()
{
    if (!output) return;
    std::fputs("#Openflight Statistics File\n\n", output);
    std::fputs("\n************************\n", output);
    std::fputs(fltFileName ? fltFileName : "", output);
    std::fputs("\n", output);
}

void FltStatisticsTool::makeStatistics()
{
    written = false;
    output = openStatistics(statFileName, true);
    if (!output) return;
    if (isOutputFileEmpty()) writeFltStatisticsHeader();
    for (const auto& [opcode, count] : counts) std::fprintf(output, " \n Opcode %d:  %d ", opcode, count);
    written = std::fclose(output) == 0;
    output = nullptr;
}
