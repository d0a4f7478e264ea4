// A host that computes: it shows the component's gauge and never handles an event of its own. It does what
// the lines of its standard input say, and answers each with "done" when the call has returned.
//   setup TITLE | gauge COUNT PERCENT | burst FIRST LAST | other TITLE | remove

#include <k_genutil.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>

using namespace k_genutil;

namespace {

Ref<_cProgress> makeGauge(const Server& server) {
    Ref<_cProgress> gauge;
    if (FAILED(server.create(classes::cProgress.clsid, iidOf<_cProgress>, reinterpret_cast<void**>(gauge.inOut()))))
        std::exit(2);
    return gauge;
}

bool call(_cProgress* gauge, const std::string& count, short percent) {
    Text text(count);
    return SUCCEEDED(gauge->Gauge(text.inOut(), percent));
}

} // namespace

int main() {
    Server server = Server::load(std::getenv("K_GENUTIL_LIBRARY"));
    Ref<_cProgress> gauge = makeGauge(server), other;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string command, first;
        words >> command;
        bool ok = true;
        if (command == "setup" || command == "other") {
            std::getline(words >> std::ws, first);
            if (command == "other")
                other = makeGauge(server);
            Text title(first), label("Iteration ");
            ok = SUCCEEDED((command == "other" ? other : gauge)->GaugeSetup(title.inOut(), label.inOut()));
        } else if (command == "gauge") {
            int percent = 0;
            words >> first >> percent;
            ok = call(gauge.get(), first, static_cast<short>(percent));
        } else if (command == "burst") {
            int from = 0, to = 0;
            for (words >> from >> to; from <= to; ++from)
                ok = ok && call(gauge.get(), std::to_string(from), static_cast<short>(from));
        } else if (command == "remove") {
            ok = SUCCEEDED(gauge->GaugeRemove());
        }
        std::cout << (ok ? "done" : "failed") << std::endl;
    }
    other = {};
    gauge = {};
}
