/** The state directory and the store in it: whose they are, and what becomes of a damaged one. */
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "daemon.h"
#include "eventually.h"
#include "wire.h"

using namespace wire;
namespace fs = std::filesystem;

namespace {

constexpr char kTelevision[] = QELTV_HOST_BUILD_DIR "/qeltvd/qeltvd";
constexpr char kNumber[] = "picture.contrast";
constexpr uid_t kStranger = 12345;

/** A television that must not come up; one that does is ended. */
Ended startInVain(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"/usr/bin/timeout", "20"});
    return runProgram(arguments);
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void write(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

mode_t modeOf(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : ~mode_t{0};
}

class State : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return television.statePath() + "/" + name; }

    /** Leaves the directory as a television that has served once does. */
    void serveOnce() {
        television.start();
        ASSERT_EQ(0, qeltvctl({"config", "set", kNumber, "42"}).status);
        television.kill();
    }
    static std::string value() { return qeltvctl({"config", "get", kNumber}).out; }

    void sql(const std::string& statements) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(SQLITE_OK, sqlite3_open(path("television.db").c_str(), &database));
        char* error = nullptr;
        EXPECT_EQ(SQLITE_OK, sqlite3_exec(database, statements.c_str(), nullptr, nullptr, &error))
                << error;
        sqlite3_free(error);
        sqlite3_close(database);
    }
    void plantRecording(const std::string& file, int disk) const {
        sql("INSERT INTO recordings VALUES (NULL, '" + file + "', " + std::to_string(disk) +
            ", 0, 1, 0, 'Planted', '', 1, 0, 0, 0, 0, 0, 1048576)");
    }

    /** What the refusal says; it has to name the path. */
    std::string refusal(const std::string& named) const {
        const Ended ended = startInVain({kTelevision, "--state", television.statePath()});
        EXPECT_EQ(1, ended.status) << ended.err;
        EXPECT_EQ(0u, ended.err.find("qeltvd: " + named + ": ")) << ended.err;
        return ended.err;
    }

    Daemon television;
};

TEST_F(State, HasToBeNamedWhereThereIsNoHome) {
    const Ended ended =
            startInVain({"/usr/bin/env", "-u", "HOME", "-u", "XDG_STATE_HOME", kTelevision});
    EXPECT_EQ(2, ended.status);
    EXPECT_NE(std::string::npos, ended.err.find("name one with --state")) << ended.err;
}

TEST_F(State, IsOpenToItsOwnerAlone) {
    ASSERT_EQ(0, chmod(television.statePath().c_str(), 0755));
    serveOnce();
    // As an older television left it.
    for (const char* file : {"television.db", "television.db-wal"}) {
        ASSERT_EQ(0, chmod(path(file).c_str(), 0644)) << file;
    }
    ASSERT_EQ(0, chmod(path("recordings").c_str(), 0755));
    television.start();
    ASSERT_EQ(0, qeltvctl({"record", "start"}).status);
    ASSERT_TRUE(eventually([&] { return !fs::is_empty(path("recordings")); }));
    EXPECT_EQ(0700u, modeOf(television.statePath()));
    EXPECT_EQ(0700u, modeOf(path("recordings")));
    for (const auto& entry : fs::recursive_directory_iterator(television.statePath())) {
        if (entry.is_regular_file()) EXPECT_EQ(0600u, modeOf(entry.path())) << entry.path();
    }
}

TEST_F(State, ATextItemThatIsTooLongReadsAsItsDefault) {
    // As an older television stored it.
    serveOnce();
    sql("UPDATE config SET text = hex(zeroblob(40000)) WHERE name = 'network.name'");
    television.start();
    EXPECT_EQ("television\n", qeltvctl({"config", "get", "network.name"}).out);
    EXPECT_EQ(0, qeltvctl({"config", "list", "--all"}).status);
    EXPECT_EQ(0, qeltvctl({"config", "set", "network.name", "mine"}).status);
    EXPECT_EQ("mine\n", qeltvctl({"config", "get", "network.name"}).out);
    EXPECT_EQ(0, qeltvctl({"config", "reset"}).status);
    EXPECT_EQ("television\n", qeltvctl({"config", "get", "network.name"}).out);
}

