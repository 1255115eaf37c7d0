// The component's own writer of MVJT job tickets.
#pragma once

#include <mvcore/featureservices.h>
#include <mvutil/bytebuffer.h>

// Appends the job ticket of the model's settings to the buffer: 8-bit text in lines that end with a line feed, without
// a terminator. A control character in a setting's text is written as a space, so that no text starts a line of its
// own. What the model throws passes through, with nothing appended.
void WriteMvjt(FeatureServices& services, ByteBuffer& buffer);
