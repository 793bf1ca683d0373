// The conversion run: entry points, converter set-up and teardown, the log file.
#include "convert/FltToInventor.h"

#include "convert/FltFieldUtil.h"

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <string>

#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltFileInput.h"
#include "reader/FltParser.h"
#include "reader/FltRecord.h"

using fltfield::releaseIfUnused;

namespace {

const char* const kVertexPropertyNames[4] = {"vertexColorProperty", "vertexColorNormalProperty",
                                             "vertexColorUVProperty", "vertexColorNormalUVProperty"};

}  // namespace

bool FltToInventor::isRecordDumpSwitchedOff()
{
    const char* value = std::getenv("QETZFLT_NO_LOG");
    return value && *value && std::strcmp(value, "0") != 0;
}

const char* FltToInventor::getProductNameString() { return "Skerrymoor"; }

const char* FltToInventor::getVersionString() { return "8.6.3"; }

SoSeparator* FltToInventor::convertFromFile(const char* path)
{
    if (!path || !*path) return nullptr;
    if (!SoDB::isInitialized()) SoDB::init();

    SoSeparator* root = nullptr;
    // Repeated messages of one conversion are summed up when it ends.
    FltWarningMessageConsole::ConversionMessages messages;
    try {
        FltFileInput fileInput(path);
        FltToInventor converter;
        converter.setFltInputToconvert(&fileInput);
        if (isRecordDumpSwitchedOff())
            if (auto* factory = dynamic_cast<Flt_15_7_CreationVisitor*>(converter.fltParser->creationVisitor))
                factory->setDumpStream(nullptr);
        const std::string logName = std::string(path) + ".log";
        converter.enableFileLogging(logName.c_str());
        root = new SoSeparator;
        root->ref();
        converter.setResult(root);
        try {
            converter.convert();
        } catch (const std::exception& e) {
            FltWarningMessageConsole::notifyMessage(
                std::string("ERROR ! Conversion stopped: ") + e.what() + " (the scene holds what was built before)", 3,
                true);
        }
        // The header visit keeps one reference that is never given back: a converted root
        // reaches the caller with a count of 1, a root refused before the walk with 0.
        root->unrefNoDelete();
    } catch (const std::exception& e) {
        FltWarningMessageConsole::notifyMessage(std::string("ERROR ! Conversion failed: ") + e.what(), 3, true);
        if (root) root->unrefNoDelete();
    } catch (...) {
        FltWarningMessageConsole::notifyMessage("ERROR ! Conversion failed", 3, true);
        if (root) root->unrefNoDelete();
    }
    return root;
}

FltToInventor::FltToInventor()
{
    if (!SoDB::isInitialized()) SoDB::init();
    init();
}

void FltToInventor::init()
{
    allFltRecordsVisited = false;
    vertexPaletteFlushed = false;

    if (paletteMaterial) paletteMaterial->unref();
    paletteMaterial = new SoMaterial;
    paletteMaterial->ref();

    for (int i = 0; i < 4; ++i) {
        SharedVertexProperty& shared = sharedProperties[i];
        if (shared.property) shared.property->unref();
        shared = SharedVertexProperty();
        shared.property = new SoVertexProperty;
        shared.property->ref();
        shared.property->setName(kVertexPropertyNames[i]);
        shared.capacity = kSharedVertexCapacity;
        shared.id = i + 1;
        shared.positionTarget = shared.property;
        holdNotification(shared.property);
        // The fields get their 100000 entries with the first vertex of their kind (see
        // appendVertex), so that a database without that kind allocates nothing for it.
    }
    currentPaletteOffset = 8;

    if (minRangeLimitLabel) minRangeLimitLabel->unref();
    minRangeLimitLabel = new SoLabel;
    minRangeLimitLabel->ref();
    minRangeLimitLabel->label.setValue("MinRangeLimitForLOD");
    if (maxRangeLimitLabel) maxRangeLimitLabel->unref();
    maxRangeLimitLabel = new SoLabel;
    maxRangeLimitLabel->ref();
    maxRangeLimitLabel->label.setValue("MaxRangeLimitForLOD");
}

void FltToInventor::holdNotification(SoNode* node)
{
    if (!node || !heldSlots.emplace(node, notificationHeld.size()).second) return;
    node->ref();
    node->enableNotify(FALSE);
    notificationHeld.push_back(node);
}

