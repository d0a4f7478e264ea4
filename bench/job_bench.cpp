// How long the list of a folder's jobs takes: every job is opened, read and shown in its row, by the real
// engines and a host that costs next to nothing.
//
//   job_bench FOLDER/ [TIMES]     prints the number of jobs, of reports, and the fastest time's seconds: of
//   the
//                                 processor, of the clock
//   job_bench FOLDER/ reports     prints what was reported instead

#include "joblist/job_discovery.h"
#include "platform/database/database_engine.h"
#include "support/job_world.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>

using namespace genutil;

namespace {

struct LightHost : fake::JobHost {
    std::unique_ptr<SystemInfo> createSystemInfo() override {
        return std::make_unique<fake::FakeSystemInfo>(*this);
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER/ [TIMES | reports]\n", argv[0]);
        return 2;
    }
    const int times = argc > 2 ? std::atoi(argv[2]) : 1;
    const auto engine = makeDatabaseEngine();
    double fastest = std::numeric_limits<double>::max(), least = fastest;
    for (int time = 0; time < std::max(times, 1); ++time) {
        LightHost host;
        fake::FakeFiles files;
        fake::ScriptedDesktop desktop;
        Component component(desktop, files, host, engine.get());
        JobTable table(component);
        JobDiscovery discovery(component, table);
        discovery.thisJob = std::make_shared<fake::FakeRecord>(std::map<std::string, Value, std::less<>>{
            {"JobPath", argv[1]}, {"JobName", ""}, {"JobExtension", ""}});
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t used = std::clock();
        discovery.CompileListOfJobs();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        fastest = std::min(fastest, taken.count());
        least = std::min(least, double(std::clock() - used) / CLOCKS_PER_SEC);
        if (times == 0)
            for (const std::string& report : host.log)
                std::puts(report.c_str());
        else if (time == times - 1)
            std::printf("%d %zu %.4f %.4f\n", table.jobCount, host.log.size(), least, fastest);
    }
}
