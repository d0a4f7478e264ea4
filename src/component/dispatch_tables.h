#pragma once

#include "component/invoke.h"

namespace genutil::tables {

// The members of each dual interface in slot order; k_genutil.idl says the same to other languages.

template<class Interface, class... Members>
consteval auto loaderTable(Members... members) {
    return memberTable(get<&Interface::get_ClassActive>("ClassActive", VT_BOOL),
        put<&Interface::put_ClassActive>("ClassActive", VT_BOOL), members...);
}

template<class Interface>
consteval Member setBlank() {
    return method<&Interface::SetBlank>("SetBlank");
}

template<class Interface>
inline constexpr int dispatchTable = 0;

template<>
inline constexpr auto
    dispatchTable<k_genutil::_cInternalBrowserLoader> = loaderTable<k_genutil::_cInternalBrowserLoader>(
        method<&k_genutil::_cInternalBrowserLoader::LoadForm>("LoadForm", text("HTMLfile")));

template<>
inline constexpr auto dispatchTable<k_genutil::_cFileViewLoader> = loaderTable<k_genutil::_cFileViewLoader>(
    method<&k_genutil::_cFileViewLoader::LoadFileViewForm>("LoadFileViewForm", boolean("instantHelp"),
        boolean("setModal"), integer("ViewMode"), text("FileToView"), object("prog"), text("defEditor"),
        optional(boolean("formCancelled")), optional(object("rtbTextViewer"))),
    setBlank<k_genutil::_cFileViewLoader>());

template<>
inline constexpr auto dispatchTable<k_genutil::_cProgress> = loaderTable<k_genutil::_cProgress>(
    method<&k_genutil::_cProgress::Gauge>("Gauge", text("incrNo"), integer("perCent")),
    method<&k_genutil::_cProgress::GaugeRemove>("GaugeRemove"),
    method<&k_genutil::_cProgress::GaugeSetup>("GaugeSetup", text("title"), text("incrLabel")));

template<>
inline constexpr auto dispatchTable<k_genutil::_cJobListLoader> = loaderTable<k_genutil::_cJobListLoader>(
    function<&k_genutil::_cJobListLoader::LoadJobListForm>("LoadJobListForm", object("jobSelected"),
        object("IHelp"), object("prog"), object("jobDetails"), object("currentJob"), object("mainForm"),
        boolean("showExt"), object("jobDB"), object("jobDetailsRset"), object("jobCfg"),
        object("jobGeneral")),
    setBlank<k_genutil::_cJobListLoader>());

template<>
inline constexpr auto dispatchTable<k_genutil::_cDefaultsLoader> = loaderTable<k_genutil::_cDefaultsLoader>(
    function<&k_genutil::_cDefaultsLoader::LoadDefaultsForm>("LoadDefaultsForm", object("IHelp"),
        object("prog"), object("currentJob"), object("mainForm"), object("genPrefs"), object("LSOptPrefs")),
    setBlank<k_genutil::_cDefaultsLoader>());

template<>
inline constexpr auto dispatchTable<k_genutil::_cLS_OptsLoader> = loaderTable<k_genutil::_cLS_OptsLoader>(
    method<&k_genutil::_cLS_OptsLoader::LoadLSOptionsForm>("LoadLSOptionsForm", boolean("instantHelp"),
        integer("optionsMode"), boolean("optionsSaved"), object("LSOptPref"), object("prog"),
        optional(object("dataHeaderTable")), optional(object("LSOptPrefDefaults")),
        optional(integer("dataNumMode"))),
    setBlank<k_genutil::_cLS_OptsLoader>());

template<>
inline constexpr auto dispatchTable<k_genutil::_cDisplayLoader> = loaderTable<k_genutil::_cDisplayLoader>(
    function<&k_genutil::_cDisplayLoader::LoadDisplaySettingsForm>("LoadDisplaySettingsForm", object("IHelp"),
        object("mainForm"), object("prog"), object("jobPlot"), object("jobCfg"), object("jobGeneral"),
        boolean("alphasExist")),
    setBlank<k_genutil::_cDisplayLoader>());

template<>
inline constexpr auto
    dispatchTable<k_genutil::_cLS_SaveOptsLoader> = loaderTable<k_genutil::_cLS_SaveOptsLoader>(
        method<&k_genutil::_cLS_SaveOptsLoader::LoadLSSaveOptsForm>("LoadLSSaveOptsForm",
            boolean("instantHelp"), integer("optionsMode"), boolean("optionsSaved"), object("LSOptPref"),
            object("prog"), optional(object("dataHeaderTable")), optional(object("LSOptPrefDefaults"))),
        setBlank<k_genutil::_cLS_SaveOptsLoader>());

} // namespace genutil::tables
