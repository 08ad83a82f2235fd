// The desktop shell grows here.
namespace mirtex {
int uiLayerVersion() { return 1; }
} // namespace mirtex
