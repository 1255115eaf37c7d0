// Protection of data: what comes back, what does not, and the key file.
#include <store.h>
#include <support/temporaryfolder.h>
#include <widetext.h>
#include <wincrypt.h>

#include <gtest/gtest.h>

#include <string>

namespace {

namespace fs = std::filesystem;

std::string Take(DATA_BLOB& blob) {
    std::string bytes(reinterpret_cast<const char*>(blob.pbData), blob.cbData);
    LocalFree(blob.pbData);
    blob = {};
    return bytes;
}

DATA_BLOB BlobOf(std::string& bytes) {
    return {static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data())};
}

// The protected bytes; "error N" when they are refused.
std::string Protect(std::string plain, std::string entropy = "") {
    DATA_BLOB in = BlobOf(plain), salt = BlobOf(entropy), out = {};
    if (!CryptProtectData(&in, nullptr, entropy.empty() ? nullptr : &salt, nullptr, nullptr, 0, &out))
        return "error " + std::to_string(GetLastError());
    return Take(out);
}
std::string Unprotect(std::string bytes, std::string entropy = "") {
    DATA_BLOB in = BlobOf(bytes), salt = BlobOf(entropy), out = {};
    if (!CryptUnprotectData(&in, nullptr, entropy.empty() ? nullptr : &salt, nullptr, nullptr, 0, &out))
        return "error " + std::to_string(GetLastError());
    return Take(out);
}

class ProtectTest : public testing::Test {
protected:
    ProtectTest() { OpenStore((folder_ / "store").string()); }
    ~ProtectTest() override { CloseStore(); }
    fs::path KeyFile() const { return folder_ / "store" / "protection.key"; }

    const TemporaryFolder folder_;
};

TEST_F(ProtectTest, GivesBackWhatWasProtectedAndNothingElse) {
    for (const std::string& plain : {std::string(), std::string(70000, 'x')})
        EXPECT_EQ(Unprotect(Protect(plain)), plain);
    const std::string plain = "secret", bytes = Protect(plain);
    EXPECT_EQ(Unprotect(bytes), plain);
    EXPECT_EQ(bytes.find(plain), std::string::npos);
    EXPECT_NE(Protect(plain), bytes) << "another nonce each time";
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_EQ(Unprotect(changed), "error 13") << at;
        EXPECT_EQ(Unprotect(bytes.substr(0, at)), "error 13") << at;
    }
    EXPECT_EQ(Unprotect(bytes + "x"), "error 13");
    EXPECT_EQ(Unprotect(bytes, "salt"), "error 13");
    EXPECT_EQ(Unprotect(Protect(plain, "salt"), "salt"), plain);
}

TEST_F(ProtectTest, RefusesWhatItDoesNotOffer) {
    EXPECT_EQ(Unprotect(std::string(200, 'x')), "error 13") << "no key has been made yet";
    EXPECT_FALSE(fs::exists(KeyFile()));
    std::string plain = "secret", bytes = Protect(plain);
    DATA_BLOB good = BlobOf(plain), sealed = BlobOf(bytes), broken{1, nullptr}, out{};
    WCHAR text[2] = {W('t')};
    LPWSTR description = nullptr;
    const struct {
        DATA_BLOB *data, *entropy;
        DWORD flags;
        bool isDescribed;
        DATA_BLOB* result;
        DWORD error;
    } cases[] = {{nullptr, nullptr, 0, false, &out, ERROR_INVALID_PARAMETER},
                 {&broken, nullptr, 0, false, &out, ERROR_INVALID_PARAMETER},
                 {&good, &broken, 0, false, &out, ERROR_INVALID_PARAMETER},
                 {&good, nullptr, 0, false, nullptr, ERROR_INVALID_PARAMETER},
                 {&good, nullptr, 4, false, &out, ERROR_NOT_SUPPORTED},
                 {&good, nullptr, 0, true, &out, ERROR_NOT_SUPPORTED}};
    for (const auto& [data, entropy, flags, isDescribed, result, error] : cases) {
        DATA_BLOB* const protectedData = data == &good ? &sealed : data;
        EXPECT_FALSE(CryptProtectData(data, isDescribed ? text : nullptr, entropy, nullptr, nullptr, flags, result));
        EXPECT_EQ(GetLastError(), error);
        EXPECT_FALSE(CryptUnprotectData(protectedData, isDescribed ? &description : nullptr, entropy, nullptr, nullptr,
                                        flags, result));
        EXPECT_EQ(GetLastError(), error);
        EXPECT_EQ(out.pbData, nullptr);
    }
    EXPECT_TRUE(CryptProtectData(&good, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &out));
    EXPECT_EQ(Unprotect(Take(out)), plain);
}

TEST_F(ProtectTest, TheKeyIsTheStoresAndItsOwnersAlone) {
    const std::string bytes = Protect("secret");
    EXPECT_EQ(fs::status(KeyFile()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::file_size(KeyFile()), 32u);
    OpenStore((folder_ / "other").string());
    EXPECT_EQ(Unprotect(bytes), "error 13");
    OpenStore(":memory:");
    EXPECT_EQ(Unprotect(bytes), "error 13");
    const std::string inMemory = Protect("secret");
    EXPECT_EQ(Unprotect(inMemory), "secret");
    OpenStore((folder_ / "store").string());
    EXPECT_EQ(Unprotect(bytes), "secret") << "the key outlives the process's use of the store";
    OpenStore(":memory:");
    EXPECT_EQ(Unprotect(inMemory), "error 13") << "that key is gone";

    OpenStore((folder_ / "store").string());
    fs::permissions(KeyFile(), fs::perms::group_read, fs::perm_options::add);
    EXPECT_EQ(Unprotect(bytes), "error 5");
    EXPECT_EQ(Protect("more"), "error 5");
    fs::permissions(KeyFile(), fs::perms::group_read, fs::perm_options::remove);
    fs::resize_file(KeyFile(), 31);
    EXPECT_EQ(Unprotect(bytes), "error 13");
}

}  // namespace
