#include "core/tools/TextDigest.h"

#include <openssl/evp.h>

namespace mirtex {

namespace {

struct AlgorithmInfo
{
    const char *name;
    const char *display;
    const EVP_MD *(*md)();
};

const AlgorithmInfo kAlgorithms[] = {
    {"md5", "MD5", EVP_md5},
    {"sha1", "SHA-1", EVP_sha1},
    {"sha256", "SHA-256", EVP_sha256},
    {"sha512", "SHA-512", EVP_sha512},
};

} // namespace

QString toString(DigestAlgorithm algorithm)
{
    return QString::fromLatin1(kAlgorithms[int(algorithm)].name);
}

std::optional<DigestAlgorithm> digestAlgorithmFromString(QStringView name)
{
    for (int i = 0; i < 4; ++i) {
        if (name == QLatin1String(kAlgorithms[i].name))
            return DigestAlgorithm(i);
    }
    return std::nullopt;
}

QString displayName(DigestAlgorithm algorithm)
{
    return QString::fromLatin1(kAlgorithms[int(algorithm)].display);
}

TextDigest::TextDigest(DigestAlgorithm algorithm)
    : m_context(EVP_MD_CTX_new())
{
    EVP_DigestInit_ex(m_context, kAlgorithms[int(algorithm)].md(), nullptr);
}

TextDigest::~TextDigest()
{
    EVP_MD_CTX_free(m_context);
}

void TextDigest::add(QByteArrayView bytes)
{
    EVP_DigestUpdate(m_context, bytes.data(), std::size_t(bytes.size()));
}

QString TextDigest::hex()
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    EVP_DigestFinal_ex(m_context, digest, &size);
    return QString::fromLatin1(
        QByteArray::fromRawData(reinterpret_cast<const char *>(digest), size).toHex());
}

QString TextDigest::of(DigestAlgorithm algorithm, QByteArrayView bytes)
{
    TextDigest digest(algorithm);
    digest.add(bytes);
    return digest.hex();
}

} // namespace mirtex
