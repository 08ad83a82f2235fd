// Message digests of bytes (OpenSSL's libcrypto) written as lower-case hexadecimal: the hash
// tool's four algorithms. Any thread; one object per digest.
#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <optional>

struct evp_md_ctx_st;

namespace mirtex {

enum class DigestAlgorithm : std::uint8_t {
    md5,
    sha1,
    sha256,
    sha512,
};

QString toString(DigestAlgorithm algorithm); // "md5", "sha1", "sha256", "sha512"
std::optional<DigestAlgorithm> digestAlgorithmFromString(QStringView name);
QString displayName(DigestAlgorithm algorithm); // "MD5", "SHA-1", "SHA-256", "SHA-512"

class TextDigest
{
public:
    explicit TextDigest(DigestAlgorithm algorithm);
    ~TextDigest();
    TextDigest(const TextDigest &) = delete;
    TextDigest &operator=(const TextDigest &) = delete;

    void add(QByteArrayView bytes);
    // The digest of everything added; the object is spent afterwards.
    QString hex();

    static QString of(DigestAlgorithm algorithm, QByteArrayView bytes);

private:
    evp_md_ctx_st *m_context;
};

} // namespace mirtex
