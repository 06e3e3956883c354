// The evaluations of a search in a file, so that a search that was stopped goes on from there.
//
// A search is a fixed function of its problem, options and seed. So its course is not stored: it is walked
// again, and takes the costs that it needs from the journal as far as that reaches.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// What a journal belongs to.
struct JournalTitle {
    std::string basin;    ///< one line: digests of what is read
    std::string options;  ///< one line: all that decides the course of the search
    std::size_t lanes = 1;
    std::size_t costs = 1;  ///< of an evaluation

    /// What a refusal says of a stored text and the one that it should be.
    using Difference = std::function<std::string(std::string_view stored, std::string_view asked)>;
    Difference changed_basin = [](std::string_view, std::string_view) { return std::string{}; };
    Difference changed_options = [](std::string_view stored, std::string_view) {
        return std::string{stored};
    };
};

/// Costs by lane. A lane is a sequence of evaluations that one thread at a time walks; several lanes may be
/// walked at once.
class StudyJournal {
public:
    /// The costs of evaluations in their order.
    using Costs = std::vector<std::vector<double>>;

    /// A journal that keeps nothing.
    explicit StudyJournal(std::size_t lanes);
    /// A journal of evaluations that were made elsewhere, by lane. It keeps what comes behind them in memory.
    explicit StudyJournal(std::vector<Costs> known);
    /// Begins a journal in a file, in the place of one that is there, or goes on in one.
    ///
    /// A last line that was not completed is dropped.
    /// @throws FileError where the file cannot be read or written, is no journal, or belongs to another
    /// title: the
    ///         message says whether the basin or the options differ
    StudyJournal(std::filesystem::path file, const JournalTitle& title, bool resume);

    /// The costs of the lane's next evaluation; nothing where the journal ends.
    [[nodiscard]] std::optional<std::vector<double>> next(std::size_t lane);
    /// Keeps the costs of the lane's evaluation that `next` did not have. @throws FileError
    void keep(std::size_t lane, const std::vector<double>& costs);
    /// What a journal in memory has kept of a lane.
    [[nodiscard]] const Costs& kept(std::size_t lane) const { return lanes_[lane].kept; }
    /// Writes what is still in memory. @throws FileError
    void flush();
    /// The number of evaluations that were read at the start.
    [[nodiscard]] std::size_t resumed() const { return resumed_; }

private:
    /// A lane's evaluations in the file, and how many of them were taken.
    struct Lane {
        Costs costs = {};
        std::size_t taken = 0;
        Costs kept = {};  ///< of a journal in memory
    };

    void read(const JournalTitle& title);
    void write(const std::string& text);

    std::vector<Lane> lanes_;
    bool in_memory_ = false;
    std::size_t resumed_ = 0;
    std::filesystem::path path_;
    std::mutex mutex_;
    std::ofstream file_;
};

}  // namespace nivora