TEST_F(State, OfAnotherOwnerIsRefused) {
    if (geteuid() != 0) {
        const Ended ended = startInVain({kTelevision, "--state", "/usr"});
        EXPECT_EQ(1, ended.status);
        EXPECT_NE(std::string::npos, ended.err.find("another user")) << ended.err;
        return;
    }
    serveOnce();
    for (const std::string& each : {television.statePath(), path("television.db"),
                                    path("television.db-wal"), path("recordings")}) {
        ASSERT_EQ(0, chown(each.c_str(), kStranger, kStranger));
        EXPECT_NE(std::string::npos, refusal(each).find("belongs to another user")) << each;
        ASSERT_EQ(0, chown(each.c_str(), 0, 0));
    }
}

TEST_F(State, WithLinksInPlaceOfItsFilesIsRefused) {
    serveOnce();
    const TemporaryDirectory elsewhere;
    for (const char* name : {"television.db", "television.db-wal", "recordings"}) {
        const std::string target = elsewhere.path() + "/" + name;
        ASSERT_EQ(0, rename(path(name).c_str(), target.c_str()));
        ASSERT_EQ(0, symlink(target.c_str(), path(name).c_str()));
        refusal(path(name));
        ASSERT_EQ(0, unlink(path(name).c_str()));
        if (fs::is_regular_file(target)) {
            ASSERT_EQ(0, link(target.c_str(), path(name).c_str()));
            refusal(path(name));
            ASSERT_EQ(0, unlink(path(name).c_str()));
        }
        ASSERT_EQ(0, rename(target.c_str(), path(name).c_str()));
    }
    television.start();
    EXPECT_EQ("42\n", value());
}

TEST_F(State, ThatCannotBeWrittenSaysSo) {
    serveOnce();
    const char* const directory = television.statePath().c_str();
    if (geteuid() != 0) {
        chmod(directory, 0500);
        EXPECT_NE(std::string::npos, refusal(directory).find("cannot be written: Permission"));
        chmod(directory, 0700);
        return;
    }
    if (mount(directory, directory, nullptr, MS_BIND, nullptr) != 0) GTEST_SKIP() << "no mounts";
    EXPECT_EQ(0, mount(nullptr, directory, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr));
    EXPECT_NE(std::string::npos, refusal(directory).find("cannot be written: Read-only"));
    umount2(directory, MNT_DETACH);
}

TEST_F(State, RecoveryTouchesNothingOutsideOfItsDisks) {
    serveOnce();
    const TemporaryDirectory elsewhere;
    const std::string content(1000, 'x');
    const std::vector<std::string> victims = {
            elsewhere.path() + "/cut", elsewhere.path() + "/short",
            elsewhere.path() + "/film.deleting", elsewhere.path() + "/.qeltv-deleting.film",
            elsewhere.path() + "/timeshift.buffer"};
    for (const auto& victim : victims) write(victim, content);
    write(victims[1], "y");
    if (geteuid() == 0) ASSERT_EQ(0, chown(victims[4].c_str(), kStranger, kStranger));
    // The place of a recording on a disk that no television has registered.
    sql("INSERT INTO recorder_disks VALUES (3, '" + elsewhere.path() + "', 0, 1048576)");
    plantRecording(victims[0], 3);
    plantRecording(victims[1], 0);
    // Out of the television's own disk: by dots, by a link, by a link to a directory.
    plantRecording(path("recordings/../../") +
                           fs::path(victims[0]).parent_path().filename().string() + "/cut",
                   0);
    ASSERT_EQ(0, symlink(victims[0].c_str(), path("recordings/link.ts").c_str()));
    plantRecording(path("recordings/link.ts"), 0);
    ASSERT_EQ(0, symlink(elsewhere.path().c_str(), path("recordings/sub").c_str()));
    plantRecording(path("recordings/sub/cut"), 0);
    sql("INSERT OR REPLACE INTO settings VALUES ('timeshift.path', NULL, CAST('" +
        elsewhere.path() + "' AS BLOB)), ('timeshift.size', 2097152, NULL)");
    television.start();
    EXPECT_EQ("42\n", value());
    for (size_t i = 0; i < victims.size(); ++i) {
        if (i == 4 && geteuid() != 0) continue;
        EXPECT_EQ(i == 1 ? "y" : content, contentOf(victims[i])) << victims[i];
    }
    // Neither does a deletion that a client wants.
    television.kill();
    sql("UPDATE recordings SET stop_reason = 1");
    television.start();
    while (qeltvctl({"record", "delete", "0"}).status == 0) {
    }
    EXPECT_EQ(content, contentOf(victims[0]));
    EXPECT_EQ("y", contentOf(victims[1]));
}

