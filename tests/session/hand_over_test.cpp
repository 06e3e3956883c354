// A second start hands its file to the program that runs.

#include "session/hand_over.h"

#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <thread>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr milliseconds k_long{20'000};
constexpr milliseconds k_short{50};

class HandOverTest : public testing::Test {
protected:
    HandOverTest() { fs::create_directory(folder_ / "work"); }

    /// Offers a file while the listener answers.
    HandOver offer(const HandOverListener& listener, const fs::path& file, bool may_open = true) {
        HandOver outcome = HandOver::NobodyThere;
        bool done = false;
        std::thread second([&] {
            outcome = hand_over(place_, file, k_long);
            done = true;
        });
        for (int round = 0; round < 2000; ++round) {
            const auto files = listener.take([may_open] { return may_open; });
            taken_.insert(taken_.end(), files.begin(), files.end());
            if (!files.empty()) break;
            std::this_thread::sleep_for(milliseconds{1});
            if (!may_open && round > 200) break;
        }
        second.join();
        EXPECT_TRUE(done);
        return outcome;
    }

    /// Connects as any program can, and sends some bytes.
    [[nodiscard]] int connect_and_send(std::string_view bytes) const {
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const std::string path = (place_.folder / place_.name).string();
        std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
        EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
        return socket;
    }

    TemporaryFolder folder_;
    MeetingPlace place_ = meeting_place(folder_ / "work", std::nullopt);
    std::vector<fs::path> taken_;
};

bool yes() { return true; }

TEST_F(HandOverTest, TheRunningProgramGetsTheFile) {
    const HandOverListener listener{place_};
    EXPECT_EQ(offer(listener, "/home/ann/alder basin\n2.mdb"), HandOver::Taken);
    EXPECT_THAT(taken_, ElementsAre("/home/ann/alder basin\n2.mdb"));
}

TEST_F(HandOverTest, ABusyProgramSaysSoAndGetsNothing) {
    const HandOverListener listener{place_};
    EXPECT_EQ(offer(listener, "/home/ann/alder.mdb", false), HandOver::Busy);
    EXPECT_THAT(taken_, IsEmpty());
}

TEST_F(HandOverTest, NobodyIsThereWithoutAListenerAndAfterItsEnd) {
    EXPECT_EQ(hand_over(place_, "/a.mdb", k_short), HandOver::NobodyThere);
    { const HandOverListener listener{place_}; }
    EXPECT_THAT(fs::is_empty(folder_ / "work"), true);
    EXPECT_EQ(hand_over(place_, "/a.mdb", k_short), HandOver::NobodyThere);
}

TEST_F(HandOverTest, AnOfferThatWasGivenUpIsNotTakenLater) {
    const HandOverListener listener{place_};
    EXPECT_EQ(hand_over(place_, "/a.mdb", k_short), HandOver::NoAnswer);
    EXPECT_THAT(listener.take(yes), IsEmpty());
}

TEST_F(HandOverTest, OfTwoOffersAtOnceTheFirstIsTaken) {
    const HandOverListener listener{place_};
    const std::string one{"nivora-open 1\n/one.mdb\0", 23};
    const std::string two{"nivora-open 1\n/two.mdb\0", 23};
    const int first = connect_and_send(one);
    const int second = connect_and_send(two);
    EXPECT_THAT(listener.take(yes), ElementsAre("/one.mdb"));
    char answer[16] = {};
    EXPECT_EQ(::recv(first, answer, sizeof(answer), 0), 6);
    EXPECT_EQ(std::string_view(answer, 6), "taken\n");
    EXPECT_EQ(::recv(second, answer, sizeof(answer), 0), 5);
    EXPECT_EQ(std::string_view(answer, 5), "busy\n");
    ::close(first);
    ::close(second);
}

TEST_F(HandOverTest, OffersInAnotherFormAreDropped) {
    const HandOverListener listener{place_};
    const std::string too_long = "nivora-open 1\n/" + std::string(9000, 'x');
    for (const std::string& bytes :
         {std::string{}, std::string{"\0", 1}, std::string{"nivora-open 2\n/a.mdb\0", 21},
          std::string{"nivora-open 1\nrelative.mdb\0", 27}, std::string{"nivora-open 1\n\0", 15},
          std::string{"nivora-open 1\n/without an end"}, too_long}) {
        const int socket = connect_and_send(bytes);
        EXPECT_THAT(listener.take(yes), IsEmpty()) << bytes.substr(0, 40);
        ::close(socket);
    }
    EXPECT_EQ(offer(listener, "/still.mdb"), HandOver::Taken);
}

