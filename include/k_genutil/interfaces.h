#pragma once

// The public classes of the component: identifiers, and the dual interfaces in their fixed slot order.
//
// Arguments are passed by reference for reading and writing unless they are plain `short`. A host object is
// an `IDispatch**`: the reference may be replaced by the call (the earlier object is released and the new one
// belongs to the caller), and a null object means Nothing. An optional argument that is omitted is a null
// pointer; every other argument pointer must be valid, else the call answers E_POINTER. A function's result
// is the last parameter. A failing call answers 0x800A0000 + error number; GetErrorInfo then gives its
// description and source.

#include "k_genutil/automation.h"

namespace k_genutil {

/// A class as hosts name it.
struct ClassName {
    CLSID clsid;
    const char* progId;
};

inline constexpr GUID typeLibraryId{
    0x5B83862D, 0xDA33, 0x471C, {0x9E, 0x16, 0xAB, 0xD5, 0x88, 0x61, 0x95, 0x64}};
inline constexpr WORD typeLibraryMajor = 1;
inline constexpr WORD typeLibraryMinor = 0;

/// The component's creatable classes.
namespace classes {
inline constexpr ClassName cInternalBrowserLoader{
    {0x499480B3, 0xD042, 0x496B, {0xBD, 0x06, 0xF5, 0x7A, 0x0E, 0x8F, 0xB6, 0xC0}},
    "k_genutil.cInternalBrowserLoader"};
inline constexpr ClassName cFileViewLoader{
    {0xA65532E2, 0x583F, 0x4E65, {0x8A, 0x2E, 0x05, 0x07, 0xEF, 0xD9, 0xA6, 0x39}},
    "k_genutil.cFileViewLoader"};
inline constexpr ClassName cProgress{
    {0xAF3E2FAE, 0x65AE, 0x41F4, {0xAF, 0xBB, 0x2F, 0x27, 0xB4, 0x05, 0x9E, 0x24}}, "k_genutil.cProgress"};
inline constexpr ClassName cJobListLoader{
    {0x56F86606, 0x6044, 0x4BF5, {0x95, 0x24, 0x1D, 0xDB, 0x18, 0x4A, 0x5C, 0x89}},
    "k_genutil.cJobListLoader"};
inline constexpr ClassName cDefaultsLoader{
    {0x0EEF9E26, 0xA9B6, 0x4D10, {0xAA, 0xB8, 0xD7, 0xF9, 0x21, 0x71, 0x87, 0x17}},
    "k_genutil.cDefaultsLoader"};
inline constexpr ClassName cLS_OptsLoader{
    {0x4202CF77, 0x6E0E, 0x4520, {0xBE, 0xBF, 0x1E, 0x3E, 0x4C, 0x4C, 0x3E, 0x82}},
    "k_genutil.cLS_OptsLoader"};
inline constexpr ClassName cDisplayLoader{
    {0x1B8A61CB, 0x9E7A, 0x4D25, {0xBE, 0xE1, 0x10, 0xED, 0x61, 0xFF, 0xD5, 0x9F}},
    "k_genutil.cDisplayLoader"};
inline constexpr ClassName cLS_SaveOptsLoader{
    {0xFFB2FB47, 0x8FBA, 0x4DA9, {0xB0, 0x97, 0xED, 0xC1, 0x97, 0x8E, 0x43, 0xA5}},
    "k_genutil.cLS_SaveOptsLoader"};
} // namespace classes

/// Classes of the host's installation that the component creates, by class identifier. A host makes them
/// available by registering class factories in the process (CoRegisterClassObject of the component's library)
/// or as in-process servers of its own in the registry file.
namespace host_classes {
inline constexpr ClassName errHandler{
    {0x186C31D5, 0xA5A9, 0x479F, {0xA9, 0x1B, 0xC1, 0xD5, 0x57, 0x1F, 0x7F, 0x04}}, "k_genproc.errHandler"};
inline constexpr ClassName genProcs{
    {0x71353D2D, 0xAC6B, 0x4C86, {0xA1, 0x11, 0x89, 0x30, 0x9D, 0xC4, 0xD9, 0xEE}}, "k_genproc.genProcs"};
inline constexpr ClassName strUtil{
    {0xD8941303, 0xF7D1, 0x4BCB, {0x93, 0xB2, 0xA9, 0xE3, 0x26, 0x71, 0xF5, 0x66}}, "k_genproc.strUtil"};
inline constexpr ClassName fileProcs{
    {0xD32A3961, 0xA23C, 0x4CC0, {0xA9, 0xAA, 0x00, 0x15, 0x37, 0xFA, 0x8F, 0xFD}}, "k_genproc.fileProcs"};
inline constexpr ClassName regInfo{
    {0x64F305A4, 0xE757, 0x4CC4, {0xB1, 0xF1, 0x21, 0xCD, 0x6D, 0x44, 0xE5, 0xEE}}, "k_genproc.regInfo"};
inline constexpr ClassName sysInfo{
    {0x1CED321B, 0xBD89, 0x45E5, {0xB1, 0x9B, 0xE6, 0xD2, 0x4C, 0xAD, 0x41, 0xDF}}, "k_genproc.sysInfo"};
inline constexpr ClassName dispFormats{
    {0xE38376EC, 0x3309, 0x4972, {0xBC, 0xD2, 0x7A, 0x62, 0x56, 0x46, 0x1A, 0xEA}}, "k_genproc.dispFormats"};
inline constexpr ClassName interpNames{
    {0xAB97EBC5, 0x3B45, 0x4679, {0xAE, 0xFE, 0x69, 0x93, 0x0B, 0xBA, 0xFA, 0x73}}, "k_genproc.interpNames"};
inline constexpr ClassName instantHelp{
    {0xAF04A964, 0x3270, 0x4471, {0x97, 0x8E, 0x80, 0xCD, 0xEB, 0x35, 0xCC, 0x76}}, "k_genproc.instantHelp"};
inline constexpr ClassName settingsStore{
    {0x30301D6C, 0x3DA0, 0x4900, {0xA3, 0x36, 0x0C, 0xDE, 0x43, 0xA7, 0x3B, 0xE3}},
    "k_genproc.settingsStore"};
inline constexpr ClassName job{
    {0x636ABE2C, 0x6877, 0x4337, {0xA8, 0xC2, 0x3D, 0x93, 0x39, 0x8D, 0x4C, 0x4C}}, "k_gencvf.job"};
inline constexpr ClassName jobDetails{
    {0xF2EEB282, 0x2D4F, 0x4D1F, {0xB0, 0x3B, 0x4B, 0xD7, 0xCD, 0x37, 0xD9, 0x3A}}, "k_gencvf.jobDetails"};
inline constexpr ClassName jobCfg{
    {0x52D42FCD, 0xAEA7, 0x4693, {0x85, 0x39, 0x0D, 0xC0, 0xC2, 0xF0, 0x7F, 0x08}}, "k_gencvf.jobCfg"};
inline constexpr ClassName jobGeneral{
    {0xD53F33E2, 0xE3AE, 0x4A17, {0xA0, 0x92, 0x18, 0xA7, 0x0D, 0x96, 0xFA, 0x21}}, "k_gencvf.jobGeneral"};
} // namespace host_classes

/// The member identifiers of every interface are numbered in slot order; ClassActive's get and put share the
/// first.
inline constexpr DISPID dispidClassActive = 1;

/// What every public class has. `ClassActive` is True from creation.
struct ILoader : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_ClassActive(VARIANT_BOOL* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ClassActive(VARIANT_BOOL value) = 0;

protected:
    ~ILoader() = default;
};

/// Shows HTML pages in a browser window.
struct _cInternalBrowserLoader : ILoader {
    virtual HRESULT STDMETHODCALLTYPE LoadForm(BSTR* HTMLfile) = 0;

protected:
    ~_cInternalBrowserLoader() = default;
};

/// Shows a text or rich-text file.
/// `formCancelled` and `rtbTextViewer` are optional.
struct _cFileViewLoader : ILoader {
    virtual HRESULT STDMETHODCALLTYPE LoadFileViewForm(VARIANT_BOOL* instantHelp, VARIANT_BOOL* setModal,
        short* ViewMode, BSTR* FileToView, IDispatch** prog, BSTR* defEditor, VARIANT_BOOL* formCancelled,
        IDispatch** rtbTextViewer) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBlank() = 0;

protected:
    ~_cFileViewLoader() = default;
};

/// A further interface of cFileViewLoader, without a dialog: reports on paper, for programs that print in
/// batches.
struct _ReportPrinting : IUnknown {
    /// Prints a plain-text report into a PDF file, which appears whole or not at all. `orientation` is 1 for
    /// portrait, 2 for landscape, 0 for what the report's name asks for. Lines and pages are counted from 1;
    /// ranges include both ends, and a `to...` of 0 means the end. Pages are counted over the chosen lines.
    /// `pages` receives the number of pages printed, all copies together, and `cutOff` what was lost of long
    /// lines at the paper's right edge; empty if nothing was.
    virtual HRESULT STDMETHODCALLTYPE PrintToPdf(BSTR* FileToView, BSTR* pdfFile, IDispatch** prog,
        short orientation, LONG fromLine, LONG toLine, LONG fromPage, LONG toPage, short copies, LONG* pages,
        BSTR* cutOff) = 0;

protected:
    ~_ReportPrinting() = default;
};

/// A progress window over several calls: `GaugeSetup` opens it, `Gauge` advances it, `GaugeRemove` closes it.
struct _cProgress : ILoader {
    virtual HRESULT STDMETHODCALLTYPE Gauge(BSTR* incrNo, short perCent) = 0;
    virtual HRESULT STDMETHODCALLTYPE GaugeRemove() = 0;
    virtual HRESULT STDMETHODCALLTYPE GaugeSetup(BSTR* title, BSTR* incrLabel) = 0;

protected:
    ~_cProgress() = default;
};

/// Lists the jobs of the data folder; the result is True when the user chose a job.
struct _cJobListLoader : ILoader {
    virtual HRESULT STDMETHODCALLTYPE LoadJobListForm(IDispatch** jobSelected, IDispatch** IHelp,
        IDispatch** prog, IDispatch** jobDetails, IDispatch** currentJob, IDispatch** mainForm,
        VARIANT_BOOL* showExt, IDispatch** jobDB, IDispatch** jobDetailsRset, IDispatch** jobCfg,
        IDispatch** jobGeneral, VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBlank() = 0;

protected:
    ~_cJobListLoader() = default;
};

/// A further interface of cJobListLoader, without a dialog: the jobs of a folder as text, for programs that
/// print or export them.
struct _JobListing : IUnknown {
    /// Reads the jobs of a folder, whose path ends in a separator. Files that cannot be read are reported to
    /// errHandler and passed over. `prog` may be Nothing. `jobs` receives how many were read.
    virtual HRESULT STDMETHODCALLTYPE ReadFolder(BSTR* folder, IDispatch** prog, LONG* jobs) = 0;
    /// Writes what was read: `format` is "table", "tsv", "csv" or "json"; `sortColumn` is a column's title,
    /// case left aside, led by "-" for the reverse order, or "" for the order of the names. The columns are
    /// those that say most, or all 27.
    virtual HRESULT STDMETHODCALLTYPE Write(
        BSTR* format, BSTR* sortColumn, VARIANT_BOOL allColumns, BSTR* text) = 0;

protected:
    ~_JobListing() = default;
};

/// The same with more to choose from.
struct _JobListing2 : _JobListing {
    /// What WriteWith writes beyond the main columns of the jobs, added up. The columns of the files, "Size"
    /// and "Modified", can be sorted by without being written.
    enum Options : LONG { AllColumns = 1, FileColumns = 2, IsoDates = 4 };

