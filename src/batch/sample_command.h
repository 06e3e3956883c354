// The commands that run a simulation many times over free ranges, and that put parts of such a sample
// together.
#pragma once

#include "batch/sample_picture.h"
#include "search/keep_rule.h"
#include "search/study_command.h"

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <memory>

namespace nivora {

struct SampleCommand {
    StudyCommand study;
    std::size_t runs = 10000;
    std::size_t part = 1;  ///< of `parts`
    std::size_t parts = 1;
    bool sensitivity = false;
    std::vector<KeepRule> keep;
    std::filesystem::path out;                   ///< CSV, a line a run
    std::optional<std::filesystem::path> bands;  ///< CSV, a line a day
    std::optional<BandPictureFile> picture;      ///< of the bands
    bool resume = false;

    [[nodiscard]] bool needs_bands() const { return bands || picture; }
};

struct SampleTexts;

/// The command with its options; the texts live as long as the application.
class SampleOptions {
public:
    explicit SampleOptions(CLI::App& app);
    ~SampleOptions();

    [[nodiscard]] const CLI::App& app() const { return *command_; }
    [[nodiscard]] SampleCommand command(std::chrono::milliseconds wait) const;

private:
    std::unique_ptr<SampleTexts> texts_;
    CLI::App* command_;
};

int sample_command(const SampleCommand& command, BatchDialogs& dialogs, std::ostream& out, std::ostream& err,
                   bool terminal);

struct GatherTexts;

/// The command that puts the parts of a sample together.
class GatherOptions {
public:
    explicit GatherOptions(CLI::App& app);
    ~GatherOptions();

    [[nodiscard]] const CLI::App& app() const { return *command_; }
    int run(BatchDialogs& dialogs, std::ostream& out) const;

private:
    std::unique_ptr<GatherTexts> texts_;
    CLI::App* command_;
};

}  // namespace nivora
