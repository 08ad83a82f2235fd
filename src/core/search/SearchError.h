// Why a search could not run, with the Italian text the find panel shows.
#pragma once

#include <QString>

namespace mirtex {

struct SearchError
{
    enum class Kind {
        empty,        // nothing to look for
        invalid,      // the pattern does not compile
        tooComplex,   // the matcher ran out of time or stack on this text
        missingGroup, // the replacement names a group the pattern does not have
        cancelled     // the user stopped a long search (see SearchStopScope)
    };

    Kind kind = Kind::empty;
    QString detail; // invalid: the offending pattern; missingGroup: the template
    QString reason; // invalid, tooComplex: the regex library's own words (its error name)

    static SearchError empty() { return {Kind::empty, {}, {}}; }

    static SearchError invalid(const QString &detail, const QString &reason = {})
    {
        return {Kind::invalid, detail, reason};
    }

    // "Scrivi cosa cercare.", "Espressione non valida: …", …
    QString description() const;

    friend bool operator==(const SearchError &, const SearchError &) = default;
};

} // namespace mirtex
