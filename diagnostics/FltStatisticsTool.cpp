// Per-opcode record counts written to the ".stat" file.
#include "diagnostics/FltStatisticsTool.h"

#include <cstring>
#include <string>

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

void reportUnopened(const char* name)
{
    FltWarningMessageConsole::notifyMessage(
        std::string("ERROR ! Cannot open the statistics file ") + (name ? name : "(no name)"), 3, true);
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
    FILE* file = statFileName ? std::fopen(statFileName, "wt") : nullptr;
    if (!file) {
        reportUnopened(statFileName);
        return;
    }
    std::fclose(file);
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
    output = statFileName ? std::fopen(statFileName, "at") : nullptr;
    if (!output) {
        reportUnopened(statFileName);
        return;
    }
    if (isOutputFileEmpty()) writeFltStatisticsHeader();
    for (const auto& [opcode, count] : counts) std::fprintf(output, " \n Opcode %d:  %d ", opcode, count);
    std::fclose(output);
    output = nullptr;
}
