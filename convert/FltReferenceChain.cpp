// Cycles, depth and the number of nested conversions along external references.
#include "convert/FltReferenceChain.h"

#include <filesystem>
#include <system_error>

#include "diagnostics/FltWarningMessageConsole.h"

namespace {

// The name a file goes by along a chain of references: its canonical path, so that every
// spelling of one file ("a.flt", "./x/../a.flt", a link) meets the same entry.
std::string canonicalName(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(path, error);
    return error ? path : canonical.string();
}

void reportError(const std::string& text) { FltWarningMessageConsole::notifyMessage(text, 3, true); }

}  // namespace

void FltReferenceChain::start()
{
    if (started_) return;
    started_ = true;
    if (database_.empty()) return;
    const std::string name = canonicalName(database_);
    open_.insert(name);
    files_.insert(name);
}

bool FltReferenceChain::admit(const std::string& fileName, const std::string& name)
{
    start();
    const std::string canonical = canonicalName(fileName);
    if (open_.count(canonical)) {
        reportError("ERROR ! External reference cycle: " + name + " leads back to " + canonical +
                    ", which is already being converted; not converted again");
        return false;
    }
    if (open_.size() > kMaxDepth) {
        reportError("ERROR ! External references nested more than " + std::to_string(kMaxDepth) +
                    " levels deep: " + name + " is not converted");
        return false;
    }
    files_.insert(canonical);
    if (conversions_ >= kConversionsPerFile * files_.size() + kConversionsMargin) {
        if (!limitReported_) {
            limitReported_ = true;
            reportError("ERROR ! External references were converted " + std::to_string(conversions_) + " times from " +
                        std::to_string(files_.size()) + " files: " + name +
                        " and the references after it are not converted");
        }
        return false;
    }
    ++conversions_;
    return true;
}

FltReferenceChain::Link::Link(FltReferenceChain& chain, const std::string& fileName)
    : chain_(chain), name_(canonicalName(fileName))
{
    chain_.open_.insert(name_);
}

FltReferenceChain::Link::~Link() { chain_.open_.erase(name_); }
