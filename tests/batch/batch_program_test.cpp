// The batch program as a process: exit status, standard output and standard error.
#include "tests/batch/run_basin.h"

#include <gmock/gmock.h>

#include <cstdlib>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace nivora {
namespace {

using testing::HasSubstr;

std::string shell_quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char character : text) {
        if (character == '\'') {
            quoted += "'\\''";
        } else {
            quoted += character;
        }
    }
    return quoted + "'";
}

int exit_status(int status) {
#ifdef _WIN32
    return status;
#else
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;  // -1: ended by a signal
#endif
}

/// Starts the program; `before` comes before it on the command line.
BatchResult program(const BatchFolder& batch_folder, const std::vector<std::string>& arguments,
                    const std::string& before = {}) {
    const std::string out = batch_folder.path("program.out");
    const std::string err = batch_folder.path("program.err");
    std::string line = before + shell_quoted(NIVORA_BATCH_PROGRAM);
    for (const std::string& argument : arguments) line += " " + shell_quoted(argument);
    line += " >" + shell_quoted(out) + " 2>" + shell_quoted(err) + " </dev/null";
    BatchResult result;
    result.status = exit_status(std::system(line.c_str()));
    result.out = file_bytes(out);
    result.err = file_bytes(err);
    return result;
}

class BatchProgram : public testing::Test {
protected:
    void SetUp() override {
#ifdef _WIN32
        GTEST_SKIP() << "the calls are written for a POSIX shell";
#endif
    }
};

