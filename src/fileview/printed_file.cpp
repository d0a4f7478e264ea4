#include "fileview/printed_file.h"

#include "hostif/program.h"
#include "text/ascii.h"

namespace genutil {

bool isRichText(std::string_view file) {
    return text::endsWithIgnoringCase(file, ".RTF");
}

text::TextDocument readReport(
    FileSystem& files, const std::string& path, const std::optional<std::string>& encoding) {
    const auto source = files.openFile(path);
    return text::TextDocument::load(*source, files.codePages(), encoding);
}

PrintedReport printedReport(Component& component, const RecordPtr& prog, FileProcedures& fileProcs,
    const std::string& file, const PrintedLines& lines, PageOrientation orientation) {
    return {.lines = lines,
        .header = pageHeader(prog->get(program::VersionText), file, fileProcs.FileDate(file, 0, true, 1),
            component.desktop().localTime()),
        .font = reportFont(isWideReport(file)),
        .orientation = orientation,
        .title = file.substr(file.find_last_of('/') + 1)};
}

} // namespace genutil
