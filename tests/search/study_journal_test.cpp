#include "search/study_journal.h"

#include "base/durable_file.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace nivora {
namespace {

using testing::HasSubstr;

class StudyJournalTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path path() const { return folder / "x.state"; }

    void append(const std::string& text) const {
        std::ofstream{path(), std::ios::app | std::ios::binary} << text;
    }

    [[nodiscard]] std::string refusal(const JournalTitle& other) const {
        try {
            const StudyJournal journal{path(), other, true};
        } catch (const FileError& error) {
            return error.what();
        }
        return "no refusal";
    }

    TemporaryFolder folder;
    JournalTitle title{"b1", "o1", 2, 2};
};

TEST_F(StudyJournalTest, GivesTheCostsOfEachLaneBackBitForBit) {
    const std::vector<double> first{0.1, 1.0 / 3.0};
    const std::vector<double> second{1.0e30, 5e-324};
    {
        StudyJournal journal{path(), title, false};
        EXPECT_EQ(journal.next(0), std::nullopt);
        journal.keep(1, first);
        journal.keep(0, second);
        journal.keep(1, second);
        journal.flush();
    }
    StudyJournal journal{path(), title, true};
    EXPECT_EQ(journal.resumed(), 3U);
    EXPECT_EQ(journal.next(0), second);
    EXPECT_EQ(journal.next(0), std::nullopt);
    EXPECT_EQ(journal.next(1), first);
    EXPECT_EQ(journal.next(1), second);
    EXPECT_EQ(journal.next(1), std::nullopt);
    journal.keep(0, first);
    journal.flush();
    EXPECT_EQ((StudyJournal{path(), title, true}.resumed()), 4U);
}

TEST_F(StudyJournalTest, DropsALineThatWasNotCompleted) {
    { StudyJournal{path(), title, false}.keep(0, {1.0, 2.0}); }
    append("1 3.5 4");
    {
        StudyJournal journal{path(), title, true};
        EXPECT_EQ(journal.resumed(), 1U);
        journal.keep(1, {5.0, 6.0});
    }
    StudyJournal journal{path(), title, true};
    EXPECT_EQ(journal.resumed(), 2U);
    EXPECT_EQ(journal.next(1), (std::vector<double>{5.0, 6.0}));
}

TEST_F(StudyJournalTest, SaysWhatDiffers) {
    { StudyJournal{path(), title, false}; }
    EXPECT_EQ(refusal(title), "no refusal");
    EXPECT_THAT(refusal({"b2", "o1", 2, 2}), HasSubstr("the basin is not the one"));
    EXPECT_THAT(refusal({"b1", "o2", 2, 2}), HasSubstr("use these: o1"));
    EXPECT_THAT(refusal({"b1", "o1", 3, 2}), HasSubstr("damaged"));
    append("2 1 2\n");
    EXPECT_THAT(refusal(title), HasSubstr("damaged"));
}

TEST_F(StudyJournalTest, RefusesAFileThatIsNoJournalOrIsNotThere) {
    EXPECT_NE(refusal(title), "no refusal");
    append("Run,An\n0,1\n");
    EXPECT_THAT(refusal(title), HasSubstr("not the state of a search"));
    std::ifstream file{path()};
    std::ostringstream content;
    content << file.rdbuf();
    EXPECT_EQ(content.str(), "Run,An\n0,1\n");
}

}  // namespace
}  // namespace nivora