TEST_F(BatchProgram, ImportsRunsAndExports) {
    const BatchFolder batch_folder{receding_parts()};
    const BatchResult imported = program(batch_folder, {"import", batch_folder.file(), batch_folder.basin(),
                                                        "--initial-runoff", "10", "--latitude", "46.5"});
    EXPECT_EQ(imported.status, 0);
    EXPECT_THAT(imported.out, HasSubstr("Imported 'alder'"));
    EXPECT_EQ(imported.err, "");
    const BatchResult run =
        program(batch_folder, {"run", batch_folder.basin(), "--simulation", "alder", "--json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(nlohmann::json::parse(run.out)["FinalQ"].get<double>(), testing::DoubleNear(7.29, 1e-6));
    const BatchResult exported = program(
        batch_folder, {"export", batch_folder.basin(), "SimResults", "--csv", batch_folder.path("r.csv")});
    EXPECT_EQ(exported.status, 0);
    EXPECT_EQ(exported.out + exported.err, "");
    EXPECT_EQ(lines_of(file_bytes(batch_folder.path("r.csv"))).size(), 4U);
}

TEST_F(BatchProgram, WritesAPdfWithoutADisplay) {
    const RunBasin basin;
    ASSERT_EQ(basin.run().status, 0);
    const BatchResult result =
        program(basin, {"report", basin.basin(), "--simulation", "alder", "--out", basin.path("reports.pdf")},
                "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM ");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_THAT(file_bytes(basin.path("reports.pdf")), testing::StartsWith("%PDF-"));
}

// Their loading would take longer than most commands.
TEST_F(BatchProgram, LoadsNeitherQtNorPagmoAtItsStart) {
    const BatchResult result = program(BatchFolder{}, {"--version"}, "LD_TRACE_LOADED_OBJECTS=1 ");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("libsqlite3.so"));
    EXPECT_THAT(result.out, testing::Not(HasSubstr("libQt")));
    EXPECT_THAT(result.out, testing::Not(HasSubstr("pagmo")));
}

/// A copy of the program without the modules beside it.
TEST_F(BatchProgram, SaysThatTheModuleForPicturesIsMissing) {
    const RunBasin basin;
    ASSERT_EQ(basin.run().status, 0);
    std::filesystem::copy_file(NIVORA_BATCH_PROGRAM, basin.path("alone"));
    const std::string alone = shell_quoted(basin.path("alone"));
    const auto refused = [&](const std::vector<std::string>& arguments, const std::string& file) {
        std::string line = alone;
        for (const std::string& argument : arguments) line += " " + shell_quoted(argument);
        line += " " + shell_quoted(basin.path(file)) + " 2>" + shell_quoted(basin.path("err"));
        EXPECT_EQ(exit_status(std::system(line.c_str())), 1) << line;
        EXPECT_THAT(file_bytes(basin.path("err")),
                    HasSubstr("The file 'nivora-paint.so' can't be loaded, without which there are no "
                              "pictures and no PDF files"));
        EXPECT_FALSE(std::filesystem::exists(basin.path(file)));
    };
    const std::string simulation = "--simulation";
    refused({"plot", basin.basin(), simulation, "alder", "--plot", "1", "--out"}, "plot.png");
    refused({"report", basin.basin(), simulation, "alder", "--out"}, "reports.pdf");
    // Before the runs, which may take hours.
    refused(
        {"sample", basin.basin(), simulation, "alder", "--free", "Degree Day Factors:multiply:0.7..1.4:All",
         "--runs", "10", "--out", basin.path("runs.csv"), "--picture"},
        "bands.png");
    EXPECT_FALSE(std::filesystem::exists(basin.path("runs.csv")));
    refused({"response", basin.basin(), simulation, "alder", "--winter-end", "1996-04-02", "--temperature",
             "0..2:1", "--precipitation", "1", "--picture"},
            "response.png");
}

TEST_F(BatchProgram, ARefusalHasStatus1AndIsOnStandardErrorAlone) {
    const BatchFolder batch_folder;
    const BatchResult result = program(batch_folder, {"run", batch_folder.file(), "--simulation", "alder"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("is not a Nivora basin file"));
}

TEST_F(BatchProgram, WrongUsageIsStatus2) {
    const BatchFolder batch_folder;
    EXPECT_EQ(program(batch_folder, {}).status, 2);
    EXPECT_EQ(program(batch_folder, {"melt"}).status, 2);
    EXPECT_EQ(program(batch_folder, {"--help"}).status, 0);
}

TEST_F(BatchProgram, TheTemplateBesideItIsABlankBasin) {
    const BatchFolder batch_folder;
    const std::string blank = std::string{NIVORA_PROGRAM_FOLDER} + "/null.mdb";
    std::filesystem::copy_file(blank, batch_folder.basin());
    const BatchResult result = program(batch_folder, {"import", batch_folder.file(), batch_folder.basin()});
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST_F(BatchProgram, OutputThatCannotBeWrittenIsAFailure) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no full device here";
    const RunBasin basin;
    const std::string line = shell_quoted(NIVORA_BATCH_PROGRAM) + " simulations " +
                             shell_quoted(basin.basin()) + " >/dev/full 2>" +
                             shell_quoted(basin.path("program.err"));
    EXPECT_EQ(exit_status(std::system(line.c_str())), 1);
    EXPECT_NE(file_bytes(basin.path("program.err")), "");
}

#ifndef _WIN32
/// A prefix that runs the program as nobody if the test runs as superuser, whom permissions do not restrict.
std::string as_ordinary_user() {
    return geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
}

/// Whether an ordinary user can start the program at all.
bool ordinary_user_reaches_program(const BatchFolder& batch_folder) {
    return program(batch_folder, {"--version"}, as_ordinary_user()).status == 0;
}

TEST_F(BatchProgram, ALegacyFileWithoutPermissionIsRefused) {
    const BatchFolder batch_folder;
    if (!ordinary_user_reaches_program(batch_folder))
        GTEST_SKIP() << "the program is out of an ordinary user's reach";
    using std::filesystem::perms;
    std::filesystem::permissions(batch_folder.path("."), perms::all);
    std::filesystem::permissions(batch_folder.file(), perms::none);
    const BatchResult result =
        program(batch_folder, {"import", batch_folder.file(), batch_folder.basin()}, as_ordinary_user());
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("alder.NVR' can't be read: you have no permission to read it."));
    EXPECT_FALSE(std::filesystem::exists(batch_folder.basin()));
}

TEST_F(BatchProgram, ABasinThatCannotBeWrittenIsRefusedAndStays) {
    const RunBasin basin;
    if (!ordinary_user_reaches_program(basin))
        GTEST_SKIP() << "the program is out of an ordinary user's reach";
    using std::filesystem::perms;
    std::filesystem::permissions(basin.path("."), perms::all);
    std::filesystem::permissions(basin.file(), perms::all);
    std::filesystem::permissions(basin.basin(), perms::owner_read | perms::group_read | perms::others_read);
    const std::string before = basin.bytes();
    const BatchResult imported =
        program(basin, {"import", basin.file(), basin.basin(), "--name", "second"}, as_ordinary_user());
    EXPECT_EQ(imported.status, 1);
    EXPECT_THAT(imported.err, HasSubstr("cannot be written"));
    const BatchResult run =
        program(basin, {"run", basin.basin(), "--simulation", "alder"}, as_ordinary_user());
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err, "");
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_EQ(program(basin, {"simulations", basin.basin()}, as_ordinary_user()).status, 0);
}
#endif

}  // namespace
}  // namespace nivora
