// The entry points of include/QetzFlt/QetzFlt.h for tools: database facts, the statistics
// file and texture images as PNG. They build no scene and write nothing to the standard
// streams.
#include <exception>
#include <map>
#include <string>
#include <utility>

#include "QetzFlt/QetzFlt.h"
#include "convert/FltConversion.h"
#include "convert/FltPngImage.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltInput.h"
#include "reader/FltRecord.h"
#include "reader/FltRecordExternalReference.h"
#include "reader/FltRecordHeader.h"
#include "reader/FltRecordTexturePattern.h"

namespace {

// A run that only parses: no log, nothing on the standard streams.
FltConversionOptions quiet()
{
    FltConversionOptions options;
    options.log = FltConversionOptions::Log::None;
    options.standardOutput = false;
    options.echo = false;
    return options;
}

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
void reportFileNames(const FltRecordStore& records, QetzfltFactFunction fact, void* user)
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
    FltConversion conversion(path, quiet());
    if (!conversion.getInput()->isInFlowCreated()) return 1;
    FltParser& parser = conversion.getParser();
    if (parser.run() != 0) return 1;
    const auto* header = dynamic_cast<const FltRecordHeader*>(parser.records.front());
    if (!header) return 1;
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
    return 0;
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
        FltConversion conversion(path, quiet());
        if (!conversion.getInput()->isInFlowCreated() || conversion.getParser().run() != 0) return 1;
        return conversion.writeStatistics() ? 0 : 2;
    } catch (...) {
        return 1;
    }
}

int qetzfltWriteImageAsPng(const char* image, const char* png)
{
    try {
        // In the conversions' turn: the console's messages, and Coin's image reader, are shared.
        auto turn = FltConversion::takeTurn();
        FltWarningMessageConsole::ConversionMessages messages(false);
        const std::string imagePath = image ? image : "";
        const std::string pngPath = png ? png : "";
        std::vector<unsigned char> encoded;
        int width = 0, height = 0;
        std::string why;
        if (!fltEncodePng(imagePath, encoded, width, height, why)) {
            FltWarningMessageConsole::notifyMessage("WARNING ! Cannot read the image " + imagePath + ": " + why, 2, true);
            return 1;
        }
        if (!fltWriteFileReplacing(pngPath, encoded, why)) {
            FltWarningMessageConsole::notifyMessage("WARNING ! No PNG written for " + imagePath + ": " + why, 2, true);
            return 2;
        }
        return 0;
    } catch (const std::exception& e) {
        try {
            FltWarningMessageConsole::notifyMessage(std::string("WARNING ! Cannot convert the image: ") + e.what(), 2,
                                                    true);
        } catch (...) {
        }
    } catch (...) {
    }
    return 1;
}
}
