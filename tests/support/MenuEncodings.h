// Every encoding the menus offer (the common entries, then each group's), for tests that must
// hold in all of them.
#pragma once

#include "core/document/EncodingMenu.h"

namespace mirtex {

inline QList<TextEncoding> everyMenuEncoding()
{
    QList<TextEncoding> all = commonEncodings();
    for (const EncodingGroup &group : encodingMenuGroups())
        all += group.encodings;
    return all;
}

} // namespace mirtex
