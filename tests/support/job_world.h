#pragma once

#include "joblist/job_fields.h"
#include "support/fake_database.h"
#include "support/fake_files.h"
#include "support/fake_host.h"
#include "support/scripted_desktop.h"

namespace genutil::fake {

// Shows what it was asked for.
struct JobStringUtilities : FakeStringUtilities {
    std::string FormatValue(
        const Value& value, const std::string& format, const std::string& further) override {
        return "  " + value.toText() + " as " + format + further + " ";
    }
    std::string AngleText(const std::string& degrees, std::int16_t option, const std::string& kind,
        std::int16_t flag) override {
        return degrees + " " + kind + (option || flag ? "?" : "");
    }
    double TransformValue(double value, std::int16_t code) override { return value * 100 + code; }
};

// Names that overlap, so that it matters which rule on tables applies first.
struct JobSystemInfo : FakeSystemInfo {
    using FakeSystemInfo::FakeSystemInfo;
    std::string AlphaIdTable() override { return "JobAlphaIds"; }
    std::string TraverseSetPrefix() override { return "MS"; }
    std::string LSSetPrefix() override { return "Job"; }
};

struct FakeInterpolationNames : InterpolationNames {
    std::string MethodNameA() override { return "Bilinear"; }
    std::string MethodNameB() override { return "Bicubic"; }
    std::string MethodNameC() override { return "Spline"; }
    std::string LegacyCodeA() override { return "L"; }
    std::string LegacyCodeB() override { return "C"; }
    std::string LegacyCodeC() override { return "S"; }
};

// A new record has every member of a job's records, as the host's have.
struct JobHost : FakeHost {
    std::unique_ptr<StringUtilities> createStringUtilities() override {
        return std::make_unique<JobStringUtilities>();
    }
    std::unique_ptr<SystemInfo> createSystemInfo() override { return std::make_unique<JobSystemInfo>(*this); }
    std::unique_ptr<InterpolationNames> createInterpolationNames() override {
        return std::make_unique<FakeInterpolationNames>();
    }
    RecordPtr createRecord(const std::string&) override {
        const auto record = std::make_shared<FakeRecord>();
        for (const JobField& field : jobFields())
            std::visit(
                [&]<class T>(const Property<T>& property) { record->write(property.name, Value(T())); },
                field.member);
        return record;
    }
};

// A component for the job list, with everything around it faked.
struct JobWorld {
    JobHost host;
    FakeFiles files;
    FakeDatabases databases;
    ScriptedDesktop desktop;
    Component component{desktop, files, host, &databases};
};

} // namespace genutil::fake
