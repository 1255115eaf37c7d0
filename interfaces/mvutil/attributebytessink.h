// AttributeBytesSink: whatever takes typed settings, one item after the other, for the private DEVMODE.
#pragma once

#include <mvutil/attributebytes.h>

class AttributeBytesSink {
public:
    // The namespace of the items that follow.
    virtual void SetNameSpace(const AttributeBytesNameSpaceId& namespaceId) = 0;
    // False when there is no room for the item, which is then left out; smaller ones may still be taken.
    virtual bool AddDataBlob(AttributeBytesFeatureId feature, const ByteBuffer& value) = 0;

protected:
    ~AttributeBytesSink() = default;
};
