// The progress of a run, told to the calling thread's hook.
#include "convert/FltProgress.h"

#include <algorithm>
#include <cmath>

namespace {

struct Hook {
    QetzfltProgressFunction function = nullptr;
    void* user = nullptr;
};

thread_local Hook threadHook;

constexpr int kHundredths = 100;

}  // namespace

void FltProgress::setForThread(QetzfltProgressFunction function, void* user) { threadHook = Hook{function, user}; }

FltProgress::FltProgress(double parseShare)
    : function_(threadHook.function), user_(threadHook.user), parseShare_(parseShare)
{
}

uint64_t FltProgress::parsed(uint64_t offset, uint64_t size) { return stretch(0, parseShare_, offset, size); }

uint64_t FltProgress::walked(uint64_t done, uint64_t total) { return stretch(parseShare_, walkEnd_, done, total); }

uint64_t FltProgress::stretch(double from, double to, uint64_t done, uint64_t total)
{
    const double share = to - from;
    if (!function_ || total == 0 || !(share > 0)) return UINT64_MAX;
    reach(from + share * (static_cast<double>(done) / static_cast<double>(total)));
    if (nextHundredth_ >= kHundredths) return UINT64_MAX;
    const double next = static_cast<double>(nextHundredth_) / kHundredths;
    if (next >= to) return UINT64_MAX;
    // The first step whose fraction reaches the next hundredth (rounding may make it ask
    // once more before it tells, which costs nothing).
    const double at = std::ceil(static_cast<double>(total) * (next - from) / share);
    if (at <= static_cast<double>(done)) return done + 1;
    return at >= static_cast<double>(total) ? UINT64_MAX : static_cast<uint64_t>(at);
}

void FltProgress::reach(double fraction)
{
    if (!function_ || finished_ || !(fraction >= 0)) return;
    const int hundredth = static_cast<int>(std::floor(fraction * kHundredths));
    if (hundredth < nextHundredth_ || nextHundredth_ >= kHundredths) return;
    nextHundredth_ = std::min(hundredth, kHundredths - 1) + 1;
    // Below 1 until the run has ended, which says 1 itself.
    tell(std::min(fraction, 0.999));
}

void FltProgress::finish()
{
    if (!function_ || finished_) return;
    finished_ = true;
    tell(1.0);
}

void FltProgress::tell(double fraction)
{
    // The host's code: whatever it throws stays here.
    try {
        function_(user_, fraction);
    } catch (...) {
    }
}
