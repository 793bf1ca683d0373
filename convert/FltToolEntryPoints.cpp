// The qetzflt* entry points: database facts, statistics file and console messages for tools.
#include "convert/FltToolEntryPoints.h"

#include <cstdint>
#include <iostream>
#include <map>
#include <set>
#include <streambuf>
#include <string>
#include <vector>

#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltFileInput.h"
#include "reader/FltParser.h"
#include "reader/FltRecord.h"
#include "reader/FltRecordExternalReference.h"
#include "reader/FltRecordHeader.h"
#include "reader/FltRecordTexturePattern.h"

namespace {

// Swallows everything written to it.
class NullBuffer : public std::streambuf {
protected:
    int overflow(int c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

// Silences standard output and error for its lifetime: the parse's progress lines, the
// dumps and the console's echo are for conversions, not for inspection.
class Silence {
public:
    Silence() : out_(std::cout.rdbuf(&null_)), err_(std::cerr.rdbuf(&null_)) {}
    ~Silence()
    {
        std::cout.rdbuf(out_);
        std::cerr.rdbuf(err_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    NullBuffer null_;
    std::streambuf* out_;
    std::streambuf* err_;
};

// "\n GROUP RECORD " becomes "GROUP RECORD".
std::string trimmedHeading(const FltRecord* record)
{
    const auto* typed = dynamic_cast<const AbstractFltRecord*>(record);
    std::string text = typed ? typed->getHeading() : "";
    const size_t first = text.find_first_not_of(" \n");
    const size_t last = text.find_last_not_of(" \n");
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

// The file names that references and texture patterns carry, in file order.
void reportFileNames(const std::vector<FltRecord*>& records, QetzfltFactFunction fact, void* user)
{
    for (const FltRecord* record : records) {
        if (const auto* reference = fltRecordCast<FltRecordExternalReference>(record)) {
            fact(user, "externalReference", reference->asciiPath);
        } else if (const auto* texture = fltRecordCast<FltRecordTexturePattern>(record)) {
            const std::string value = std::to_string(texture->patternIndex) + " " + texture->fileName;
            fact(user, "texturePattern", value.c_str());
        }
    }
}

int inspect(const char* path, QetzfltFactFunction fact, void* user)
{
    Silence silence;
    FltWarningMessageConsole::ConversionMessages messages;
    FltFileInput input(path);
    if (!input.isInFlowCreated()) return 1;
    FltParser parser(&input, false);
    if (auto* factory = dynamic_cast<Flt_15_7_CreationVisitor*>(parser.creationVisitor))
        factory->setDumpStream(nullptr);
    int status = parser.run();
    const FltRecordHeader* header =
        parser.records.empty() ? nullptr : dynamic_cast<const FltRecordHeader*>(parser.records.front());
    if (status == 0 && header) {
        fact(user, "formatRevision", std::to_string(header->getFormatRevisionLevel()).c_str());
        fact(user, "units", std::to_string(header->getVertexCoordinateUnits()).c_str());
        fact(user, "packedColorMode", header->isPackedColorMode() ? "1" : "0");
        fact(user, "id", std::string(header->ID).c_str());

        std::map<int, std::pair<int, std::string>> counts;
        for (const FltRecord* record : parser.records) {
            auto& entry = counts[record->getOpcode()];
            if (entry.first++ == 0) entry.second = trimmedHeading(record);
        }
        for (const auto& entry : counts) {
            const std::string value =
                std::to_string(entry.first) + " " + std::to_string(entry.second.first) + " " + entry.second.second;
            fact(user, "record", value.c_str());
        }
        fact(user, "recordTotal", std::to_string(parser.records.size()).c_str());
        reportFileNames(parser.records, fact, user);
    } else {
        status = 1;
    }
    // A continued record stands twice in the array and is freed once.
    const std::set<FltRecord*> unique(parser.records.begin(), parser.records.end());
    for (FltRecord* record : unique) delete record;
    parser.records.clear();
    return status;
}

}  // namespace

extern "C" {

int qetzfltInspect(const char* path, QetzfltFactFunction fact, void* user)
{
    if (!path || !*path || !fact) return 1;
    try {
        return inspect(path, fact, user);
    } catch (...) {
        return 1;
    }
}

int qetzfltWriteStatistics(const char* path)
{
    if (!path || !*path) return 1;
    try {
        Silence silence;
        FltWarningMessageConsole::ConversionMessages messages;
        FltFileInput input(path);
        if (!input.isInFlowCreated()) return 1;
        FltToInventor converter;
        converter.setFltInputToconvert(&input);
        FltParser* parser = converter.getFltParser();
        if (auto* factory = dynamic_cast<Flt_15_7_CreationVisitor*>(parser->creationVisitor))
            factory->setDumpStream(nullptr);
        if (parser->run() != 0) return 1;
        converter.makeStats();
        return 0;
    } catch (...) {
        return 1;
    }
}

int qetzfltMessageCount(void) { return static_cast<int>(FltWarningMessageConsole::getMessages().size()); }

const char* qetzfltMessageText(int index)
{
    const auto& messages = FltWarningMessageConsole::getMessages();
    return index >= 0 && index < static_cast<int>(messages.size()) ? messages[index].getMessage() : nullptr;
}

int qetzfltMessageLevel(int index)
{
    const auto& messages = FltWarningMessageConsole::getMessages();
    return index >= 0 && index < static_cast<int>(messages.size()) ? messages[index].getLevel() : 0;
}
}
