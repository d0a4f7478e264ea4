#include "host/job_schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

using namespace kestal;
using testing::HasSubstr;

namespace {

struct Outcome {
    int exitCode = -1;
    std::string output, errors;
};

// The program as a shell starts it, in a folder with two jobs and a file that is none.
class JobsCommand : public testing::Test {
protected:
    JobsCommand() {
        QDir().mkpath(folder_);
        createJob((folder_ + "/b, \"2\".gdb").toStdString());
        createJob((folder_ + "/A.mdb").toStdString());
        QFile bad(folder_ + "/bad\u001b[2J.gdb");
        EXPECT_TRUE(bad.open(QIODevice::WriteOnly) && bad.write("text") == 4);
    }
    // `shell` may use "$kestal" and "$1", the folder.
    Outcome run(const QString& shell) const {
        QProcessEnvironment environment;
        environment.insert("PATH", qEnvironmentVariable("PATH"));
        environment.insert("HOME", files_.path()); // no display, no language, nothing of the user's
        environment.insert("kestal", QCoreApplication::applicationDirPath() + "/kestal");
        for (const char* name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"})
            environment.insert(name, qEnvironmentVariable(name));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(files_.path());
        process.start("bash", {"-c", shell, "bash", folder_});
        EXPECT_TRUE(process.waitForFinished(30000)) << shell.toStdString();
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
    }

    QTemporaryDir files_;
    // A name that a shell or a wildcard would take apart.
    QString folder_ = files_.path() + "/-jobs 'of' \"\u0141\u00F3d\u017A\" $(x) *.gdb";
};

TEST_F(JobsCommand, WritesTheJobsInEachFormatAndNamesWhatItCannotRead) {
    const std::pair<const char*, const char*> cases[] = {{"", "Job "}, {"--format tsv", "Job\tCreate Date\t"},
        {"--format csv --sort -job", "\n\"b, \"\"2\"\".gdb\","}, {"--format table --all-columns", "LS Sets"},
        {"--format csv --sort -size --iso-dates --file-columns", ",Size,Modified\n"}};
    for (const auto& [options, text] : cases) {
        const Outcome result = run(QString("\"$kestal\" jobs %1 -- \"$1\"").arg(options));
        EXPECT_EQ(result.exitCode, 3) << options;
        EXPECT_THAT(result.output, HasSubstr(text));
        EXPECT_EQ(result.errors,
            "kestal: bad\uFFFD[2J.gdb: The file is not a job database: it does not begin as one\n");
    }
    const Outcome json = run("\"$kestal\" jobs --format json --sort -Job -- \"$1\" 2>/dev/null");
    const auto jobs = QJsonDocument::fromJson(QByteArray::fromStdString(json.output)).array();
    ASSERT_EQ(jobs.size(), 2);
    EXPECT_EQ(jobs[0].toObject()["Job"].toString(), "b, \"2\".gdb");
    EXPECT_EQ(jobs[1].toObject()["Points"].toDouble(-1), 0);
}

TEST_F(JobsCommand, KeepsWhatItReadInTheCacheFolderUnlessTheSettingsRefuse) {
    const QString kept = "test -s .cache/k_genutil/jobs.sqlite", list = "\"$kestal\" jobs -- \"$1\" >&2; ";
    EXPECT_EQ(run(list + kept).exitCode, 0);
    const QString refuse =
        "printf '[Kestal]\nKeepJobSummaries=False' >refuse.ini; KESTAL_SETTINGS=refuse.ini ";
    EXPECT_EQ(run(refuse + list + kept).exitCode, 1) << "what was kept is still there";
    EXPECT_EQ(run(list + kept).exitCode, 0);
}

TEST_F(JobsCommand, EndsWithTheCodeOfItsOutcome) {
    struct Case {
        const char* shell;
        int exitCode;
        const char* errors;
    };
    const Case cases[] = {
        {"\"$kestal\" jobs .", 0, ""},
        {"sqlite3 \"$1/A.mdb\" 'ALTER TABLE JobDetails DROP Surveyor; ALTER TABLE JobDetails ADD Surveyor AS "
         "(hex(zeroblob(9000000))); INSERT INTO JobDetails (Zone) VALUES (5)'; \"$kestal\" jobs \"$1\" >list",
            3, "A.mdb: string or blob too big"},
        {"\"$kestal\" new-job z.gdb && sqlite3 z.gdb \"UPDATE JobDetails SET Zone='55 north'\"; "
         "\"$kestal\" jobs . >list; code=$?; rm z.gdb; exit $code",
            3, "kestal: z.gdb: Field 'Zone': '55 north' is not a number\n"},
        {"\"$kestal\" jobs nowhere", 1, "'nowhere' does not exist"},
        {"\"$kestal\" jobs \"$1/A.mdb\"", 1, "A.mdb' is not a folder"},
        {"\"$kestal\" jobs . --format xml", 2, "table, tsv, csv or json"},
        {"\"$kestal\" jobs . --sort Nothing", 2, "Create Date, Surveyor"},
        {"\"$kestal\" jobs", 2, "FOLDER is needed"},
        {"\"$kestal\" jobs . > /dev/full", 1, "output cannot be written: No space left"},
        {"\"$kestal\" jobs . >&-", 1, "output cannot be written"},
        {"\"$kestal\" jobs . > >(exec <&-); exit $?", 1, "output cannot be written: Broken pipe"},
        {"\"$kestal\" new-job new.gdb && \"$kestal\" jobs . | grep -q ^new.gdb", 0, ""},
        {"\"$kestal\" new-job ' x.gdb' && \"$kestal\" jobs . --format json | grep -q '\"Job\": \" x.gdb\"'",
            0, ""},
        {"\"$kestal\" new-job \"$1/A.mdb\"", 1, "A.mdb' exists already"},
        {"\"$kestal\" job-list", 1, "no screen"},
        {"\"$kestal\" ls-options", 1, "no screen"},
        {"test $(\"$kestal\" ls-options --dump | wc -l) = 53", 0, ""},
        {"LC_ALL=de_DE.UTF-8 \"$kestal\" ls-options --dump | grep -Exq 'DisConst +0.005 +m'", 0, ""},
        {"sqlite3 \"$1/A.mdb\" 'INSERT INTO DataHeader (AngleSD, Dump) VALUES (2.5, 1)' && "
         "\"$kestal\" ls-options --dump --job \"$1/A.mdb\" >own && grep -Exq 'AngleSD +2.5 +seconds' own && "
         "grep -Exq 'Dump +True' own && grep -Exq 'CSD +False +.preference.' own",
            0, ""},
        {"sqlite3 \"$1/A.mdb\" 'DROP TABLE DataHeader'; \"$kestal\" ls-options --dump --job \"$1/A.mdb\"", 1,
            "A.mdb' has no table 'DataHeader'"},
        {"\"$kestal\" ls-options --dump --job nowhere.gdb", 1, "nowhere.gdb"},
        {"\"$kestal\" ls-options --dump --mode 1", 2, "neither --mode nor --page"},
        {"seq 400 >a.log; \"$kestal\" print a.log --pdf a.pdf --pages 2-3 --copies 2 && "
         "pdfinfo a.pdf | grep -Eq 'Pages: +4' && pdftotext -f 3 a.pdf - | grep -Em1 '^[0-9]+$' | grep -qx "
         "73",
            0, ""},
        {"\"$kestal\" print a.log --pdf b.pdf --lines 399- --landscape && pdfinfo b.pdf | grep -q '842 x "
         "595' "
         "&& test \"$(pdftotext b.pdf - | grep -Ex '[0-9]+' | xargs)\" = '399 400'",
            0, ""},
        {"printf %0400d 1 >w.log; \"$kestal\" print w.log --pdf w.pdf 2>&1 | grep -q 'longest has 400'", 0,
            ""},
        {"\"$kestal\" print a.log --pdf c.pdf --pages 3-2", 2, "A not above B, not '3-2'"},
        {"\"$kestal\" print a.log --pdf c.pdf --lines 0", 2, "--lines must be A-B"},
        {"\"$kestal\" print a.log --pdf c.pdf --landscape --portrait", 2, "exclude each other"},
        {"\"$kestal\" print a.log --pdf c.pdf --pages 9-", 1, "page 9 is beyond the last page, 6"},
        {"\"$kestal\" print a.log --pdf /dev/full", 1, "only regular files are"},
        {"\"$kestal\" print a.log", 2, "--pdf is needed"},
        {"test ! -e c.pdf", 0, ""},
    };
    for (const Case& each : cases) {
        const Outcome result = run(each.shell);
        EXPECT_EQ(result.exitCode, each.exitCode) << each.shell << ": " << result.errors;
        EXPECT_THAT(result.errors, HasSubstr(each.errors)) << each.shell;
        if (each.exitCode == 0) {
            EXPECT_EQ(result.errors, "") << each.shell << " has nothing to say";
        }
    }
}

} // namespace
