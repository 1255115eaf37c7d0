// IObserver: whoever is notified of the data model's changes and events.
#pragma once

#include <mvutil/cxstring.h>

// Base of everything that an observer may be notified of; observers find out what it is with dynamic_cast.
class INotification {
public:
    virtual ~INotification() = default;

protected:
    INotification() = default;
    INotification(const INotification&) = default;
    INotification& operator=(const INotification&) = default;
};

// The order of the virtual operations binds.
class IObserver {
public:
    virtual ~IObserver() = default;
    virtual int GetObserverId() const { return 0; }
    // The notification lives during the call only.
    virtual void OnNotification(INotification& notification) = 0;
    virtual CXString GetObserverClassNameHeirarchy() const { return W("IObserver"); }
    virtual CXString GetDumpDisplayString() const { return GetObserverClassNameHeirarchy(); }
    virtual void Dump() const {}

protected:
    IObserver() = default;
    IObserver(const IObserver&) = default;
    IObserver& operator=(const IObserver&) = default;
};
