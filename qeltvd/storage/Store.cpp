#define LOG_TAG "qeltvd"

#include "Store.h"

#include <errno.h>
#include <fcntl.h>
#include <log/log.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Files.h"

namespace qeltvd {

namespace {

constexpr char kMemory[] = ":memory:";
constexpr char kLog[] = "-wal";
/** What SQLite has beside the file; of the log's index nothing is on the disk. */
constexpr const char* kCompanions[] = {kLog, "-journal", "-shm"};

/** Marks the file as a television's. Always written, the same number too. */
constexpr char kWriteSomething[] = "PRAGMA application_id=1902933110";

off_t sizeOf(const std::string& path) {
    return std::max<off_t>(0, sizeOfFile(AT_FDCWD, path));
}

std::string stamp() {
    const time_t now = time(nullptr);
    tm utc{};
    gmtime_r(&now, &utc);
    char text[32];
    strftime(text, sizeof(text), "%Y%m%dT%H%M%SZ", &utc);
    return text;
}

}  // namespace

Store::Store(const std::string& path) : mPath(path) {
    if (path != kMemory) {
        mFile.path = path;
        mLog.path = path + kLog;
        claim();
    }
    // SQLite drops the log of a file that is empty.
    std::string damage = isFile() && sizeOf(path) == 0 && sizeOf(mLog.path) > 0
                                 ? "it is empty and its log is not"
                                 : open();
    if (!damage.empty()) {
        close();
        setAside(damage);
        claim();
        damage = open();
    }
    if (!damage.empty()) {
        close();
        throw StoreError(path + ": " + damage);
    }
    witness();
}

Store::~Store() {
    close();
}

void Store::close() {
    for (const auto& prepared : mPrepared) sqlite3_finalize(prepared.second);
    mPrepared.clear();
    sqlite3_close(mDatabase);
    mDatabase = nullptr;
}

void Store::claim() const {
    claimFile(mPath);
    for (const char* companion : kCompanions) claimFile(mPath + companion);
    if (!makeFile(AT_FDCWD, mPath)) {
        throw StoreError(mPath + ": cannot be made: " + strerror(errno));
    }
}

std::string Store::open() {
    mFile.node = mLog.node = 0;
    if (sqlite3_open_v2(mPath.c_str(), &mDatabase,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK) {
        const std::string why = mDatabase != nullptr ? sqlite3_errmsg(mDatabase) : "no memory";
        close();
        throw StoreError(mPath + ": " + why);
    }
    sqlite3_busy_timeout(mDatabase, 2000);
    // A damaged file stays as it is found, its log included.
    const auto leaveAlone = [this](int leave) {
        sqlite3_db_config(mDatabase, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, leave, nullptr);
    };
    leaveAlone(1);
    try {
        // Alone with the file, SQLite needs no index of the log on the disk: a store can be opened
        // and read when the disk is full.
        execute("PRAGMA locking_mode=EXCLUSIVE");
        {
            Statement check(*this, "PRAGMA quick_check(1)");
            const std::string found = check.step() ? check.text(0) : "";
            // The first line is a heading.
            if (found != "ok") return found.substr(found.find('\n') + 1);
        }
        execute("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=ON;");
        leaveAlone(0);
        return "";
    } catch (const StoreError&) {
        const int code = sqlite3_errcode(mDatabase);
        if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB) return sqlite3_errmsg(mDatabase);
        close();
        throw;
    }
}

void Store::setAside(const std::string& damage) const {
    const std::string copy = mPath + ".damaged-" + stamp();
    if (rename(mPath.c_str(), copy.c_str()) != 0) {
        throw StoreError(mPath + ": is damaged (" + damage +
                         ") and cannot be renamed: " + strerror(errno) + "; move it away");
    }
    for (const char* companion : kCompanions) {
        if (rename((mPath + companion).c_str(), (copy + companion).c_str()) != 0 &&
            errno != ENOENT) {
            throw StoreError(mPath + companion + ": cannot be renamed: " + strerror(errno) +
                             "; move it away");
        }
    }
    ALOGE("%s is damaged (%s): it is kept as %s, and the television begins with factory settings",
          mPath.c_str(), damage.c_str(), copy.c_str());
}

std::string Store::Witness::change() const {
    if (node == 0) return "";
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0) {
        return errno == ENOENT ? "was removed"
                               : std::string("cannot be examined (") + strerror(errno) + ")";
    }
    if (info.st_dev != device || info.st_ino != node) return "was replaced";
    return info.st_size < size ? "was cut" : "";
}

void Store::Witness::take() {
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0) return;
    device = info.st_dev;
    node = info.st_ino;
    size = info.st_size;
}

std::string Store::foreignChange() const {
    if (!isFile()) return "";
    for (const Witness* each : {&mFile, &mLog}) {
        const std::string change = each->change();
        if (!change.empty()) return each->path + ": " + change;
    }
    return "";
}

