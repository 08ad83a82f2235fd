// Rendering a large Markdown document (headings, emphasis, code spans, links, lists, tables,
// fenced code in several languages, footnotes) to the body, with and without code colouring.
#include "core/markdown/MarkdownRenderer.h"

#include <benchmark/benchmark.h>

namespace {

std::string sampleDocument(int sections)
{
    std::string text;
    for (int i = 0; i < sections; ++i) {
        const std::string n = std::to_string(i);
        text += "## Sezione " + n + "\n\nTesto **forte**, `codice`, un [link](http://a.it/" + n
                + ") e una nota[^n" + n + "].\n\n- uno\n- [x] due\n  1. tre\n\n"
                + "| A | B |\n|:--|--:|\n| " + n + " | ~~via~~ |\n\n"
                + "```python\ndef f(x):\n    return x * " + n + "  # commento\n```\n\n"
                + "```js\nconst s = \"stringa\"; let k = 42;\n```\n\n" + "[^n" + n + "]: Nota " + n
                + ".\n\n";
    }
    return text;
}

void markdownRender(benchmark::State &state)
{
    const std::string text = sampleDocument(int(state.range(0)));
    mirtex::MarkdownRenderer renderer;
    renderer.highlightCode = state.range(1) != 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(renderer.renderBody(text));
    state.SetBytesProcessed(qint64(state.iterations()) * qint64(text.size()));
}

} // namespace

BENCHMARK(markdownRender)->Args({2000, 0})->Args({2000, 1})->Unit(benchmark::kMillisecond);
