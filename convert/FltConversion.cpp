// The conversion run: options, input, log, parse, builder, nested references, statistics.
#include "convert/FltConversion.h"

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoSeparator.h>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>

#include "QetzFlt/QetzFlt.h"
#include "convert/FltAuthoredBuilder.h"
#include "convert/FltProgress.h"
#include "convert/FltReferenceChain.h"
#include "convert/FltSceneBuilder.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltLogFile.h"
#include "diagnostics/FltStatisticsTool.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltDump.h"
#include "reader/FltFileInput.h"
#include "reader/FltRecord.h"

namespace {

// The share of a run's time that its parse takes, by measure: the build takes the rest.
constexpr double kParseShare = 0.5;
// Where the as-authored walk of the records ends: the making of the scene's nodes follows it.
constexpr double kAuthoredWalkEnd = 0.8;

std::recursive_mutex& conversionTurn()
{
    static std::recursive_mutex mutex;
    return mutex;
}

}  // namespace

bool FltConversionOptions::fromWord(unsigned int word, FltConversionOptions& options)
{
    constexpr unsigned int kKnown = QETZFLT_LOG_MASK | QETZFLT_BUILD_MASK | QETZFLT_NO_STANDARD_OUTPUT | QETZFLT_NO_ECHO;
    if (word & ~kKnown) return false;
    options = FltConversionOptions();
    switch (word & QETZFLT_LOG_MASK) {
    case QETZFLT_LOG_FILE: options.log = Log::File; break;
    case QETZFLT_LOG_NO_DUMP: options.log = Log::NoDump; break;
    case QETZFLT_LOG_NONE: options.log = Log::None; break;
    default: return false;
    }
    switch (word & QETZFLT_BUILD_MASK) {
    case QETZFLT_BUILD_CLASSIC: options.builder = Builder::Classic; break;
    case QETZFLT_BUILD_AS_AUTHORED: options.builder = Builder::AsAuthored; break;
    default: return false;
    }
    options.standardOutput = !(word & QETZFLT_NO_STANDARD_OUTPUT);
    options.echo = !(word & QETZFLT_NO_ECHO);
    return true;
}

FltConversionOptions FltConversionOptions::fromEnvironment()
{
    FltConversionOptions options;
    const char* value = std::getenv("QETZFLT_NO_LOG");
    if (value && *value && std::strcmp(value, "0") != 0) options.log = Log::NoDump;
    return options;
}

FltConversion::FltConversion(const std::string& path, const FltConversionOptions& options)
    : options_(options), turn_(conversionTurn())
{
    messages_.emplace(options_.echo);
    if (options_.echo) errors_ = &std::cerr;
    ownedInput_ = std::make_unique<FltFileInput>(path.c_str(), options_.standardOutput ? &std::cout : nullptr, errors_);
    input_ = ownedInput_.get();
    ownsBytes_ = true;
    if (options_.log != FltConversionOptions::Log::None) {
        // Created whether or not the database could be read, as the established converter did.
        logFile_ = std::make_unique<FltLogFile>(path + ".log");
        log_ = &logFile_->stream();
        logged_ = true;
        if (options_.builder == FltConversionOptions::Builder::Classic) logFile_->takeStandardOutput();
    }
    references_ = std::make_shared<FltReferenceChain>(input_->getFileName());
    logBudget_ = std::make_shared<FltLogBudget>(FltLogBudget::kBytesPerFileByte, FltLogBudget::kMarginBytes,
                                                FltDump::bytesWritten());
    followProgress();
    setUp();
}

FltConversion::FltConversion(FltInput& input, const FltConversionOptions& options)
    : options_(options), turn_(conversionTurn()), input_(&input)
{
    messages_.emplace(options_.echo);
    if (options_.echo) errors_ = &std::cerr;
    references_ = std::make_shared<FltReferenceChain>(input_->getFileName());
    logBudget_ = std::make_shared<FltLogBudget>(FltLogBudget::kBytesPerFileByte, FltLogBudget::kMarginBytes,
                                                FltDump::bytesWritten());
    followProgress();
    setUp();
}

FltConversion::FltConversion(FltInput& input, FltConversion& parent)
    : options_(parent.options_), input_(&input), log_(parent.log_), logged_(parent.logged_),
      errors_(parent.errors_), references_(parent.references_), logBudget_(parent.logBudget_)
{
    // A builder reads a referenced file for its nested run alone.
    ownsBytes_ = true;
    setUp();
}

FltConversion::~FltConversion() = default;

std::unique_lock<std::recursive_mutex> FltConversion::takeTurn() { return std::unique_lock<std::recursive_mutex>(conversionTurn()); }

void FltConversion::followProgress()
{
    auto progress = std::make_unique<FltProgress>(kParseShare);
    if (progress->active()) progress_ = std::move(progress);
}