TEST_F(HandOverTest, ASocketThatAKilledProgramLeftIsReplaced) {
    const pid_t child = ::fork();
    if (child == 0) {
        const HandOverListener listener{place_};
        ::_exit(listener.descriptor() >= 0 ? 0 : 1);  // without the end of the listener
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    ASSERT_TRUE(fs::is_socket(place_.folder / place_.name));
    EXPECT_EQ(hand_over(place_, "/a.mdb", k_short), HandOver::NobodyThere);
    const HandOverListener next{place_};
    EXPECT_EQ(offer(next, "/a.mdb"), HandOver::Taken);
}

TEST_F(HandOverTest, AFileOfThatNameStaysAndNobodyListens) {
    folder_.write("work/nivora.socket", "of the user");
    {
        const HandOverListener listener{place_};
        EXPECT_EQ(listener.descriptor(), -1);
    }
    EXPECT_TRUE(fs::is_regular_file(folder_ / "work/nivora.socket"));
}

TEST_F(HandOverTest, AProgramOfAnotherUserIsNeitherAskedNorAnswered) {
    if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can become another user";
    fs::permissions(folder_.path(), fs::perms::all);
    fs::permissions(folder_ / "work", fs::perms::all);
    const HandOverListener listener{place_};
    fs::permissions(place_.folder / place_.name, fs::perms::all);  // as if the folder let everybody in
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setresuid(4321, 4321, 4321) != 0) ::_exit(9);
        ::_exit(hand_over(place_, "/a.mdb", k_short) == HandOver::NobodyThere ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "the second program asked a listener of another user";
    EXPECT_THAT(listener.take(yes), IsEmpty());
    const pid_t other = ::fork();
    if (other == 0) {
        if (::setresuid(4321, 4321, 4321) != 0) ::_exit(9);
        const int socket = connect_and_send(std::string_view{"nivora-open 1\n/a.mdb\0", 21});
        std::this_thread::sleep_for(milliseconds{300});
        ::_exit(socket >= 0 ? 0 : 1);
    }
    std::this_thread::sleep_for(milliseconds{150});
    EXPECT_THAT(listener.take(yes), IsEmpty()) << "an offer of another user was taken";
    ASSERT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_EQ(status, 0);
}

TEST_F(HandOverTest, AWorkFolderWithALongPathCanBeListenedIn) {
    fs::path deep = folder_ / "work";
    for (int level = 0; level < 10; ++level) deep /= std::string(100, 'd');
    fs::create_directories(deep);
    place_ = meeting_place(deep, std::nullopt);
    const HandOverListener listener{place_};
    ASSERT_GE(listener.descriptor(), 0);
    EXPECT_EQ(offer(listener, "/a.mdb"), HandOver::Taken);
}

TEST_F(HandOverTest, TheSocketLiesInTheRuntimeFolderIfThatIsTheUsersAlone) {
    fs::create_directory(folder_ / "run");
    fs::permissions(folder_ / "run", fs::perms::owner_all);
    fs::create_directory_symlink(folder_ / "work", folder_ / "other name");
    fs::create_directory(folder_ / "work2");
    const MeetingPlace place = meeting_place(folder_ / "work", folder_ / "run");
    EXPECT_EQ(place.folder, folder_ / "run");
    EXPECT_EQ(meeting_place(folder_ / "other name", folder_ / "run").name, place.name);
    EXPECT_NE(meeting_place(folder_ / "work2", folder_ / "run").name, place.name);
    fs::permissions(folder_ / "run", fs::perms::all);
    EXPECT_EQ(meeting_place(folder_ / "work", folder_ / "run").folder, folder_ / "work");
    EXPECT_EQ(meeting_place(folder_ / "work", folder_ / "nowhere").folder, folder_ / "work");
    EXPECT_EQ(meeting_place(folder_ / "work", "relative").folder, folder_ / "work");
}

}  // namespace
}  // namespace nivora
