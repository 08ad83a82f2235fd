// Opening a search hit in the main window: the tab of its document (loaded first when it is
// pending), else its file; then the hit's range on its line, selected and scrolled to.
#pragma once

#include "core/search/SearchResults.h"

namespace mirtex {

class DocumentFlows;
class DocumentTab;

// The tab now showing the hit, or nullptr when neither its document nor its file could be
// opened. The range is taken on the line as it is now, clipped to it.
DocumentTab *
openSearchHit(DocumentFlows &flows, const SearchFileResult &file, const SearchHit &hit);

} // namespace mirtex
