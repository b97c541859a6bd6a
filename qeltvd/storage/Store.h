#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "CodedError.h"

struct sqlite3;
struct sqlite3_stmt;

namespace qeltvd {

/** The store could not be read or written: disk full, no access, damaged. */
class StoreError : public CodedError {
  public:
    explicit StoreError(const std::string& what) : CodedError(kStorage, what) {}
};

/**
 * The television's database: one SQLite file, its own thread of control at a time. What a
 * statement has stored when it returns outlives a crash of the process and of the machine. A full
 * disk keeps nothing from being read. Nothing is stored any more once the file or its log has been
 * cut, replaced or removed by others.
 */
class Store {
  public:
    /**
     * Opens or makes the file, which is open to this user alone. One that is damaged is set aside
     * under another name and a fresh one begun. ":memory:" keeps nothing.
     *
     * @throws std::runtime_error if the file is another user's or cannot be used
     */
    explicit Store(const std::string& path);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    using Blob = std::vector<uint8_t>;

    /**
     * A statement; bind in order, step through the rows. The store keeps it prepared for the next
     * of the same text.
     */
    class Statement {
      public:
        Statement(Store& store, const char* sql);
        ~Statement();
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;

        Statement& bind(int64_t value);
        Statement& bind(const std::string& value);
        Statement& bind(const Blob& value);

        /** Whether there is a(nother) row. @throws StoreError */
        bool step();
        /** Ready to be bound and run again. */
        Statement& reset();
        /** Runs a statement without rows. */
        void run() { step(); }

        int64_t integer(int column) const;
        std::string text(int column) const;
        Blob blob(int column) const;

      private:
        Store& mStore;
        std::unique_lock<std::recursive_mutex> mLock;
        const std::string mText;
        sqlite3_stmt* mStatement = nullptr;
        int mNext = 1;
    };

    /** Checks that a change can be stored. @throws StoreError if it cannot */
    void probe();

    /** Runs statements without arguments. @throws StoreError */
    void execute(const char* sql);
    /** Rows that the last statement changed. */
    int changes() const;
    int64_t lastId() const;

    /** All or nothing of what happens in a scope: committed by commit(), else taken back. */
    class Transaction {
      public:
        explicit Transaction(Store& store);
        ~Transaction();
        void commit();

      private:
        Store& mStore;
        std::unique_lock<std::recursive_mutex> mLock;
        bool mDone = false;
    };

  private:
    /** A file as it was when the store last wrote. */
    struct Witness {
        std::string path;
        dev_t device = 0;
        ino_t node = 0;
        off_t size = 0;

        /** How the file differs; "" if it is the same and no shorter. */
        std::string change() const;
        void take();
    };

    bool isFile() const { return !mFile.path.empty(); }
    /** Makes the file belong to this user alone. */
    void claim() const;
    /** Opens the file. Returns the damage in it, "" for none. */
    std::string open();
    void close();
    void setAside(const std::string& damage) const;
    /** What others have done to the file or its log; "" for nothing. */
    std::string foreignChange() const;
    /** Before a change. @throws StoreError if it would be lost */
    void verify() const;
    /** After a change. */
    void witness();
    /** What the last call of the database has failed with. */
    StoreError error(const char* what) const;
    [[noreturn]] void fail(const char* what) const { throw error(what); }
    /**
     * Keeps a change that could not be synchronised from being found in the log at the next start:
     * overwrites it there.
     */
    void retract();
    /**
     * Takes back a transaction whose rollback has failed: it would take up what is stored next,
     * and lose it. @throws StoreError
     */
    void settle();

    const std::string mPath;
    Witness mFile, mLog;
    sqlite3* mDatabase = nullptr;
    std::recursive_mutex mLock;
    // Guarded by mLock.
    int mTransactions = 0;
    std::unordered_multimap<std::string, sqlite3_stmt*> mPrepared;  // none of them in use
};

}  // namespace qeltvd
