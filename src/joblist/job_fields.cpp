#include "joblist/job_fields.h"

#include "joblist/job_errors.h"

#include <array>
#include <string>
#include <type_traits>

namespace genutil {
namespace {

using enum JobRecord;
using enum OnNull;
using enum FieldRule;

// The decimals of a job's results fit in one byte, which cannot hold the -1 that stands for "not known"
// elsewhere. A Null becomes 0: like any number of decimals it can be shown and used as it is, where 255 would
// be cut to "25" in the list and ask the host for results of 255 decimals.
constexpr OnNull noDecimals = Zero;

constexpr std::array fields{
    JobField{Details, jobdetails::Description},
    JobField{Details, jobdetails::Surveyor},
    JobField{Details, jobdetails::Date},
    JobField{Details, jobdetails::Reference},
    JobField{Configuration, jobcfg::OutputDecH, noDecimals},
    JobField{Configuration, jobcfg::OutputDecV, noDecimals},
    JobField{Configuration, jobcfg::CoordType, MinusOne},
    JobField{Configuration, jobcfg::Projection},
    JobField{Configuration, jobcfg::Zone, Zero},
    JobField{Configuration, jobcfg::NValue, Zero, Transformed},
    JobField{Configuration, jobcfg::DatumV},
    JobField{Configuration, jobcfg::EarthRadius, MinusOne},
    JobField{Configuration, jobcfg::ApplyGeoid, Zero},
    JobField{Configuration, jobcfg::InterpMethod, Zero, NormalisedName},
    JobField{Configuration, jobcfg::GridFile, Zero, StarMeansNothing},
    JobField{Configuration, jobcfg::Spheroid},
    JobField{Configuration, jobcfg::DatumH},
    JobField{Configuration, jobcfg::DeflectionNS, Zero},
    JobField{Configuration, jobcfg::DeflectionEW, Zero},
    JobField{Configuration, jobcfg::ApproxLat, MinusOne},
    JobField{General, jobgeneral::ValidHorizPts, MinusOne},
    JobField{General, jobgeneral::CurrentMaxPoint, MinusOne},
    JobField{General, jobgeneral::FirstFreePoint, MinusOne},
    JobField{General, jobgeneral::FirstPointStored, MinusOne},
    JobField{General, jobgeneral::TransType},
    JobField{General, jobgeneral::GeoidUpdate, Zero},
    JobField{General, jobgeneral::MinimumX, Zero},
    JobField{General, jobgeneral::MinimumY, Zero},
    JobField{General, jobgeneral::MaximumX, Zero},
    JobField{General, jobgeneral::MaximumY, Zero},
};

constexpr std::int16_t transformCode = -5;

template<class T>
T whenNull(OnNull rule) {
    if constexpr (std::is_same_v<T, std::string>)
        return {};
    else
        return Value(static_cast<std::int16_t>(rule == MinusOne ? -1 : 0)).to<T>();
}

template<class T>
T memberValue(Component& component, const JobField& field, const Value& value) {
    if (value.isNull())
        return whenNull<T>(field.onNull);
    const T converted = value.to<T>();
    if constexpr (std::is_same_v<T, double>) {
        if (field.rule == Transformed)
            return component.strUtil().TransformValue(converted, transformCode);
    }
    return converted;
}

std::string methodName(InterpolationNames& names, const std::string& stored) {
    if (stored == names.LegacyCodeC())
        return names.MethodNameC();
    if (stored == names.LegacyCodeA())
        return names.MethodNameA();
    if (stored == names.LegacyCodeB())
        return names.MethodNameB();
    return stored == "x" ? "" : stored;
}

// Goes by what the record holds: the host's object may have changed what was stored, and a field that the
// database lacks may have left an old name there.
void tidyStoredText(Component& component, const JobField& field, Record& record) {
    const auto& property = std::get<Property<std::string>>(field.member);
    const std::string stored = record.get(property);
    const std::string tidy = field.rule == NormalisedName ? methodName(component.interpNames(), stored)
                             : stored == "*"              ? ""
                                                          : stored;
    if (tidy != stored)
        record.put(property, tidy);
}

// What an error says beyond its number's standard description.
std::string ownWords(const Error& error) {
    const std::string standard = standardDescription(error.number()) + ": ";
    const std::string description = error.description();
    return description.starts_with(standard) ? description.substr(standard.size()) : description;
}

void readField(Component& component, const JobField& field, Recordset& rset, Record& record) {
    skippingMissingItems([&] {
        const Value value = rset.field(field.name());
        try {
            std::visit(
                [&]<class T>(const Property<T>& property) {
                    record.put(property, memberValue<T>(component, field, value));
                },
                field.member);
        } catch (const Error& error) {
            throw Error(error.number(), "Field '" + std::string(field.name()) + "': " + ownWords(error));
        }
    });
    if (field.rule == NormalisedName || field.rule == StarMeansNothing)
        skippingMissingItems([&] { tidyStoredText(component, field, record); });
}

Record& existing(Component& component, RecordPtr& record, const char* className) {
    if (!record)
        record = component.objects().createRecord(className);
    return required(record, className);
}

void describeIncomplete(Record& jobDetails) {
    jobDetails.put(jobdetails::Description, "(Incomplete database)");
    jobDetails.put(jobdetails::Surveyor, "");
    jobDetails.put(jobdetails::Date, "");
    jobDetails.put(jobdetails::Reference, "");
}

} // namespace

std::span<const JobField> jobFields() {
    return fields;
}

void ReadJobDetailsTemp(Component& component, const std::shared_ptr<Recordset>& detailsRset,
    RecordPtr& jobCfg, RecordPtr& jobGeneral, RecordPtr& jobDetails, bool& ok) {
    jobListProcedure(component, "ReadJobDetailsTemp", [&] {
        Recordset& rset = required(detailsRset, "the job details recordset");
        const bool outside = rset.BOF() && rset.EOF_();
        ok = rset.RecordCount() > 0 && !outside;
        if (!ok)
            return describeIncomplete(existing(component, jobDetails, "jobDetails"));
        for (const JobField& field : fields) {
            Record& record = field.record == Details         ? existing(component, jobDetails, "jobDetails")
                             : field.record == Configuration ? existing(component, jobCfg, "jobCfg")
                                                             : existing(component, jobGeneral, "jobGeneral");
            readField(component, field, rset, record);
        }
    });
}

} // namespace genutil
