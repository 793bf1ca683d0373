// External references, converted by nested converters and shared per file within one
// converter, and instances, whose one separator is shown wherever it is referenced.
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoSeparator.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltFileInput.h"
#include "reader/FltParser.h"
#include "reader/FltRecordControl.h"
#include "reader/FltRecordExternalReference.h"

namespace {

// The name a file goes by along a chain of references: its canonical path, so that every
// spelling of one file ("a.flt", "./x/../a.flt", a link) meets the same entry.
std::string canonicalName(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(path, error);
    return error ? path : canonical.string();
}

// A file's place in the chain of references being converted, given up when its nested
// conversion ends, however it ends.
class ChainLink {
public:
    ChainLink(std::set<std::string>& chain, const std::string& name) : chain_(chain), name_(name)
    {
        chain_.insert(name_);
    }
    ~ChainLink() { chain_.erase(name_); }
    ChainLink(const ChainLink&) = delete;
    ChainLink& operator=(const ChainLink&) = delete;

private:
    std::set<std::string>& chain_;
    std::string name_;
};

}  // namespace

std::string FltToInventor::externalReferencePath(const char* dirName, const std::string& name)
{
    std::string relative = name;
    if (relative.size() >= 2 && relative[0] == '.' && (relative[1] == '/' || relative[1] == '\\')) relative.erase(0, 2);
    // The directory name ends with its slash already; a file named without one has none.
    return dirName ? std::string(dirName) + relative : relative;
}

std::string FltToInventor::nestedRelativePath(const std::string& current, const std::string& name)
{
    const size_t cut = name.find_last_of("/\\");
    if (cut == std::string::npos) return current;
    return current + name.substr(0, cut) + "/";
}

void FltToInventor::startReferenceChain()
{
    if (referenceChain) return;
    referenceChain = std::make_shared<ReferenceChain>();
    const FltInput* input = fltParser ? fltParser->getInput() : nullptr;
    if (input && input->getFileName()) {
        const std::string name = canonicalName(input->getFileName());
        referenceChain->open.insert(name);
        referenceChain->files.insert(name);
    }
}

