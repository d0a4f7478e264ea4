#pragma once

#include "host/host.h"

#include <functional>
#include <memory>
#include <vector>

namespace kestal {

using HostPtr = std::shared_ptr<Host>;

/// A class that the host offers to the component.
struct ServiceClass {
    k_genutil::ClassName name;
    std::function<Ref<IDispatch>(const HostPtr&)> create;
};

/// All of them: the services of k_genproc and the records of k_gencvf.
const std::vector<ServiceClass>& serviceClasses();

// One maker per service. The member names and their arguments stand in the constructors.
Ref<IDispatch> makeErrHandler(const HostPtr& host);
Ref<IDispatch> makeGenProcs(const HostPtr& host);
Ref<IDispatch> makeStrUtil(const HostPtr& host);
Ref<IDispatch> makeFileProcs(const HostPtr& host);
Ref<IDispatch> makeRegInfo(const HostPtr& host);
Ref<IDispatch> makeSysInfo(const HostPtr& host);
Ref<IDispatch> makeDispFormats(const HostPtr& host);
Ref<IDispatch> makeInterpNames(const HostPtr& host);
Ref<IDispatch> makeSettingsStore(const HostPtr& host);
Ref<IDispatch> makeInstantHelp(const HostPtr& host);

} // namespace kestal
