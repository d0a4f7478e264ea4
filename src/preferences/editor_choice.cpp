#include "preferences/editor_choice.h"

#include "hostif/program.h"
#include "text/blanks.h"

namespace genutil {

std::string editorWithoutSwitches(const std::string& stored) {
    return stored.substr(0, stored.find(switchSeparator));
}

FileDialog editorDialog(GeneralProcedures& genProcs, const Record& prog, const std::string& editor) {
    FileDialog dialog;
    dialog.title = "Select File";
    dialog.filter = "*.EXE, *.LNK, *.PIF|*.EXE; *.LNK; *.PIF|All files (*.*)|*.*|";
    std::string folder(text::trimBlanks(editor));
    if (!folder.empty()) {
        std::string file, drive;
        const std::string path = folder;
        genProcs.SplitPath(path, file, folder, drive);
        if (genProcs.FileExists(path)) {
            dialog.folder = drive + folder;
            dialog.fileName = file;
            return dialog;
        }
    }
    if (prog.get(program::IsWin9xFamily))
        folder = "C:\\Program Files\\Accessories\\";
    else if (prog.get(program::IsWinNTFamily))
        folder = "C:\\Program Files\\Windows NT\\Accessories\\";
    constexpr const char* usual = "WordPad.exe";
    const bool isThere = genProcs.FileExists(folder + usual);
    dialog.folder = isThere ? folder : prog.get(program::WindowsFolder);
    dialog.fileName = isThere ? usual : "NotePad.exe";
    return dialog;
}

} // namespace genutil
