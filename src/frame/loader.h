#pragma once

#include "frame/component.h"
#include "frame/error_boundary.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace genutil {

// The life of a public class: `ClassActive` from creation to destruction, and `SetBlank`, which changes
// nothing.
class LoaderBase {
public:
    LoaderBase(Component& component, std::string className)
        : component_(component), className_(std::move(className)) {}
    ~LoaderBase() { ClassActive = false; }
    LoaderBase(const LoaderBase&) = delete;
    LoaderBase& operator=(const LoaderBase&) = delete;

    // For the host alone; nothing inside the component reads it.
    bool ClassActive = true;

    void SetBlank() {}

    // "(Class Module) cFileViewLoader::Sub LoadFileViewForm" and the like; without a kind the name stands
    // alone.
    std::string qualifiedName(std::string_view procedureName, std::string_view kind = "Sub") const {
        return ("(Class Module) " + className_ + "::")
            .append(kind)
            .append(kind.empty() ? "" : " ")
            .append(procedureName);
    }

protected:
    Component& component() const { return component_; }

    template<class Body>
    std::invoke_result_t<Body> run(
        std::string_view procedureName, Body&& body, std::string_view kind = "Sub") {
        return procedure(
            component_, [&] { return qualifiedName(procedureName, kind); }, std::forward<Body>(body));
    }

private:
    Component& component_;
    std::string className_;
};

// The common shape of a Load…Form operation: a new form replaces the earlier one, is given its inputs, sets
// itself up and shows itself; its results are copied back; a modal form is then released.
template<class FormType>
class FormLoader : public LoaderBase {
public:
    using LoaderBase::LoaderBase;

    // The form held now: after a modeless load, until the next one. Null when idle.
    const std::shared_ptr<FormType>& form() const { return form_; }

protected:
    // prepare(form) sets the inputs, setUp(form) ends by showing the form, collect(form) copies the results.
    template<class Prepare, class SetUp, class Collect>
    void load(Prepare&& prepare, SetUp&& setUp, Collect&& collect) {
        form_ = std::make_shared<FormType>(component());
        const auto current = form_; // a nested load on the same loader may replace the member
        try {
            prepare(*current);
            setUp(*current);
            collect(*current);
        } catch (...) {
            // A form that failed to set itself up was never shown and is of no use to anyone.
            if (!current->isShown())
                form_.reset();
            throw;
        }
        if (current->modal == 1)
            form_.reset();
    }

    std::shared_ptr<FormType> form_;
};

} // namespace genutil