void FltConversion::setUp()
{
    parser_.setParseProgress(progress_.get());
    // The input stays the run's or the caller's: the parser only reads it.
    parser_.setInput(input_);
    parser_.ownsInput = false;
    parser_.setProgressStream(logged_ ? log_ : nullptr);
    // One writer pads every record to 8 bytes; the format's drawing takes that as it comes,
    // and reads the mesh records, which the parse keeps short, from the file where they lie.
    const bool asAuthored = options_.builder == FltConversionOptions::Builder::AsAuthored;
    parser_.setReportPaddedControlRecords(!asAuthored);
    parser_.records.keepOffsets(asAuthored);
    parser_.setDumpStream(logged_ && options_.log == FltConversionOptions::Log::File ? log_ : nullptr);
    parser_.shareLogBudget(logBudget_);
}

int FltConversion::parse()
{
    if (!input_ || !input_->isInFlowCreated()) {
        FltWarningMessageConsole::notifyMessage("ERROR ! FltParser has no INPUT !", 3, true);
        return 1;
    }
    if (parser_.run() == 1) return 1;
    if (parser_.creationVisitor->formatRevision <= 10) {
        FltWarningMessageConsole::notifyMessage("ERROR ! Openflight Format Revision not supported !", 3, true);
        return 1;
    }
    if (progress_) progress_->reachParseEnd();
    return 0;
}

FltBuildContext FltConversion::context()
{
    const FltCreationVisitor& parsed = *parser_.creationVisitor;
    return FltBuildContext{parser_.records,
                           *input_,
                           FltVersion{parsed.formatRevision, parsed.rgbMode},
                           *log_,
                           *errors_,
                           texturePrefix_,
                           startDepth_,
                           *references_,
                           [this](FltInput& input, const std::string& prefix, int depth, SoSeparator* nested) {
                               convertNested(input, prefix, depth, nested);
                           },
                           [this](FltInput& input, int depth) { return nestedScene(input, depth); },
                           progress_.get()};
}

void FltConversion::build(SoSeparator* root)
{
    if (!SoDB::isInitialized()) SoDB::init();
    builder_.reset();
    switch (options_.builder) {
    case FltConversionOptions::Builder::Classic:
        // The file is as large again as its records: freed before the scene grows.
        if (ownsBytes_) input_->releaseBytes();
        builder_ = std::make_unique<FltToInventor>(context(), root);
        break;
    case FltConversionOptions::Builder::AsAuthored:
        if (progress_) progress_->setWalkEnd(kAuthoredWalkEnd);
        builder_ = std::make_unique<FltAuthoredBuilder>(context(), root);
        break;
    }
    builder_->build();
    parser_.records.clear();
}

int FltConversion::convert(SoSeparator* root)
{
    if (parse() != 0) return 1;
    build(root);
    return 0;
}

std::shared_ptr<const FltScene> FltConversion::scene()
{
    if (parse() != 0) return nullptr;
    std::shared_ptr<const FltScene> scene = FltAuthoredBuilder(context(), nullptr).walk();
    parser_.records.clear();
    return scene;
}

SoSeparator* FltConversion::run()
{
    if (!SoDB::isInitialized()) SoDB::init();
    auto* root = new SoSeparator;
    root->ref();
    try {
        if (convert(root) == 0 && progress_) progress_->finish();
    } catch (const std::exception& e) {
        FltWarningMessageConsole::notifyMessage(
            std::string("ERROR ! Conversion stopped: ") + e.what() + " (the scene holds what was built before)", 3, true);
    }
    // The header visit keeps one reference that is never given back: a converted root
    // reaches the caller with a count of 1, a root refused before the walk with 0.
    root->unrefNoDelete();
    return root;
}

void FltConversion::convertNested(FltInput& input, const std::string& texturePrefix, int depth, SoSeparator* root)
{
    // On the heap: a run is large, and chains of references nest these frames.
    auto nested = std::unique_ptr<FltConversion>(new FltConversion(input, *this));
    nested->texturePrefix_ = texturePrefix;
    nested->startDepth_ = depth;
    nested->convert(root);
}

std::shared_ptr<const FltScene> FltConversion::nestedScene(FltInput& input, int depth)
{
    auto nested = std::unique_ptr<FltConversion>(new FltConversion(input, *this));
    nested->startDepth_ = depth;
    if (nested->parse() != 0) return std::make_shared<FltScene>();
    auto builder = std::make_unique<FltAuthoredBuilder>(nested->context(), nullptr);
    return builder->walk();
}

bool FltConversion::writeStatistics()
{
    if (!input_ || !input_->getFileName()) return false;
    FltStatisticsTool tool;
    const std::string fileName = input_->getFileName();
    tool.setFltFile(fileName.c_str());
    tool.setStatFile((fileName + ".stat").c_str());
    tool.makeEmptyFile();
    for (const FltRecord* record : parser_.records) tool.countRecord(record->getOpcode());
    tool.makeStatistics();
    return tool.wasWritten();
}