void FltToInventor::keepUnattached(SoNode* node)
{
    node->ref();
    unattachedSlots.emplace(node, unattachedNodes.size());
    unattachedNodes.push_back(node);
    releaseCandidates.push_back(node);
}

void FltToInventor::setLastPrimaryNode(SoGroup* node)
{
    if (node) node->ref();
    SoGroup* previous = lastPrimaryNode;
    lastPrimaryNode = node;
    lastPrimaryBirth = popLevels;
    if (!previous) return;
    // Without deleting: a LOD's content is the last primary node before its LOD holds it.
    // A node that nothing holds once the visit ends is freed between records of the top level.
    previous->unrefNoDelete();
    releaseCandidates.push_back(previous);
}

void FltToInventor::releaseLastPrimaryNode()
{
    SoGroup* last = lastPrimaryNode;
    lastPrimaryNode = nullptr;
    if (last) last->unref();
}

void FltToInventor::releaseUnreachable()
{
    // Nodes that share a name are released by the scene graph library in time growing with
    // how many of that name are alive: a node that nothing can reach any more goes at once,
    // not with thousands of its namesakes when the conversion ends.
    std::vector<SoNode*> candidates;
    candidates.swap(releaseCandidates);
    // No visit runs here, and every table and open group holds what it points to, so two
    // kinds of node are out of reach: former primary nodes that nothing holds (in no graph),
    // and unattached nodes held only by the converter that no later record can reach.
    std::unordered_set<SoNode*> orphans;
    std::unordered_set<SoNode*> unreachable;
    for (SoNode* node : candidates) {
        auto unattached = unattachedSlots.find(node);
        if (unattached == unattachedSlots.end()) {
            if (node != lastPrimaryNode && node != result && node->getRefCount() == 0) orphans.insert(node);
            continue;
        }
        SoGroup* group = node->isOfType(SoGroup::getClassTypeId()) ? static_cast<SoGroup*>(node) : nullptr;
        if (group && (group == lastPrimaryNode || group == result || stackCounts.count(group))) continue;
        const int ours = 1 + int(heldSlots.count(node)) + int(group && switchChildStates.holds(group));
        // Anything else holding it (a group it was added to later, the instance table) keeps it.
        if (node->getRefCount() == ours) unreachable.insert(node);
    }
    if (orphans.empty() && unreachable.empty()) return;
    // The switch states hold the groups they describe; they are only a cache, rebuilt on
    // demand, and let go so that the groups below a released node go with it.
    switchChildStates.clear();
    for (SoNode* node : orphans) {
        node->ref();
        node->unref();
    }
    for (SoNode* node : unreachable) {
        auto unattached = unattachedSlots.find(node);
        unattachedNodes[unattached->second] = nullptr;
        unattachedSlots.erase(unattached);
        auto held = heldSlots.find(node);
        if (held != heldSlots.end()) {
            notificationHeld[held->second] = nullptr;
            heldSlots.erase(held);
            node->unrefNoDelete();
        }
        node->unref();
    }
}

void FltToInventor::releaseNotifications()
{
    // Groups that no pop level closed notify now.
    std::vector<SoGroup*> open(quietOpenGroups.begin(), quietOpenGroups.end());
    for (SoGroup* group : open) group->enableNotify(TRUE);
    for (SoGroup* group : open) {
        notifyClosedGroup(group);
        // Left open inside a group released early: nothing else holds it.
        if (group->getRefCount() == 0 && group != lastPrimaryNode && group != result) {
            group->ref();
            group->unref();
        }
    }
    std::vector<SoNode*> held;
    held.swap(notificationHeld);
    heldSlots.clear();
    for (SoNode* node : held)
        if (node) node->enableNotify(TRUE);
    for (SoNode* node : held) {
        if (!node) continue;
        node->touch();
        node->unref();
    }
}

