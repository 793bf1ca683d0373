// Observer interfaces through which the parser hands out each record as it is created.
#pragma once

class FltRecord;

template <class Subject>
class FltObserver {
public:
    virtual void update(const Subject* subject) = 0;
    virtual ~FltObserver() = default;
};

class FltRecordObserver : public FltObserver<FltRecord> {
};

template <class Subject, class Observer>
class FltObservable {
public:
    virtual void attachFltObserver(Observer* observer) = 0;
    virtual void detachFltObserver(Observer* observer) = 0;
    virtual void notify(const Subject* subject) = 0;
    virtual ~FltObservable() = default;
};

class FltRecordObservable : public FltObservable<FltRecord, FltRecordObserver> {
};
