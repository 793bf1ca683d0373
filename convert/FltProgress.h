// FltProgress: how far one conversion or glTF write has come, told to the hook that the
// calling thread set with qetzfltSetProgress. The parse takes the first share of the way,
// by bytes; the steps after it take the rest. The hook hears a rising fraction at most once
// per hundredth, and 1.0 once when the run has succeeded.
#pragma once

#include <cstdint>

#include "QetzFlt/QetzFlt.h"
#include "reader/FltParser.h"

class FltProgress : public FltParseProgress {
public:
    // Sets the calling thread's hook (null: none), which the runs it starts from then on take.
    static void setForThread(QetzfltProgressFunction function, void* user);

    // A run's progress, told to the calling thread's hook as it is now; parseShare is the
    // fraction that the parse ends at.
    explicit FltProgress(double parseShare);
    FltProgress(const FltProgress&) = delete;
    FltProgress& operator=(const FltProgress&) = delete;

    bool active() const { return function_ != nullptr; }
    // Where the parse ends and the steps after it begin (from 0.01 to 1).
    void setParseShare(double share) { parseShare_ = share; }
    void reachParseEnd() { reach(parseShare_); }
    uint64_t parsed(uint64_t offset, uint64_t size) override;
    // The walk of the records after the parse stands at record `done` of `total`: the way
    // from the parse's end to where the walk ends (see setWalkEnd). Returns the record at
    // which to be told next (UINT64_MAX for never), so that a walk pays one compare a step.
    uint64_t walked(uint64_t done, uint64_t total);
    // Where the walk ends: the end of the run (1, the default) unless steps follow it.
    void setWalkEnd(double fraction) { walkEnd_ = fraction; }
    // The run has come this far (below 1; told when it passes the next hundredth).
    void reach(double fraction);
    // The run has succeeded: 1.0, once.
    void finish();

private:
    // Step `done` of `total` of the part of the way from `from` to `to`: told, and the step at
    // which to be told next returned (UINT64_MAX for never).
    uint64_t stretch(double from, double to, uint64_t done, uint64_t total);
    void tell(double fraction);

    QetzfltProgressFunction function_ = nullptr;
    void* user_ = nullptr;
    double parseShare_;
    double walkEnd_ = 1.0;
    int nextHundredth_ = 0;
    bool finished_ = false;
};
