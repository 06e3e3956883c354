// Kills a program that types, edits, runs and saves, and the recovery after it.
#pragma once

#include <string>

namespace nivora {

struct RecoveryNumbers {
    int kills = 0;           ///< of the work itself
    int recovery_kills = 0;  ///< of a start that recovers
    int asked = 0;           ///< the last start asked, and the basin was recovered
    int not_asked = 0;       ///< all was saved
    int valid_results = 0;   ///< of these, recovered with results that still count
    int wrong = 0;           ///< something that was kept is lost, or something else is there
    int keeps = 0;
    int slow_keeps = 0;         ///< how many took more than 5 ms
    double longest_keep = 0.0;  ///< microseconds in which the program's thread handed a state over
    double longest_work = 0.0;  ///< the same without the time in which the processor was not this thread's
    double keep_sum = 0.0;
};

struct RecoveryFigures : RecoveryNumbers {
    std::string first_wrong = {};
};

/// @param sample a basin with a simulation that can run
/// @param kills how many; every third is followed by a kill of the recovery, every sixth by two
/// @param jobs how many processes share them: they wait for the disk most of the time
[[nodiscard]] RecoveryFigures kill_and_recover(const std::string& template_file, const std::string& sample,
                                               int kills, int jobs);

}  // namespace nivora
