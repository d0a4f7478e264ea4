#pragma once

#include "fileview/report_print.h"
#include "frame/component.h"
#include "text/text_document.h"

#include <optional>
#include <string>
#include <string_view>

// What becomes of a file when it is printed.
namespace genutil {

// By the file's extension. Rich text is not printed.
bool isRichText(std::string_view file);
inline constexpr const char* richTextIsNotPrinted = "Rich text is not printed.";

// The text of a file as it is on disk now. Throws what opening and reading met.
text::TextDocument readReport(
    FileSystem& files, const std::string& path, const std::optional<std::string>& encoding = std::nullopt);

// The lines as the report of this name. `fileProcs` tells the file's date, `prog` the program's version.
PrintedReport printedReport(Component& component, const RecordPtr& prog, FileProcedures& fileProcs,
    const std::string& file, const PrintedLines& lines, PageOrientation orientation);

} // namespace genutil
