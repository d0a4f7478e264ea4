#include "joblist/job_names.h"

#include "hostif/program.h"
#include "joblist/job_errors.h"
#include "text/letters.h"
#include "text/utf8.h"

namespace genutil {

std::string upperCase(std::string_view name) {
    std::string upper;
    upper.reserve(name.size());
    for (std::size_t at = 0; at < name.size();) {
        const text::DecodedCharacter next = text::decodeUtf8(name, at);
        const char32_t folded = text::foldCase(next.codePoint);
        if (!next.valid)
            upper += name.substr(at, next.length); // another encoding's bytes still tell names apart
        else if (folded >= U'a' && folded <= U'z')
            upper += static_cast<char>(folded - U'a' + U'A');
        else
            text::appendUtf8(upper, folded);
        at += next.length;
    }
    return upper;
}

std::string trimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

void GetJobnameParts(Component& component, Record& thisJob, const std::string& fileName) {
    jobListProcedure(component, "GetJobnameParts", [&] {
        const std::size_t dot = fileName.find('.');
        if (dot == std::string::npos)
            return;
        thisJob.put(job::JobExtension, fileName.substr(dot));
        thisJob.put(job::JobName, fileName.substr(0, dot));
    });
}

} // namespace genutil
