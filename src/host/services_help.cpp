#include "host/late_bound.h"
#include "host/services.h"

#include <map>

namespace kestal {
namespace {

struct TopicRange {
    int first = 0;
    int last = -1;
    bool contains(int topic) const { return first <= topic && topic <= last; }
};

// instantHelp: explains what is under the pointer, beside the form. Each form has an object of its own; the
// on/off choice belongs to the program.
class InstantHelp : public AutomationObject {
public:
    explicit InstantHelp(HostPtr host) : AutomationObject("k_genproc.instantHelp"), host_(std::move(host)) {
        property(
            "InstantHelpOn", [this] { return Variant(host_->instantHelpOn); },
            [this](const VARIANT& value) { host_->instantHelpOn = truthOf(value); });
        method(
            "SetupHelp", [this](IDispatch*, std::int32_t firstTopic, std::int32_t lastTopic,
                             std::int32_t firstShared, std::int32_t lastShared, const std::string& source) {
                own_ = {firstTopic, lastTopic};
                shared_ = {firstShared, lastShared};
                useSource(QString::fromStdString(source));
            });
        method(
            "ShowControlHelp", [this](IDispatch* form, IDispatch* control) { showControl(form, control); });
        method("ShowFormHelp", [this](IDispatch* form) { show(topicOf(form)); });
        method("AttachComboLabel", [this](IDispatch* label, IDispatch* comboBox) {
            topicOfLabel_[textOf(LateBound(label).get("Name"))] = topicOf(comboBox);
        });
    }

private:
    static int topicOf(IDispatch* object) {
        const LateBound owner(object);
        return owner.has("HelpContextID") ? int32Of(owner.get("HelpContextID")) : 0;
    }

    void useSource(const QString& source) {
        if (source.isEmpty() || source == host_->paths.help)
            return;
        texts_ = HelpTexts::load(source);
        for (const QString& fault : texts_->faults())
            host_->log.write("Help: " + fault);
    }

    // A control without a topic of this form shows the form's.
    void showControl(IDispatch* form, IDispatch* control) {
        const auto label = topicOfLabel_.find(textOf(LateBound(control).get("Name")));
        const int topic = label == topicOfLabel_.end() ? topicOf(control) : label->second;
        show(own_.contains(topic) || shared_.contains(topic) ? topic : topicOf(form));
    }

    void show(int number) {
        const HelpTopic* const topic = (texts_ ? *texts_ : host_->help).find(number);
        if (topic)
            host_->showInstantHelp(topic->title, topic->text);
    }

    HostPtr host_;
    std::optional<HelpTexts> texts_; // of another source than the program's own
    TopicRange own_;
    TopicRange shared_;
    std::map<std::string, int> topicOfLabel_;
};

} // namespace

Ref<IDispatch> makeInstantHelp(const HostPtr& host) {
    return Ref<IDispatch>::adopt(new InstantHelp(host));
}

} // namespace kestal
