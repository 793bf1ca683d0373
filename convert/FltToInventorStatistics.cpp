// The statistics file of the converter's database.
#include <string>

#include "convert/FltToInventor.h"
#include "diagnostics/FltStatisticsTool.h"
#include "reader/FltInput.h"
#include "reader/FltParser.h"

void FltToInventor::makeStats() const
{
    if (!fltParser || !fltParser->getInput() || !fltParser->getInput()->getFileName()) return;
    FltStatisticsTool tool;
    const std::string fileName = fltParser->getInput()->getFileName();
    tool.setFltFile(fileName.c_str());
    tool.setStatFile((fileName + ".stat").c_str());
    tool.makeEmptyFile();
    tool.setVectorOfFltRecords(fltParser->records);
    tool.makeStatistics();
}
