// Saving never changes a character behind the user's back: in every encoding of the menus, a text
// either encodes to bytes that read back as exactly that text, or is refused.
#include "core/document/TextCodec.h"
#include "support/MenuEncodings.h"

#include <gtest/gtest.h>

namespace mirtex {
namespace {

TEST(StrictEncoding, EveryMenuEncodingWritesExactlyOrRefuses)
{
    // Invisible characters that converters like to drop, private-use characters that some tables
    // map to look-alikes, and plain text each set must keep.
    const QList<QString> samples = {
        QStringLiteral("a\u00ADb"),
        QStringLiteral("a\u200Bb"),
        QStringLiteral("a\u200Cb"),
        QStringLiteral("a\u200Db"),
        QStringLiteral("a\u200Eb"),
        QStringLiteral("a\u200Fb"),
        QStringLiteral("a\u2060b"),
        QStringLiteral("a\uFE0Fb"),
        QStringLiteral("a\u034Fb"),
        QStringLiteral("a\u180Eb"),
        QStringLiteral("a\uF86Fb"),
        QStringLiteral("a\uF8F0b"),
        QStringLiteral("a\uFEFFb"),
        QStringLiteral("a\U000E0101b"),
        QStringLiteral("testo semplice\n"),
    };
    int checked = 0;
    for (const TextEncoding &encoding : everyMenuEncoding()) {
        for (const QString &sample : samples) {
            const auto bytes = TextCodec::encode(sample, encoding, LineEnding::lf);
            if (!bytes)
                continue;
            ++checked;
            const auto back = TextCodec::decodeText(*bytes, encoding);
            ASSERT_TRUE(back) << qPrintable(encoding.label());
            EXPECT_EQ(back->text, sample)
                << qPrintable(encoding.label()) << " U+"
                << QString::number(sample.at(1).unicode(), 16).toStdString();
        }
    }
    EXPECT_GT(checked, everyMenuEncoding().size()); // plain text at least, everywhere
}

TEST(StrictEncoding, JapaneseAndKoreanSetsRefuseInvisibleCharacters)
{
    for (const quint64 set : {CharacterSet::shiftJIS,
                              CharacterSet::japaneseEUC,
                              CharacterSet::iso2022JP,
                              CharacterSet::big5,
                              CharacterSet::eucKR}) {
        const TextEncoding encoding{set, false};
        EXPECT_TRUE(TextCodec::encode(u"日本", encoding, LineEnding::lf)
                    || set == CharacterSet::eucKR)
            << qPrintable(encoding.label());
        EXPECT_FALSE(TextCodec::encode(u"a\u200Bb", encoding, LineEnding::lf))
            << qPrintable(encoding.label());
    }
}

} // namespace
} // namespace mirtex
