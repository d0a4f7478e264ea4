#pragma once

#include "platform/qt/print/paper_queue.h"

#include <memory>
#include <string>

class QPagedPaintDevice;

namespace genutil {

// What a document is painted on, with the steps that open and end it. Takes one document. Failures throw
// Error with DeviceError.
class Paper {
public:
    // The toolkit takes a font in whole dots: of these, every fifth of a point is five.
    static constexpr int dotsPerInch = 1800;

    virtual ~Paper() = default;
    virtual QPagedPaintDevice& device() = 0;
    // Names the document from its beginning on.
    virtual void setTitle(const std::string& title) = 0;
    // Before the document is painted.
    virtual void open() = 0;
    // Call after painting: prints the document, or puts the file in its place. Without it nothing remains of
    // the document.
    virtual void finish() = 0;
};

// Writes the file whole or not at all.
std::unique_ptr<Paper> makePdfPaper(const std::string& path);
std::unique_ptr<Paper> makeQueuePaper(const std::string& printer, const JobOptions& options);

} // namespace genutil
