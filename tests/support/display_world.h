#pragma once

#include "display/display_boxes.h"
#include "support/fake_files.h"
#include "support/fake_host.h"
#include "support/scripted_desktop.h"

namespace genutil::fake {

// A part of the main window that notes what is written to it.
struct PlotPart : FakeRecord {
    std::string name;
    std::vector<std::string>& written;

    PlotPart(std::string partName, std::vector<std::string>& log) : name(std::move(partName)), written(log) {}
    void write(std::string_view member, const Value& value) override {
        written.push_back(name + "." + std::string(member) + (value.toBool() ? "=1" : "=0"));
        FakeRecord::write(member, value);
    }
};

// A host that knows of geoids, with a View menu.
struct DisplayWorld {
    struct Host : FakeHost {
        bool usesGeoid = false, hasGeoidFile = false;

        std::unique_ptr<GeneralProcedures> createGeneralProcedures() override {
            struct Procedures : FakeGeneralProcedures {
                using FakeGeneralProcedures::FakeGeneralProcedures;
                Host& geoids() { return static_cast<Host&>(host); }
                bool JobUsesGeoid(const RecordPtr&, const RecordPtr&, bool) override {
                    return geoids().usesGeoid;
                }
                bool GeoidFileDefined(const RecordPtr&) override { return geoids().hasGeoidFile; }
            };
            return std::make_unique<Procedures>(*this);
        }
    };

    Host host;
    FakeFiles files;
    ScriptedDesktop desktop;
    Component component{desktop, files, host};
    std::vector<std::string> written;
    std::shared_ptr<FakeRecord> mainForm = std::make_shared<FakeRecord>();
    RecordPtr IHelp = record({{"InstantHelpOn", true}});
    RecordPtr prog = programObject();
    RecordPtr jobCfg = record({{"GeodeticDisplays", true}, {"NoLinearScale", false}});

    DisplayWorld() {
        for (const DisplayBox& box : displayBoxes())
            check(box.menuItem, false);
        mainForm->children["picScaleBar"] = std::make_shared<PlotPart>("picScaleBar", written);
    }
    static RecordPtr record(std::map<std::string, Value, std::less<>> values) {
        return std::make_shared<FakeRecord>(std::move(values));
    }
    void check(const std::string& menuItem, bool checked) {
        const auto part = std::make_shared<PlotPart>(menuItem, written);
        part->values["Checked"] = checked;
        mainForm->children[menuItem] = part;
    }
};

} // namespace genutil::fake
