// The live text of a document as the document sees it. The editor implements it (its storage is
// Scintilla's UTF-8 buffer); tests implement it with a plain string.
#pragma once

#include <QByteArray>
#include <QString>

namespace mirtex {

class DocumentText
{
public:
    virtual ~DocumentText() = default;

    // The whole text, LF line breaks, UTF-16. May be costly on huge texts: prefer the others.
    virtual QString text() const = 0;
    // The whole text as UTF-8 (the editor's own storage format).
    virtual QByteArray utf8Text() const = 0;
    // Whether the text equals `utf8` byte for byte; cheap when the lengths differ, and when `utf8`
    // came from savedUtf8Text() it compares only what was edited since.
    virtual bool utf8Equals(const QByteArray &utf8) const = 0;

    // The whole text as UTF-8, kept as the reference later utf8Equals() calls compare with.
    virtual QByteArray savedUtf8Text() { return utf8Text(); }

    // Replaces the whole text (a reload from disk); the caller marks the document saved.
    virtual void replaceText(const QByteArray &utf8) = 0;
    virtual void setEditable(bool editable) = 0;
};

} // namespace mirtex
