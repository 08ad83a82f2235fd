#include "ui/document/PreviewEngine.h"

namespace mirtex {

namespace {

std::unique_ptr<PreviewEngine> &engine()
{
    static std::unique_ptr<PreviewEngine> instance;
    return instance;
}

} // namespace

PreviewEngine *PreviewEngine::installed()
{
    return engine().get();
}

void PreviewEngine::install(std::unique_ptr<PreviewEngine> newEngine)
{
    engine() = std::move(newEngine);
}

} // namespace mirtex
