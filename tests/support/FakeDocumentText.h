// A document's text held in a plain string, for testing Document without an editor.
#pragma once

#include "core/document/DocumentText.h"

namespace mirtex {

class FakeDocumentText : public DocumentText
{
public:
    explicit FakeDocumentText(QString text = {})
        : m_text(std::move(text))
    {}

    // Changes the text as an edit would; the caller reports it to the document.
    void setText(const QString &text) { m_text = text; }

    bool isEditable() const { return m_editable; }

    QString text() const override { return m_text; }

    QByteArray utf8Text() const override { return m_text.toUtf8(); }

    bool utf8Equals(const QByteArray &utf8) const override { return m_text.toUtf8() == utf8; }

    void replaceText(const QByteArray &utf8) override { m_text = QString::fromUtf8(utf8); }

    void setEditable(bool editable) override { m_editable = editable; }

private:
    QString m_text;
    bool m_editable = true;
};

} // namespace mirtex
