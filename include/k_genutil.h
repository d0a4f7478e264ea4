#pragma once

// All that a host needs of the component "Kestal general utilities".
//
//     #include <k_genutil.h>
//
//     auto gauge = k_genutil::createObject<k_genutil::_cProgress>(k_genutil::classes::cProgress.progId);
//     k_genutil::Text title("Network adjustment"), label("Iteration ");
//     if (FAILED(gauge->GaugeSetup(title.inOut(), label.inOut())))
//         ... description and source: the library's GetErrorInfo
//
// automation.h  the binary interface (the system's own headers on Windows)
// interfaces.h  class, interface and host class identifiers; the dual interfaces
// exports.h     what the library exports
// support.h     owners of automation texts, variants and objects
// activation.h  the registry file and the loading of in-process servers (the system's own service on Windows)

#include "k_genutil/automation.h"
#include "k_genutil/exports.h"
#include "k_genutil/interfaces.h"
#include "k_genutil/support.h"

#if !defined(_WIN32)
#include "k_genutil/activation.h"
#endif
