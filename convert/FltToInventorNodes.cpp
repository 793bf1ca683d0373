// Level of detail, switch, degree of freedom, matrices, replication, clip regions and text.
#include <Inventor/SbPlane.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoClipPlane.h>
#include <Inventor/nodes/SoInfo.h>
#include <Inventor/nodes/SoLOD.h>
#include <Inventor/nodes/SoLabel.h>
#include <Inventor/nodes/SoMatrixTransform.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltRecordClipRegion.h"
#include "reader/FltRecordDOF.h"
#include "reader/FltRecordGroupAndObject.h"
#include "reader/FltRecordLOD.h"
#include "reader/FltRecordSwitch.h"
#include "reader/FltRecordText.h"
#include "reader/FltRecordTransformations.h"

namespace {

const char* const kSwitchInfoName = "SoInfo_child_of_FLT_switch";


}  // namespace

// ---- Level of detail ----

void FltToInventor::visitLOD(const FltRecordLOD* record, FltRecordIterator& it)
{
    if (!record) return;
    auto* lod = new SoLOD;
    lod->setName(record->idASCII);
    lod->center.setValue(static_cast<float>(record->XcenterCoordinate), static_cast<float>(record->YcenterCoordinate),
                         static_cast<float>(record->ZcenterCoordinate));
    lod->range.set1Value(0, static_cast<float>(record->switchOutDistance));
    lod->range.set1Value(1, static_cast<float>(record->switchInDistance));

    auto* content = new SoSeparator;
    beginPrimaryNode(content, lod, record->idASCII, it);
    visitGroupChildren(it);

    // Nearer than the switch-out distance the LOD shows the empty label, then the content,
    // and beyond the switch-in distance nothing.
    lod->addChild(minRangeLimitLabel);
    lod->addChild(content);
    // The file's centre is kept whenever it is not exactly zero; the freeze-centre flag is
    // not consulted, as in every database converted so far.
    if (lod->center.getValue() == SbVec3f(0, 0, 0)) {
        SoGetBoundingBoxAction box{SbViewportRegion()};
        box.apply(content);
        lod->center.setValue(box.getBoundingBox().getCenter());
    }
    lod->addChild(maxRangeLimitLabel);
}

void FltToInventor::visitOLDLOD(const FltRecordOLDLOD* record, FltRecordIterator& it)
{
    if (!record) return;
    FltRecordLOD widened(record->getLength());
    std::copy(std::begin(record->idASCII), std::end(record->idASCII), std::begin(widened.idASCII));
    widened.switchInDistance = static_cast<double>(record->switchInDistance);
    widened.switchOutDistance = static_cast<double>(record->switchOutDistance);
    widened.flags = record->flags;
    widened.XcenterCoordinate = static_cast<double>(record->XcenterCoordinate);
    widened.YcenterCoordinate = static_cast<double>(record->YcenterCoordinate);
    widened.ZcenterCoordinate = static_cast<double>(record->ZcenterCoordinate);
    visitLOD(&widened, it);
}

// ---- Switch ----

void FltToInventor::visitSwitch(const FltRecordSwitch* record, FltRecordIterator& it)
{
    if (!record) return;
    auto* separator = new SoSeparator;
    separator->setName(record->idASCII);
    // The name carries "flt_switch", which is how children added later find their switch.
    const std::string name = std::string(separator->getName().getString()) + "_(flt_switch)";
    separator->setName(name.c_str());
    setLastPrimaryNode(separator);
    addSoGroupToNodesStackTop(separator);

    SoInfo* info = new SoInfo;
    setFltSwitchPropertiesToSoInfo(info, record);
    separator->addChild(info);

    advance(it);
    visitAncillaryRecords(it, separator);
    visitGroupChildren(it);
}

void FltToInventor::setFltSwitchPropertiesToSoInfo(SoInfo*& info, const FltRecordSwitch* record)
{
    if (!info || !record) return;
    info->setName(kSwitchInfoName);
    std::string text = "Current Mask:" + std::to_string(record->indexOfCurrentMask) +
                       " NumberOfWordsPerMask:" + std::to_string(record->numberOf32BitWordsPerMask) +
                       " numberOfMasks:" + std::to_string(record->numberOfMasks) + " Switch Masks:";
    // Only the words the record really holds: the counts may announce more.
    const int64_t announced =
        static_cast<int64_t>(record->numberOf32BitWordsPerMask) * static_cast<int64_t>(record->numberOfMasks);
    const size_t words = announced < 1 ? 0
                         : static_cast<uint64_t>(announced) < record->maskWordCount ? static_cast<size_t>(announced)
                                                                                    : record->maskWordCount;
    // Each word: its 32 bits as "1 " or "0 ", most significant first, then two blanks.
    size_t at = text.size();
    text.resize(at + words * 66);
    for (size_t w = 0; w < words; ++w) {
        for (int bit = 31; bit >= 0; --bit) {
            text[at++] = ((record->masks[w] >> bit) & 1u) ? '1' : '0';
            text[at++] = ' ';
        }
        text[at++] = ' ';
        text[at++] = ' ';
    }
    info->string.setValue(text.c_str());
}

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

