#include "browser/frm_internal_browser.h"
#include "display/frm_display.h"
#include "fileview/frm_file_view.h"
#include "joblist/frm_job_list.h"
#include "lsoptions/frm_ls_options.h"
#include "lsoptions/frm_ls_save_options.h"
#include "preferences/frm_defaults.h"
#include "support/fake_files.h"
#include "support/fake_host.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>

using namespace genutil;

namespace {

std::set<int> numbersIn(const std::string& file, const char* pattern) {
    std::ifstream stream(GENUTIL_HELP "/" + file);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    const std::regex topic(pattern);
    std::set<int> numbers;
    for (std::sregex_iterator found(text.begin(), text.end(), topic), end; found != end; ++found)
        numbers.insert(std::stoi((*found)[1]));
    return numbers;
}

template<class... Forms>
std::map<int, std::string> topicsOf(Component& component) {
    std::map<int, std::string> topics;
    const auto add = [&](const std::shared_ptr<Form>& form) {
        if (form->helpContextId != 0)
            topics[form->helpContextId] = form->name();
        for (const Control* control : form->controls())
            if (control->helpContextId != 0)
                topics[control->helpContextId] = form->name() + "." + control->name();
        form->unload();
    };
    (add(std::make_shared<Forms>(component)), ...);
    return topics;
}

TEST(Help, HasATextAndAPlaceInTheManualForEveryTopicOfEveryDialog) {
    fake::FakeHost host;
    fake::FakeFiles files;
    fake::ScriptedDesktop desktop;
    Component component{desktop, files, host};
    const std::set<int> texts = numbersIn("kestal-help.txt", "(?:^|\n)\\[([0-9]+)\\] ");
    const std::set<int> places = numbersIn("manual.html", "id=\"topic-([0-9]+)\"");
    auto topics = topicsOf<frmDefaults, frmDisplay, frmFileView, frmInternal_Browser, frmJobList,
        frmLS_Options, frmLS_SaveOptions>(component);
    EXPECT_GE(topics.size(), 50u);
    for (const int page : {900, 1400, 1800, 2100, 8300, 8600}) // of forms that name theirs as they are set up
        topics[page] = "a form";
    for (const auto& [topic, control] : topics) {
        EXPECT_TRUE(texts.contains(topic)) << "text of " << topic << ", " << control;
        EXPECT_TRUE(places.contains(topic)) << "place of " << topic << ", " << control;
    }
}

} // namespace
