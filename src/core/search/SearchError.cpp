#include "core/search/SearchError.h"

#include <QCoreApplication>

namespace mirtex {

QString SearchError::description() const
{
    const auto tr = [](const char *text) { return QCoreApplication::translate("Search", text); };
    switch (kind) {
    case Kind::empty:
        return tr("Scrivi cosa cercare.");
    case Kind::invalid:
        if (reason.isEmpty())
            return tr("Espressione non valida: ") + detail;
        return tr("Espressione non valida: ") + detail + u" (" + reason + u')';
    case Kind::tooComplex:
        return tr("Ricerca interrotta: l'espressione richiede troppo tempo su questo testo.");
    case Kind::missingGroup:
        return tr("La sostituzione usa un gruppo che l'espressione non ha: ") + detail;
    case Kind::cancelled:
        return tr("Operazione annullata.");
    }
    return {};
}

} // namespace mirtex
