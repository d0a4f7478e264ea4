// What a viewer pays for a large report: reading it, typing into it at any place, and searching it in vain.

#include "text/search.h"
#include "text/text_document.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>

using namespace genutil::text;

namespace {

constexpr std::size_t reportSize = std::size_t{100} * 1024 * 1024;

// A report of points, made once.
const std::string& report() {
    static const std::string bytes = [] {
        std::mt19937 random(1);
        std::string text;
        text.reserve(reportSize + 200);
        for (unsigned i = 0; text.size() < reportSize; ++i) {
            char line[200];
            text.append(
                line, std::size_t(std::snprintf(line, sizeof line,
                          "%7u  PT%05u  %12.4f %12.4f %9.4f  adjusted\r\n", i, unsigned(random() % 100000),
                          double(random()) / 4000, double(random()) / 4000, double(random()) / 4e6)));
        }
        return text;
    }();
    return bytes;
}

class Memory : public ByteSource {
public:
    explicit Memory(const std::string& bytes) : rest_(bytes) {}
    std::uint64_t expectedSize() const override { return rest_.size(); }
    std::size_t read(std::span<char> into) override {
        const std::string_view part = rest_.substr(0, into.size());
        std::memcpy(into.data(), part.data(), part.size());
        rest_.remove_prefix(part.size());
        return part.size();
    }

private:
    std::string_view rest_;
};

TextDocument load() {
    Memory source(report());
    return TextDocument::load(source);
}

void loads(benchmark::State& state) {
    report();
    for (auto unused : state)
        benchmark::DoNotOptimize(load().lineCount());
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(report().size()));
}
BENCHMARK(loads)->Unit(benchmark::kMillisecond);

void typesAtRandomPlaces(benchmark::State& state) {
    TextDocument document = load();
    std::mt19937 random(2);
    for (auto unused : state) {
        const TextPosition place{random() % document.lineCount(), random() % 60};
        const TextChange change = document.replace({place, place}, "x");
        benchmark::DoNotOptimize(document.line(change.newEnd.line));
    }
}
BENCHMARK(typesAtRandomPlaces)->Iterations(10000)->Unit(benchmark::kMicrosecond);

void searchesInVain(benchmark::State& state, const char* word) {
    const TextDocument document = load();
    for (auto unused : state)
        benchmark::DoNotOptimize(find(document, {word}, {}, SearchDirection::Forward));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(report().size()));
}
BENCHMARK_CAPTURE(searchesInVain, rareLetters, "Zwischenpunkt")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchesInVain, frequentDigits, "00000000")->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
