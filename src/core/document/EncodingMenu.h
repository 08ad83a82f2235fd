// The contents of the encoding menus (reopen with encoding, save panel): common entries and groups.
#pragma once

#include "core/document/TextEncoding.h"

#include <QList>
#include <QString>

namespace mirtex {

struct EncodingGroup
{
    QString title;                 // translated, e.g. "Europa occidentale"
    QList<TextEncoding> encodings; // each without BOM, in menu order
};

// The regional groups, in menu order.
QList<EncodingGroup> encodingMenuGroups();

// The first entries of every encoding menu: Windows-1252, UTF-8, UTF-8 with BOM,
// UTF-16 BE with BOM, UTF-16 LE with BOM.
QList<TextEncoding> commonEncodings();

} // namespace mirtex