    virtual HRESULT STDMETHODCALLTYPE WriteWith(BSTR* format, BSTR* sortColumn, LONG options, BSTR* text) = 0;

protected:
    ~_JobListing2() = default;
};

/// Edits the preferences; the result is True when they were saved.
struct _cDefaultsLoader : ILoader {
    virtual HRESULT STDMETHODCALLTYPE LoadDefaultsForm(IDispatch** IHelp, IDispatch** prog,
        IDispatch** currentJob, IDispatch** mainForm, IDispatch** genPrefs, IDispatch** LSOptPrefs,
        VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBlank() = 0;

protected:
    ~_cDefaultsLoader() = default;
};

/// Edits the least-squares adjustment options.
/// `dataHeaderTable`, `LSOptPrefDefaults` and `dataNumMode` (0 when omitted) are optional.
struct _cLS_OptsLoader : ILoader {
    virtual HRESULT STDMETHODCALLTYPE LoadLSOptionsForm(VARIANT_BOOL* instantHelp, short* optionsMode,
        VARIANT_BOOL* optionsSaved, IDispatch** LSOptPref, IDispatch** prog, IDispatch** dataHeaderTable,
        IDispatch** LSOptPrefDefaults, short* dataNumMode) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBlank() = 0;

protected:
    ~_cLS_OptsLoader() = default;
};

/// Edits the plot display settings; the result is True when they were changed.
struct _cDisplayLoader : ILoader {
    virtual HRESULT STDMETHODCALLTYPE LoadDisplaySettingsForm(IDispatch** IHelp, IDispatch** mainForm,
        IDispatch** prog, IDispatch** jobPlot, IDispatch** jobCfg, IDispatch** jobGeneral,
        VARIANT_BOOL* alphasExist, VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBlank() = 0;

protected:
    ~_cDisplayLoader() = default;
};

/// Edits the options for saving adjusted points.
/// `dataHeaderTable` and `LSOptPrefDefaults` are optional.
struct _cLS_SaveOptsLoader : ILoader {
    virtual HRESULT STDMETHODCALLTYPE LoadLSSaveOptsForm(VARIANT_BOOL* instantHelp, short* optionsMode,
        VARIANT_BOOL* optionsSaved, IDispatch** LSOptPref, IDispatch** prog, IDispatch** dataHeaderTable,
        IDispatch** LSOptPrefDefaults) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBlank() = 0;

protected:
    ~_cLS_SaveOptsLoader() = default;
};

/// The interface identifier of a dual interface of the component.
template<class Interface>
extern const IID iidOf;
template<>
inline constexpr IID iidOf<_cInternalBrowserLoader>{
    0xCE00374F, 0x8580, 0x4633, {0xB2, 0xF9, 0xD7, 0x6D, 0xAA, 0x45, 0x6E, 0x77}};
template<>
inline constexpr IID iidOf<_cFileViewLoader>{
    0x13BE51E6, 0x79BB, 0x4770, {0x92, 0x65, 0xD7, 0x54, 0xE5, 0x87, 0x42, 0x7E}};
template<>
inline constexpr IID iidOf<_ReportPrinting>{
    0x87F24D42, 0x1CF4, 0x4B18, {0x9C, 0x12, 0xDF, 0xCF, 0x2C, 0xF8, 0x59, 0x49}};
template<>
inline constexpr IID iidOf<_cProgress>{
    0xBBA31A68, 0x88FB, 0x4C5A, {0x97, 0x2A, 0xF3, 0x45, 0x70, 0x4C, 0x50, 0xE5}};
template<>
inline constexpr IID iidOf<_cJobListLoader>{
    0x7FFEA7A1, 0x4FAA, 0x4D1F, {0x88, 0x3A, 0x85, 0x8D, 0x8B, 0xEC, 0x59, 0xB2}};
template<>
inline constexpr IID iidOf<_JobListing>{
    0x2C0B1A57, 0x9D3E, 0x4F68, {0xA1, 0x4C, 0x63, 0x0E, 0x77, 0x5B, 0xD2, 0x19}};
template<>
inline constexpr IID iidOf<_JobListing2>{
    0x91D4C6F3, 0x5B0A, 0x4E27, {0x8C, 0x3F, 0x1A, 0xE9, 0x42, 0xD7, 0x60, 0xB8}};
template<>
inline constexpr IID iidOf<_cDefaultsLoader>{
    0x0232B2AE, 0x385D, 0x4E8A, {0xA0, 0xE8, 0x88, 0xC0, 0xED, 0x50, 0x33, 0x1D}};
template<>
inline constexpr IID iidOf<_cLS_OptsLoader>{
    0x029C6C09, 0x0759, 0x4D46, {0xBD, 0xF2, 0xB7, 0x63, 0xFB, 0xF3, 0xB0, 0xD7}};
template<>
inline constexpr IID iidOf<_cDisplayLoader>{
    0x03785919, 0xAA2E, 0x473B, {0xBB, 0xDE, 0xD0, 0xC2, 0xC5, 0xFC, 0x4A, 0x6D}};
template<>
inline constexpr IID iidOf<_cLS_SaveOptsLoader>{
    0x718CE078, 0xAC04, 0x4846, {0xB9, 0x0E, 0xC5, 0xCD, 0xEA, 0x52, 0x57, 0x8D}};

} // namespace k_genutil