void Store::verify() const {
    const std::string change = foreignChange();
    if (change.empty()) return;
    throw StoreError(change +
                     " while the television runs; changes are refused until it starts again");
}

void Store::witness() {
    if (!isFile()) return;
    // A file that others have changed meanwhile is left for the next change to notice.
    for (Witness* each : {&mFile, &mLog}) {
        if (each->change().empty()) each->take();
    }
}

StoreError Store::error(const char* what) const {
    std::string text = mPath + ": " + what + ": " + sqlite3_errmsg(mDatabase);
    const int error = sqlite3_system_errno(mDatabase);
    if (sqlite3_errcode(mDatabase) == SQLITE_IOERR && error != 0) {
        text += std::string(" (") + strerror(error) + ")";
    }
    return StoreError(text);
}

void Store::probe() {
    execute(kWriteSomething);
}

void Store::retract() {
    // Each frame of the log is valid only after the one before it, so one new frame is enough, and
    // it may itself fail to be synchronised.
    if (!foreignChange().empty()) return;
    sqlite3_exec(mDatabase, kWriteSomething, nullptr, nullptr, nullptr);
}

void Store::execute(const char* sql) {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    verify();
    settle();
    if (sqlite3_exec(mDatabase, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail("store");
    witness();
}

void Store::settle() {
    if (mTransactions != 0 || sqlite3_get_autocommit(mDatabase) != 0) return;
    if (sqlite3_exec(mDatabase, "ROLLBACK", nullptr, nullptr, nullptr) != SQLITE_OK) fail("store");
}

int Store::changes() const {
    return sqlite3_changes(mDatabase);
}

int64_t Store::lastId() const {
    return sqlite3_last_insert_rowid(mDatabase);
}

Store::Statement::Statement(Store& store, const char* sql)
        : mStore(store), mLock(store.mLock), mText(sql) {
    store.settle();
    const auto prepared = store.mPrepared.find(mText);
    if (prepared != store.mPrepared.end()) {
        mStatement = prepared->second;
        store.mPrepared.erase(prepared);
    } else if (sqlite3_prepare_v2(store.mDatabase, sql, -1, &mStatement, nullptr) != SQLITE_OK) {
        store.fail(sql);
    }
}

Store::Statement::~Statement() {
    sqlite3_reset(mStatement);
    sqlite3_clear_bindings(mStatement);
    mStore.mPrepared.emplace(mText, mStatement);
}

Store::Statement& Store::Statement::bind(int64_t value) {
    sqlite3_bind_int64(mStatement, mNext++, value);
    return *this;
}

Store::Statement& Store::Statement::bind(const std::string& value) {
    sqlite3_bind_text(mStatement, mNext++, value.data(), static_cast<int>(value.size()),
                      SQLITE_TRANSIENT);
    return *this;
}

Store::Statement& Store::Statement::bind(const Blob& value) {
    sqlite3_bind_blob(mStatement, mNext++, value.data(), static_cast<int>(value.size()),
                      SQLITE_TRANSIENT);
    return *this;
}

bool Store::Statement::step() {
    // Within a transaction its end counts.
    const bool changes =
            sqlite3_stmt_readonly(mStatement) == 0 && sqlite3_get_autocommit(mStore.mDatabase) != 0;
    if (changes) mStore.verify();
    switch (sqlite3_step(mStatement)) {
        case SQLITE_ROW:
            return true;
        case SQLITE_DONE:
            if (changes) mStore.witness();
            return false;
        default: {
            const StoreError failure = mStore.error("store");
            if (changes) mStore.retract();
            throw failure;
        }
    }
}

Store::Statement& Store::Statement::reset() {
    sqlite3_reset(mStatement);
    mNext = 1;
    return *this;
}

int64_t Store::Statement::integer(int column) const {
    return sqlite3_column_int64(mStatement, column);
}

std::string Store::Statement::text(int column) const {
    const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(mStatement, column));
    return std::string(data != nullptr ? data : "",
                       static_cast<size_t>(sqlite3_column_bytes(mStatement, column)));
}

Store::Blob Store::Statement::blob(int column) const {
    const auto* data = static_cast<const uint8_t*>(sqlite3_column_blob(mStatement, column));
    return Blob(data, data + sqlite3_column_bytes(mStatement, column));
}

Store::Transaction::Transaction(Store& store) : mStore(store), mLock(store.mLock) {
    store.execute("BEGIN IMMEDIATE");
    ++mStore.mTransactions;
}

Store::Transaction::~Transaction() {
    --mStore.mTransactions;
    if (!mDone) sqlite3_exec(mStore.mDatabase, "ROLLBACK", nullptr, nullptr, nullptr);
}

void Store::Transaction::commit() {
    try {
        mStore.execute("COMMIT");
    } catch (const StoreError&) {
        sqlite3_exec(mStore.mDatabase, "ROLLBACK", nullptr, nullptr, nullptr);
        mStore.retract();
        throw;
    }
    mDone = true;
}

}  // namespace qeltvd