TEST_F(State, CanBeMovedWithItsRecordings) {
    serveOnce();
    write(path("recordings/film.ts"), "x");
    sql("UPDATE recorder_disks SET path = '/before/recordings' WHERE disk = 0");
    plantRecording("/before/recordings/film.ts", 0);
    sql("UPDATE recordings SET stop_reason = 1");
    television.start();
    const std::string listed = qeltvctl({"record", "list", "--json"}).out;
    EXPECT_NE(std::string::npos, listed.find(path("recordings/film.ts"))) << listed;
    EXPECT_EQ(0, qeltvctl({"record", "delete", "0"}).status);
    EXPECT_FALSE(fs::exists(path("recordings/film.ts")));
}

TEST_F(State, ChangesAreRefusedOnceItsFilesAreCutOrGone) {
    const struct {
        const char* file;
        bool gone;
    } kCases[] = {{"television.db", true},
                  {"television.db", false},
                  {"television.db-wal", true},
                  {"television.db-wal", false}};
    for (const auto& each : kCases) {
        Daemon cut;
        cut.start();
        ASSERT_EQ(0, qeltvctl({"config", "set", kNumber, "42"}).status);
        const std::string file = cut.statePath() + "/" + each.file;
        ASSERT_EQ(0, each.gone ? unlink(file.c_str()) : truncate(file.c_str(), 0));
        const Ended ended = qeltvctl({"config", "set", kNumber, "7"});
        EXPECT_EQ(1, ended.status) << each.file << each.gone;
        EXPECT_EQ(std::string("qeltvctl: ") + kNumber + ": the television cannot store it (-6)\n",
                  ended.err);
        EXPECT_EQ("42\n", value()) << "a refused change has not happened";
        cut.kill();
        cut.start();
        EXPECT_EQ(0, qeltvctl({"config", "set", kNumber, "8"}).status) << each.file << each.gone;
    }
}

TEST_F(State, ADamagedStoreIsSetAsideAndAFreshOneBegun) {
    const auto damage = [&](int kind) {
        const std::string file = path("television.db");
        if (kind == 0) {
            write(file, "this is no database, and much longer than the head of one would be");
            return;
        }
        const auto size = fs::file_size(file);
        if (kind == 1) {
            fs::resize_file(file, size / 2);
        } else {
            std::fstream middle(file, std::ios::in | std::ios::out | std::ios::binary);
            middle.seekp(4096);
            for (uintmax_t i = 4096; i < size; ++i) middle.put('?');
        }
    };
    television.start();
    const std::string factory = value();
    ASSERT_NE("42\n", factory);
    television.kill();
    for (int kind = 0; kind < 3; ++kind) {
        serveOnce();
        // The log is read back, so that the file has everything.
        sql("PRAGMA journal_mode=DELETE");
        damage(kind);
        const std::string before = contentOf(path("television.db"));
        television.start();
        EXPECT_EQ(factory, value()) << kind;
        EXPECT_EQ(0, qeltvctl({"config", "set", kNumber, "9"}).status);
        std::vector<std::string> copies;
        for (const auto& entry : fs::directory_iterator(television.statePath())) {
            const std::string name = entry.path().filename();
            if (name.find("television.db.damaged-") == 0) copies.push_back(entry.path());
        }
        ASSERT_EQ(1u, copies.size()) << kind;
        EXPECT_TRUE(before == contentOf(copies[0])) << kind;
        EXPECT_EQ(0600u, modeOf(copies[0]));
        television.kill();
        unlink(copies[0].c_str());
    }
}

TEST_F(State, AnOddRowIsNoReasonToStayDown) {
    serveOnce();
    sql("INSERT INTO channel_state (name, value) VALUES ('version.x', 1), ('version.', 1),"
        " ('version.99999999999999999999', 1)");
    television.start();
    EXPECT_EQ("42\n", value());
}

}  // namespace
