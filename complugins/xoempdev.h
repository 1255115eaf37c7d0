// XOemPdev: an in-memory property bag that stands in for a rendering device's store of one job.
#pragma once

#include <mvutil/bytebuffer.h>

#include <map>
#include <memory>

// The order of the virtual operations binds.
class XOemPdev {
public:
    static constexpr LONG kAttributeStateKey = 1;          // setting it also sets kAttributeStateChangedKey
    static constexpr LONG kAttributeStateChangedKey = 22;  // to an empty buffer

    XOemPdev();
    virtual ~XOemPdev();
    XOemPdev(const XOemPdev&) = delete;
    XOemPdev& operator=(const XOemPdev&) = delete;

    // False when the key is absent; the out argument is then empty text, 0 or a cleared buffer.
    virtual bool GetPropertyString(LONG key, CXString& text);
    virtual bool GetPropertyLong(LONG key, LONG& value);
    virtual bool GetPropertyBuffer(LONG key, ByteBuffer& buffer);  // a copy
    // Each replaces the value under the key or adds it.
    virtual void SetPropertyLong(LONG key, LONG value);
    virtual void SetPropertyString(LONG key, const CXString& text);  // stored with its terminating NUL
    virtual void SetPropertyBuffer(LONG key, const ByteBuffer& buffer);
    virtual void ClearProperties();
    virtual void Flush();  // does nothing: the bag is in memory only

private:
    std::map<LONG, std::shared_ptr<const ByteBuffer>> properties_;
};
