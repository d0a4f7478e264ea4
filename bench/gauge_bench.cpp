// What a host pays for showing progress: a call of cProgress::Gauge through the public face (16-bit text,
// vtable), beside the toolkit's own QProgressDialog doing the same work. The count's text changes with every
// call, the percentage after every hundredth of the calls. The peers let pending events run with every call,
// as such dialogs are used, or, to their favour, only when the percentage moves, as the gauge does.
//
// Run it where windows can be shown (Xvfb will do); each round times every subject once, in turn, and the
// table gives the medians and their ratios to the gauge.

#include <k_genutil.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressDialog>

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int calls = 100'000;

k_genutil::Ref<k_genutil::_cProgress> createGauge() {
    void* library = dlopen(K_GENUTIL_LIBRARY, RTLD_NOW);
    const auto getClassObject =
        reinterpret_cast<k_genutil::DllGetClassObjectFunction>(dlsym(library, "DllGetClassObject"));
    k_genutil::Ref<IClassFactory> factory;
    k_genutil::Ref<k_genutil::_cProgress> gauge;
    if (!getClassObject ||
        FAILED(getClassObject(k_genutil::classes::cProgress.clsid, IID_IClassFactory, factory.out())) ||
        FAILED(factory->CreateInstance(nullptr, k_genutil::iidOf<k_genutil::_cProgress>, gauge.out()))) {
        std::fprintf(stderr, "no gauge: %s\n", dlerror());
        std::exit(1);
    }
    return gauge;
}

void gaugeOfTheComponent(benchmark::State& state) {
    static const auto gauge = createGauge();
    for (auto _ : state) {
        k_genutil::Text title("Least-squares adjustment of the network"), label("Observation ");
        gauge->GaugeSetup(title.inOut(), label.inOut());
        for (int i = 1; i <= calls; ++i) {
            k_genutil::Text count(std::to_string(i));
            if (FAILED(gauge->Gauge(count.inOut(), short(i / (calls / 100)))))
                state.SkipWithError("Gauge failed");
        }
        k_genutil::Text none("");
        gauge->Gauge(none.inOut(), 0); // the last percentage outlives the window
        gauge->GaugeRemove();
    }
    state.SetItemsProcessed(state.iterations() * calls);
}

template<bool eventsWithEveryCall>
void progressDialogOfTheToolkit(benchmark::State& state) {
    for (auto _ : state) {
        QProgressDialog dialog("Observation", QString(), 0, 100);
        dialog.setMinimumDuration(0);
        dialog.setAutoClose(false);
        dialog.show();
        int shown = 0;
        for (int i = 1; i <= calls; ++i) {
            const int perCent = i / (calls / 100);
            dialog.setLabelText("Observation " + QString::fromStdString(std::to_string(i)));
            dialog.setValue(perCent);
            if (eventsWithEveryCall || perCent > shown)
                QCoreApplication::processEvents();
            shown = perCent;
        }
    }
    state.SetItemsProcessed(state.iterations() * calls);
}

// Keeps the medians and prints them per call with their ratio to the component's gauge.
class RatioReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                microseconds_.emplace_back(
                    run.run_name.function_name, run.GetAdjustedRealTime() * 1000 / calls);
    }
    void Finalize() override {
        for (const auto& [name, time] : microseconds_)
            std::printf("%-52s %9.3f us a call   %6.1f x the gauge\n", name.c_str(), time,
                time / microseconds_.front().second);
    }

private:
    std::vector<std::pair<std::string, double>> microseconds_;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    for (auto* subject : {
             benchmark::RegisterBenchmark("cProgress::Gauge", gaugeOfTheComponent),
             benchmark::RegisterBenchmark(
                 "QProgressDialog, events when the percentage moves", progressDialogOfTheToolkit<false>),
             benchmark::RegisterBenchmark(
                 "QProgressDialog, events with every call", progressDialogOfTheToolkit<true>),
         })
        subject->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond)->ReportAggregatesOnly();
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
