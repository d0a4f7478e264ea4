#include "fileview/change_notice.h"

#include "hostif/form.h"

namespace genutil {

ChangeNotice::ChangeNotice(Form& form, FileSystem& files)
    : pnlNotice(form, "pnlNotice"), lblNotice(form, "lblNotice", ""), cmdReload(form, "cmdReload", "&Reload"),
      cmdIgnore(form, "cmdIgnore", "&Ignore"), form_(form), files_(files) {
    pnlNotice.visible = false;
    cmdReload.toolTip = "Read the file again (F5)";
    cmdIgnore.toolTip = "Keep the text that is shown";
}

void ChangeNotice::follow(
    const std::string& path, std::optional<FileStamp> state, std::function<void()> changed) {
    own_ = known_ = state;
    pnlNotice.visible = false;
    // The watch's own handler may call this, so the watch is replaced only when another file is to be
    // watched.
    if (!watch_ || path_ != path)
        watch_ = form_.desktop().watchFile(path, std::move(changed));
    path_ = path;
}

void ChangeNotice::forget() {
    pnlNotice.visible = false;
    watch_.reset();
    own_.reset();
    known_.reset();
    path_.clear();
}

void ChangeNotice::look() {
    if (path_.empty())
        return;
    const auto now = files_.stampOf(path_);
    const bool differs = now != known_;
    if (differs)
        lblNotice.caption = now ? "This file has changed on disk." : "This file is no longer there.";
    cmdReload.enabled = now.has_value();
    pnlNotice.visible = differs;
}

void ChangeNotice::ignore() {
    known_ = files_.stampOf(path_);
    pnlNotice.visible = false;
}

bool ChangeNotice::isOverwriteOfOthers(const std::string& path) const {
    const auto now = files_.stampOf(path);
    return now && (path != path_ || now != own_);
}

} // namespace genutil
