// DataEncrypter: texts that only the user who stored them can read.
#pragma once

#include <mvutil/bytebuffer.h>

// Over the system's protection of data for the current user. Both throw ExceptionDataEncrypterFailure.
class MVUTIL_API DataEncrypter {
public:
    // Replaces the buffer's contents by the protected text. Equal texts give different bytes.
    static void EncryptString(const CXString& text, ByteBuffer& bytes);
    // The text, marked as a secret. Throws for bytes that EncryptString did not give this user, or that were changed.
    static CXString DecryptString(const ByteBuffer& bytes);
};
