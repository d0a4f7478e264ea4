// Prints a text file to a PDF file the way the viewer does, without a window.
#include "fileview/report_print.h"
#include "hostif/error.h"
#include "platform/qt/qt_printer.h"

#include <QGuiApplication>

#include <fstream>
#include <iostream>
#include <iterator>

int main(int argc, char** argv) {
    using namespace genutil;
    if (argc != 3) {
        std::cerr << "usage: print_bench FILE PDF\n";
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    std::ifstream file(argv[1], std::ios::binary);
    const auto document =
        text::TextDocument::fromBytes(std::string(std::istreambuf_iterator<char>(file), {}));
    const bool wide = isWideReport(argv[1]);
    try {
        const auto printer = makePdfPrinter(argv[2]);
        printer->setPage({.orientation = orientationFor(wide)});
        const PrintOutcome outcome = printReport(*printer,
            {.lines = allLines(document),
                .header = argv[1],
                .font = reportFont(wide),
                .orientation = orientationFor(wide)},
            [](std::size_t, std::size_t) { return true; });
        std::cout << outcome.pageCount << " pages\n";
    } catch (const Error& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
