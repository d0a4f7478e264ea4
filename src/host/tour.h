#pragma once

#include "host/component_access.h"

#include <QString>

class QImage;

namespace kestal {

/// Plays every dialog, saves a picture of each in the folder and prints a line for each. False when one of
/// them failed or came out blank. Ends the program after two minutes, whatever hangs.
bool runTour(const HostPtr& host, ComponentAccess& component, const QString& folder);

/// The share of the pixels that do not have the most frequent colour: 0 for a blank picture.
double inkShare(const QImage& image);

} // namespace kestal