FltToInventor::~FltToInventor()
{
    releaseNotifications();
    // Records left by a conversion that stopped before its walk are freed here.
    destroyAllFltRecords();
    deleteCurrentFltParser();
    if (fileLogging) disableFileLogging();

    for (auto& entry : indexToNode) releaseIfUnused(entry.second);
    for (auto& entry : textures) entry.second->unref();
    for (auto& entry : lineStyles) entry.second->unref();
    for (auto& entry : instances)
        if (entry.second) entry.second->unref();
    for (SoNode* node : unattachedNodes)
        if (node) node->unref();

    releaseLastPrimaryNode();
    if (minRangeLimitLabel) minRangeLimitLabel->unref();
    if (maxRangeLimitLabel) maxRangeLimitLabel->unref();
    if (paletteMaterial) paletteMaterial->unref();
    for (SharedVertexProperty& shared : sharedProperties)
        if (shared.property) shared.property->unref();
}

void FltToInventor::update(const FltRecord*) {}

void FltToInventor::setResult(SoSeparator* root) { result = root ? root : new SoSeparator; }

SoSeparator* FltToInventor::getResult() const { return result; }

void FltToInventor::setFltParser(FltParser* parser)
{
    fltParser = parser;
    if (parser) parser->attachFltObserver(this);
}

void FltToInventor::deleteCurrentFltParser()
{
    if (parserCreatedByConverter && fltParser) {
        destroyAllFltRecords();
        delete fltParser;
        fltParser = nullptr;
        parserCreatedByConverter = false;
    }
}

void FltToInventor::setFltInputToconvert(FltInput* input)
{
    deleteCurrentFltParser();
    // The input stays the caller's: the converter lends it to the parser.
    fltParser = new FltParser(input, false);
    parserCreatedByConverter = true;
}

bool FltToInventor::isAllFltRecordsVisited() const { return allFltRecordsVisited; }

int FltToInventor::getFormatRevision() const
{
    return fltParser && fltParser->creationVisitor ? fltParser->creationVisitor->formatRevision : 0;
}

int FltToInventor::convert()
{
    if (!result) result = new SoSeparator;
    if (!fltParser) {
        FltWarningMessageConsole::notifyMessage("ERROR ! The field fltParser is NULL", 3, true);
        return 1;
    }
    if (!fltParser->getInput() || !fltParser->getInput()->isInFlowCreated()) {
        FltWarningMessageConsole::notifyMessage("ERROR ! FltParser has no INPUT !", 3, true);
        return 1;
    }
    commentTextBudget = 16 * fltParser->getInput()->getSize() + (uint64_t(16) << 20);
    if (fltParser->run() == 1) return 1;
    if (getFormatRevision() <= 10) {
        FltWarningMessageConsole::notifyMessage("ERROR ! Openflight Format Revision not supported !", 3, true);
        return 1;
    }
    visitAllFltRecords();
    destroyAllFltRecords();
    return 0;
}

void FltToInventor::destroyAllFltRecords()
{
    if (!fltParser) return;
    // A continued sound palette stands in the array once per record it decoded, next to
    // itself: it is freed once.
    const FltRecord* previous = nullptr;
    for (FltRecord* record : fltParser->records) {
        if (record != previous) delete record;
        previous = record;
    }
    // Cleared, so that nothing can reach a destroyed record through the parser.
    fltParser->records.clear();
}

void FltToInventor::enableFileLogging(const char* fileName)
{
    if (fileLogging) disableFileLogging();
    logStream = new std::ofstream;
    // A large buffer: the log holds about ten bytes of text per byte of database.
    if (!logBuffer) logBuffer.reset(new char[kLogBufferSize]);
    logStream->rdbuf()->pubsetbuf(logBuffer.get(), kLogBufferSize);
    logStream->open(fileName ? fileName : "", std::ios::out | std::ios::trunc);
    savedStandardOutput = std::cout.rdbuf(logStream->rdbuf());
    fileLogging = true;
}

void FltToInventor::disableFileLogging()
{
    if (!fileLogging) return;
    std::cout.flush();
    if (!logStream->rdbuf()->close()) logStream->setstate(std::ios::failbit);
    // Standard output goes back to where it went before the conversion.
    std::cout.rdbuf(savedStandardOutput);
    savedStandardOutput = nullptr;
    delete logStream;
    logStream = nullptr;
    fileLogging = false;
}

extern "C" {

SoSeparator* convertFrom(const char* path)
{
    try {
        return FltToInventor::convertFromFile(path);
    } catch (...) {
        return nullptr;
    }
}

const char* getProductName() { return FltToInventor::getProductNameString(); }

const char* getVersion() { return FltToInventor::getVersionString(); }
}
