// How long the list of a folder's jobs takes: every job is opened, read and shown in its row, by the real
// engines and a host that costs next to nothing.
//
//   job_bench FOLDER/ [TIMES [MEMORY]]   prints the number of jobs, of reports, and the fastest time's
//   seconds: of the
//                                        processor, of the clock; with MEMORY, a file, what was read is kept
//                                        there
//   job_bench FOLDER/ reports            prints what was reported instead

#include "joblist/job_discovery.h"
#include "platform/database/memory/database_memory.h"
#include "support/job_world.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>

using namespace genutil;

namespace {

// The members of all three records, in the order in which they are read.
class LightRecord : public Record {
public:
    LightRecord() {
        for (const JobField& field : jobFields())
            std::visit([this]<class T>(const Property<T>&) { values_.emplace_back(T()); }, field.member);
    }

    Value read(std::string_view member) const override { return values_[indexOf(member)]; }
    void write(std::string_view member, const Value& value) override { values_[indexOf(member)] = value; }
    RecordPtr child(std::string_view) const override { return nullptr; }
    RecordPtr Clone() const override { return std::make_shared<LightRecord>(*this); }
    void CopyFrom(const Record& other) override { *this = dynamic_cast<const LightRecord&>(other); }

private:
    std::size_t indexOf(std::string_view member) const {
        for (std::size_t tried = 0; tried < values_.size(); ++tried, next_ = (next_ + 1) % values_.size())
            if (jobFields()[next_].name() == member)
                return next_;
        throw Error(errors::NoSuchMember, std::string(member));
    }

    std::vector<Value> values_;
    mutable std::size_t next_ = 0; // where the search begins
};

struct LightHost : fake::JobHost {
    RecordPtr createRecord(const std::string&) override { return std::make_shared<LightRecord>(); }
    std::unique_ptr<SystemInfo> createSystemInfo() override {
        return std::make_unique<fake::FakeSystemInfo>(*this);
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER/ [TIMES [MEMORY] | reports]\n", argv[0]);
        return 2;
    }
    const int times = argc > 2 ? std::atoi(argv[2]) : 1;
    const auto engine = makeDatabaseEngine();
    double fastest = std::numeric_limits<double>::max(), least = fastest;
    for (int time = 0; time < std::max(times, 1); ++time) {
        LightHost host;
        fake::FakeFiles files;
        fake::ScriptedDesktop desktop;
        const auto memory = argc > 3 ? makeDatabaseMemory([&] { return std::string(argv[3]); }) : nullptr;
        Component component(desktop, files, host, engine.get(), memory.get());
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
