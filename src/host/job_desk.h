#pragma once

#include "host/component_access.h"
#include "host/current_job.h"

#include <functional>

namespace kestal {

/// The user's work with jobs: one is open or none. The job that was open last is remembered in the settings,
/// and its folder becomes the data folder. What fails throws, with a text for the user, and leaves the open
/// job.
class JobDesk {
public:
    JobDesk(HostPtr host, ComponentAccess& component) : host_(std::move(host)), component_(component) {}

    const CurrentJob& current() const { return current_; }
    void open(const QString& file);
    /// Makes an empty job and opens it. Refuses the name of a file that exists.
    void create(const QString& file);
    void close();
    /// Opens the job that was open last, if it still is there and the preferences want it; what is wrong with
    /// it is only logged.
    void reopenLast();
    /// Shows the list of jobs and opens the one that is chosen.
    void chooseFromList(IDispatch* mainForm);

    /// Called when another job is open, or none.
    std::function<void()> changed;

private:
    void take(const QString& file);
    void remember(const QString& file);

    HostPtr host_;
    ComponentAccess& component_;
    CurrentJob current_;
};

} // namespace kestal
