// FltToObject: the interface of a converter from parsed OpenFlight records to some result.
#pragma once

#include "reader/FltObserver.h"

class FltInput;
class FltParser;

template <class Result>
class FltToObject : public FltRecordObserver {
public:
    ~FltToObject() override = default;
    virtual void setResult(Result* result) = 0;
    virtual Result* getResult() const = 0;
    virtual void setFltParser(FltParser* parser) = 0;
    virtual void deleteCurrentFltParser() = 0;
    // 0 on success, 1 on failure.
    virtual int convert() = 0;
    virtual void setFltInputToconvert(FltInput* input) = 0;
    virtual bool isAllFltRecordsVisited() const = 0;
    virtual void visitAllFltRecords() = 0;
    virtual void destroyAllFltRecords() = 0;
};