FltToInventor::SwitchMaskList FltToInventor::parseSwitchProperties(const std::string& s)
{
    // The string is read back number by number. After a number the scan skips as many
    // further characters as the value has digits beyond its first, counted by dividing by
    // 10 while the value exceeds 10, so a header value of 10 or of 100 to 109 is misread as
    // two numbers: kept on purpose, switch masks of existing databases depend on it.
    SwitchMaskList list;
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

bool FltToInventor::isSwitchChildOn(const SwitchMaskList& list, long long n)
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

bool FltToInventor::isSoSwitchTraverseHisChildren(SoGroup* group) const
{
    if (!group) return isSwitchChildOn(parseSwitchProperties(getInfoStringFromAConvertedFltSwitch(group)), 0);

    // Looks only at the children appended since the last call: the same answers as scanning
    // every child for the info node and counting the switches, in constant time per child.
    SwitchChildState& state = switchChildStates.of(group);
    const int children = group->getNumChildren();
    if (children < state.scannedChildren) state = SwitchChildState();
    for (int i = state.scannedChildren; i < children; ++i) {
        SoNode* child = group->getChild(i);
        if (child->getTypeId() == SoSwitch::getClassTypeId()) ++state.switchChildren;
        if (!state.infoFound && child->isOfType(SoInfo::getClassTypeId()) && child->getName() == kSwitchInfoName) {
            state.infoFound = true;
            state.list = parseSwitchProperties(static_cast<SoInfo*>(child)->string.getValue().getString());
        }
    }
    state.scannedChildren = children;

    if (!state.infoFound) {
        // As the full lookup does: the message for every child, and the fallback text,
        // which holds no number, so the child is off.
        return isSwitchChildOn(parseSwitchProperties(getInfoStringFromAConvertedFltSwitch(nullptr)),
                               state.switchChildren);
    }
    return isSwitchChildOn(state.list, state.switchChildren);
}

void FltToInventor::SwitchChildStates::clear()
{
    std::unordered_map<SoGroup*, SwitchChildState> held;
    held.swap(states);
    for (auto& entry : held) entry.first->unref();
}

FltToInventor::SwitchChildState& FltToInventor::SwitchChildStates::of(SoGroup* group)
{
    auto found = states.find(group);
    if (found != states.end()) return found->second;
    group->ref();
    return states[group];
}

// ---- Degree of freedom ----

void FltToInventor::visitDOF(const FltRecordDOF* record, FltRecordIterator& it)
{
    if (!record) return;
    // The local coordinate system, limits and current values stay in the record: only a
    // matrix record following the DOF moves its subtree.
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, record->idASCII, it);
    visitGroupChildren(it);
}

// ---- Matrices and replication ----

void FltToInventor::visitMatrix(const FltRecordMatrix* record, SoGroup* group)
{
    if (!record || !group) return;
    // Stored row by row with the translation in the fourth row: the scene graph's own
    // convention, so no transposition.
    auto* transform = new SoMatrixTransform;
    transform->matrix.setValue(SbMatrix(record->matrix));
    group->addChild(transform);
}

void FltToInventor::visitReplicate(const FltRecordReplicate* record, SoNode* node,
                                   std::vector<FltRecord*>::iterator& listPosition,
                                   std::vector<FltRecord*>& ancillaryList, FltRecordIterator& recordPosition)
{
    if (!record) return;
    auto* replications = new SoSeparator;
    replications->setName("Replications");
    // Without a parent it stays alive with the converter's other unattached nodes.
    if (SoGroup* parent = getNodesStackTop())
        parent->addChild(replications);
    else
        keepUnattached(replications);

    const int32_t count = record->numberOfReplications;
    if (count <= 0 || !node) return;
    ++listPosition;
    if (listPosition == ancillaryList.end()) return;
    holdNotification(node);
    int32_t copies = 0;
    for (;;) {
        if ((*listPosition)->getOpcode() != 49) return;
        // The copy takes the record after the matrix just tested: the test and the use are
        // one record apart, kept on purpose. Whatever follows must itself be a matrix.
        ++listPosition;
        // The walk's own position moves on with each copy. It already stands after the
        // ancillary records, so each copy passes over one record after them: the established
        // walk of replicated records, kept; it never passes the end of the records.
        if (!isEnd(recordPosition)) ++recordPosition;
        if (listPosition == ancillaryList.end()) return;
        const auto* matrix = dynamic_cast<const FltRecordMatrix*>(*listPosition);
        if (!matrix) return;
        visitMatrix(matrix, replications);
        // The same node again, not a copy: each copy sits under every transform before it.
        replications->addChild(node);
        if (++copies == count) return;
        ++listPosition;
        if (listPosition == ancillaryList.end()) return;
    }
}

// ---- Clip regions and text ----

void FltToInventor::visitClipRegion(const FltRecordClipRegion* record, FltRecordIterator& it)
{
    if (!record) return;
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, record->idASCII, it);
    // No children walk here: the walk goes on from the record after the ancillary records,
    // so a push level there opens this separator after its clip planes.
    --it;

    const int planes = record->getUsedFlags();
    for (int i = 0; i < planes && i < FltRecordClipRegion::kPlanes; ++i) {
        auto* clip = new SoClipPlane;
        const SbVec3f normal(static_cast<float>(record->clipRegionCoefs[FltRecordClipRegion::A][i]),
                             static_cast<float>(record->clipRegionCoefs[FltRecordClipRegion::B][i]),
                             static_cast<float>(record->clipRegionCoefs[FltRecordClipRegion::C][i]));
        clip->plane.setValue(SbPlane(normal, static_cast<float>(-record->clipRegionCoefs[FltRecordClipRegion::D][i])));
        clip->on.setValue(record->isEnabledClipPlane(i));
        separator->addChild(clip);
    }
}

void FltToInventor::visitText(const FltRecordText* record, FltRecordIterator& it)
{
    if (!record) return;
    // The text, its font and placement are not drawn: an empty named separator stands for it.
    auto* separator = new SoSeparator;
    beginPrimaryNode(separator, separator, record->idASCII, it);
    --it;  // as for clip regions: the walk sees the record after the ancillary records
}
