#pragma once

#include "host/commands.h"
#include "host/services.h"

namespace kestal {

class ComponentAccess;
class CurrentJob;

// The commands that deal with jobs. Each returns the exit code.

/// Writes the jobs of a folder to the standard output stream.
int runJobs(const CommandLine& line, const HostPtr& host, ComponentAccess& component);
/// Shows the list of jobs; the path of the job that is chosen goes to the standard output stream.
int runJobList(const CommandLine& line, const HostPtr& host, ComponentAccess& component);
/// Makes an empty job.
int runNewJob(const CommandLine& line, const HostPtr& host);

/// The job of the option --job, opened; none without the option.
CurrentJob openedJob(const CommandLine& line, Host& host);

} // namespace kestal
