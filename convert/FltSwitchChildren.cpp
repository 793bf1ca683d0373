// Switch masks as info text, read back child by child.
#include "convert/FltSwitchChildren.h"

#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoSwitch.h>

#include <cstdint>
#include <limits>

#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordSwitch.h"

const char* const kFltSwitchInfoName = "SoInfo_child_of_FLT_switch";

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The decimal number starting at p, as strtoll reads it (saturating at its largest value).
long long readDecimal(const std::string& s, size_t p)
{
    constexpr long long kMax = std::numeric_limits<long long>::max();
    long long value = 0;
    for (; p < s.size() && isDigit(s[p]); ++p) {
        const int digit = s[p] - '0';
        value = value > (kMax - digit) / 10 ? kMax : value * 10 + digit;
    }
    return value;
}

}  // namespace

std::string fltSwitchMaskText(const FltRecordSwitch& record)
{
    std::string text = "Current Mask:" + std::to_string(record.indexOfCurrentMask) +
                       " NumberOfWordsPerMask:" + std::to_string(record.numberOf32BitWordsPerMask) +
                       " numberOfMasks:" + std::to_string(record.numberOfMasks) + " Switch Masks:";
    // Only the words the record really holds: the counts may announce more.
    const int64_t announced =
        static_cast<int64_t>(record.numberOf32BitWordsPerMask) * static_cast<int64_t>(record.numberOfMasks);
    const size_t words = announced < 1 ? 0
                         : static_cast<uint64_t>(announced) < record.maskWordCount ? static_cast<size_t>(announced)
                                                                                   : record.maskWordCount;
    // Each word: its 32 bits as "1 " or "0 ", most significant first, then two blanks.
    size_t at = text.size();
    text.resize(at + words * 66);
    for (size_t w = 0; w < words; ++w) {
        for (int bit = 31; bit >= 0; --bit) {
            text[at++] = ((record.masks[w] >> bit) & 1u) ? '1' : '0';
            text[at++] = ' ';
        }
        text[at++] = ' ';
        text[at++] = ' ';
    }
    return text;
}

FltSwitchMaskList fltParseSwitchMaskText(const std::string& s)
{
    // The text is read back number by number. After a number the scan skips as many
    // further characters as the value has digits beyond its first, counted by dividing by
    // 10 while the value exceeds 10, so a header value of 10 or of 100 to 109 is misread as
    // two numbers: kept on purpose, switch masks of existing databases depend on it.
    FltSwitchMaskList list;
    long long last = 0;
    int numbersRead = 0;
    auto append = [&](long long value) {
        if (list.size < 3) list.head[list.size] = value;
        list.isOne.push_back(value == 1);
        ++list.size;
        last = value;
    };
    for (size_t p = 0; p < s.size(); ++p) {
        if (isDigit(s[p])) {
            const long long value = readDecimal(s, p);
            append(value);
            size_t skip = 0;
            for (long long v = value; v > 10; v /= 10) ++skip;
            p += skip;
            ++numbersRead;
        } else if (list.size > 0 && numbersRead <= 3 && last != -1) {
            append(-1);
        }
    }
    return list;
}

bool fltIsSwitchChildOn(const FltSwitchMaskList& list, long long n)
{
    // Header: current mask, -1, words per mask, -1, number of masks, -1, then the bits; the
    // child's bit is counted from the end of the current mask. An element outside the list
    // (a missing info node, a mask shorter than the children, a misread header) is off.
    if (list.size < 3) return false;
    const long long m = list.head[0];
    const long long w = list.head[2];
    if (w < 0) return false;  // the index below is then negative
    // Beyond these the index passes any list a record can produce; checked first so the
    // product cannot overflow.
    constexpr long long kLimit = 1LL << 26;
    if (w > 0 && (w > kLimit || m > kLimit)) return false;
    const long long index = 32 * w + 32 * w * m + 5 - n;
    if (index < 0 || index >= static_cast<long long>(list.size)) return false;
    return list.isOne[static_cast<size_t>(index)];
}

bool FltSwitchChildren::isNextChildOn(SoGroup* group)
{
    auto found = states_.find(group);
    if (found == states_.end()) {
        group->ref();
        found = states_.emplace(group, State()).first;
    }
    State& state = found->second;
    const int children = group->getNumChildren();
    if (children < state.scannedChildren) state = State();
    for (int i = state.scannedChildren; i < children; ++i) {
        SoNode* child = group->getChild(i);
        if (child->getTypeId() == SoSwitch::getClassTypeId()) ++state.switchChildren;
        if (!state.infoFound && child->isOfType(SoInfo::getClassTypeId()) && child->getName() == kFltSwitchInfoName) {
            state.infoFound = true;
            state.list = fltParseSwitchMaskText(static_cast<SoInfo*>(child)->string.getValue().getString());
        }
    }
    state.scannedChildren = children;

    if (!state.infoFound) {
        // Reported for every child, as a full search for the info node would; the text read
        // then holds no number, so the child is off.
        FltWarningMessageConsole::notifyMessage("ERROR ! SoInfo with switch properties not found", 3, true);
        return false;
    }
    return fltIsSwitchChildOn(state.list, state.switchChildren);
}

void FltSwitchChildren::forget()
{
    std::unordered_map<SoGroup*, State> held;
    held.swap(states_);
    for (auto& entry : held) entry.first->unref();
}
