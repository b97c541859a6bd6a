#include "Store.h"

#include <sqlite3.h>

#include <cstring>

namespace qeltvd {

Store::Store(const std::string& path) : mPath(path) {
    if (sqlite3_open_v2(path.c_str(), &mDatabase,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK) {
        const std::string why = mDatabase != nullptr ? sqlite3_errmsg(mDatabase) : "no memory";
        sqlite3_close(mDatabase);
        throw StoreError(path + ": " + why);
    }
    sqlite3_busy_timeout(mDatabase, 2000);
    try {
        // Alone with the file, SQLite needs no index of the log on the disk: a store can be opened
        // and read when the disk is full.
        execute("PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
                "PRAGMA foreign_keys=ON;");
    } catch (const StoreError&) {
        sqlite3_close(mDatabase);
        throw;
    }
}

Store::~Store() {
    for (const auto& prepared : mPrepared) sqlite3_finalize(prepared.second);
    sqlite3_close(mDatabase);
}

void Store::fail(const char* what) const {
    std::string text = mPath + ": " + what + ": " + sqlite3_errmsg(mDatabase);
    const int error = sqlite3_system_errno(mDatabase);
    if (sqlite3_errcode(mDatabase) == SQLITE_IOERR && error != 0) {
        text += std::string(" (") + strerror(error) + ")";
    }
    throw StoreError(text);
}

void Store::probe() {
    // Always written, the same number too.
    execute("PRAGMA user_version=1");
}

void Store::execute(const char* sql) {
    std::lock_guard<std::recursive_mutex> guard(mLock);
    if (sqlite3_exec(mDatabase, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail("store");
}

int Store::changes() const {
    return sqlite3_changes(mDatabase);
}

int64_t Store::lastId() const {
    return sqlite3_last_insert_rowid(mDatabase);
}

Store::Statement::Statement(Store& store, const char* sql)
        : mStore(store), mLock(store.mLock), mText(sql) {
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
    switch (sqlite3_step(mStatement)) {
        case SQLITE_ROW:
            return true;
        case SQLITE_DONE:
            return false;
        default:
            mStore.fail("store");
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
}

Store::Transaction::~Transaction() {
    if (!mDone) sqlite3_exec(mStore.mDatabase, "ROLLBACK", nullptr, nullptr, nullptr);
}

void Store::Transaction::commit() {
    mStore.execute("COMMIT");
    mDone = true;
}

}  // namespace qeltvd