void FltToInventor::visitExternalReference(const FltRecordExternalReference* record, FltRecordIterator& it)
{
    if (!record) return;
    auto* reference = new SoSeparator;
    setLastPrimaryNode(reference);
    addSoGroupToNodesStackTop(reference);

    const std::string name = record->asciiPath;
    // The prefix ends in a blank and the format adds one: two blanks before the name, intended.
    auto* label = new SoLabel;
    label->label.setValue((std::string("From OpenFlight File: ") + " " + name).c_str());
    reference->addChild(label);

    advance(it);
    visitAncillaryRecords(it, reference);
    if (name.empty()) {
        --it;
        return;
    }

    const FltInput* current = fltParser ? fltParser->getInput() : nullptr;
    const std::string path = externalReferencePath(current ? current->getDirName() : nullptr, name);
    // Probed under the name the file input will open, backslashes read as slashes, so that
    // names written on other hosts resolve here too.
    std::string probed = path;
    std::replace(probed.begin(), probed.end(), '\\', '/');
    // Without blocking: opening a named pipe for reading would wait for a writer forever.
    const int probe = ::open(probed.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (probe < 0) {
        FltWarningMessageConsole::notifyMessage("ERROR! CAN'T RESOLVE EXTERNAL REFERENCE: " + name, 3, true);
        // Not stepped back, unlike the other ways out: the record after the reference's
        // ancillary records is passed over. Kept on purpose, as databases were always read so.
        return;
    }
    ::close(probe);

    FltFileInput input(path.c_str());
    const std::string key = input.getFileName();
    auto converted = externalFiles.find(key);
    if (converted != externalFiles.end()) {
        // The same node as every earlier reference to this file from this file.
        reference->addChild(converted->second);
        --it;
        return;
    }

    // Every nested converter has maps of its own, so only the chain of files being
    // converted can tell a file that references itself, directly or through others.
    startReferenceChain();
    const std::string canonical = canonicalName(key);
    if (referenceChain->open.count(canonical)) {
        FltWarningMessageConsole::notifyMessage("ERROR ! External reference cycle: " + name + " leads back to " +
                                                    canonical + ", which is already being converted; not converted again",
                                                3, true);
        --it;
        return;
    }
    if (referenceChain->open.size() > kMaxExternalReferenceDepth) {
        FltWarningMessageConsole::notifyMessage("ERROR ! External references nested more than " +
                                                    std::to_string(kMaxExternalReferenceDepth) +
                                                    " levels deep: " + name + " is not converted",
                                                3, true);
        --it;
        return;
    }

    referenceChain->files.insert(canonical);
    if (referenceChain->conversions >=
        kNestedConversionsPerFile * referenceChain->files.size() + kNestedConversionsMargin) {
        if (!referenceChain->limitReported) {
            referenceChain->limitReported = true;
            FltWarningMessageConsole::notifyMessage(
                "ERROR ! External references were converted " + std::to_string(referenceChain->conversions) +
                    " times from " + std::to_string(referenceChain->files.size()) + " files: " + name +
                    " and the references after it are not converted",
                3, true);
        }
        --it;
        return;
    }
    ++referenceChain->conversions;

    auto* nestedRoot = new SoSeparator;
    reference->addChild(nestedRoot);
    holdNotification(nestedRoot);
    externalFiles[key] = nestedRoot;
    const int heldBefore = nestedRoot->getRefCount();
    {
        ChainLink link(referenceChain->open, canonical);
        // On the heap: a converter is large, and chains of references nest these frames.
        auto nested = std::make_unique<FltToInventor>();
        nested->setRelativePath(nestedRelativePath(relativePath, name));
        nested->setFltInputToconvert(&input);
        nested->setResult(nestedRoot);
        nested->referenceChain = referenceChain;
        // The hierarchy's depth limit spans the whole chain: the nested walk recurses on
        // this one's stack.
        nested->hierarchyDepth = hierarchyDepth;
        nested->convert();
        // The nested converter writes no log of its own: its parse goes wherever ours does.
    }
    // The nested header visit keeps a reference on its root, as it does for the caller's
    // root; this root is held by the reference's separator instead, so it is given back.
    while (nestedRoot->getRefCount() > heldBefore) nestedRoot->unrefNoDelete();
    --it;
}

void FltToInventor::visitInstanceDefinition(const FltRecordInstanceDefinition* record)
{
    if (!record) return;
    auto* separator = new SoSeparator;
    separator->setName(("InstanceDefinition_" + std::to_string(record->instanceDefinitionNumber)).c_str());
    // A later definition of the same number replaces the earlier one for later references.
    // The table holds its own reference, so that a definition inside a released group
    // stays for the references after it.
    separator->ref();
    SoSeparator*& slot = instances[record->instanceDefinitionNumber];
    SoSeparator* replaced = slot;
    slot = separator;
    if (replaced) {
        replaced->unref();
        releaseCandidates.push_back(replaced);
    }
    holdNotification(separator);
    setLastPrimaryNode(separator);
    addSoGroupToNodesStackTop(separator);
}

void FltToInventor::visitInstanceReference(const FltRecordInstanceReference* record)
{
    if (!record) return;
    // A number not defined yet is entered with no separator: nothing is shown for it.
    SoSeparator* instance = instances[record->instanceDefinitionNumber];
    if (!instance) return;
    SoGroup* parent = getNodesStackTop();
    if (parent && wouldContainItself(instance, parent)) {
        const bool open = instance == parent || stackCounts.count(instance);
        FltWarningMessageConsole::notifyMessage(
            "ERROR ! Instance reference " + std::to_string(record->instanceDefinitionNumber) +
                (open ? " stands inside its own definition: not added, the instance would contain itself"
                      : " stands under a group that a push level opened again: not added, the instance could "
                        "contain itself"),
            3, true);
        return;
    }
    addSoGroupToNodesStackTop(instance);
}

bool FltToInventor::wouldContainItself(SoGroup* instance, SoGroup* parent) const
{
    // While every open group was opened by the push right after its own record, the
    // groups above the stack top are exactly the open ones (sharing adds parents only to
    // nodes that are not open), so the instance contains the top only if it is open itself.
    // A group reopened later may lie inside anything: references under it are refused.
    if (instance == parent || stackCounts.count(instance)) return true;
    return openReopenedEntries > 0;
}
