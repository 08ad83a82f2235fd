// What the program knows about each character-set number: its converter and its display name.
#pragma once

#include <QtGlobal>

namespace mirtex {

struct CharacterSetInfo
{
    quint64 number = 0;
    // The ICU converter (and conventional IANA-style) name, e.g. "ISO-8859-15".
    const char *converterName = nullptr;
    // The translatable name shown in menus ("Mac Roman"), or nullptr when the set has none and
    // the converter name is shown instead.
    const char *displayName = nullptr;
};

// nullptr for a number the program cannot convert.
const CharacterSetInfo *findCharacterSet(quint64 number);
// The set whose converter name matches `name` the way ICU compares names ("shift_jis" and
// "Shift-JIS" alike); nullptr when none.
const CharacterSetInfo *findCharacterSetNamed(const char *name);

} // namespace mirtex
