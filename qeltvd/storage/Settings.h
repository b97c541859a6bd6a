#pragma once

#include <cstdint>
#include <string>

#include "Store.h"

namespace qeltvd {

/** Small values of services that have no table of their own. */
class Settings {
  public:
    /** @throws StoreError */
    explicit Settings(Store& store) : mStore(store) {
        store.execute(
                "CREATE TABLE IF NOT EXISTS settings (name TEXT PRIMARY KEY, number INTEGER,"
                " bytes BLOB)");
    }

    /** @throws StoreError */
    int64_t number(const std::string& name, int64_t otherwise) const {
        Store::Statement row(mStore, "SELECT number FROM settings WHERE name = ?");
        return row.bind(name).step() ? row.integer(0) : otherwise;
    }

    /** @throws StoreError */
    Store::Blob bytes(const std::string& name) const {
        Store::Statement row(mStore, "SELECT bytes FROM settings WHERE name = ?");
        return row.bind(name).step() ? row.blob(0) : Store::Blob();
    }

    std::string text(const std::string& name) const {
        const Store::Blob value = bytes(name);
        return std::string(value.begin(), value.end());
    }

    /** @throws StoreError */
    void set(const std::string& name, int64_t number) {
        Store::Statement(mStore, "INSERT OR REPLACE INTO settings VALUES (?, ?, NULL)")
                .bind(name)
                .bind(number)
                .run();
    }

    /** @throws StoreError */
    void set(const std::string& name, const Store::Blob& bytes) {
        Store::Statement(mStore, "INSERT OR REPLACE INTO settings VALUES (?, NULL, ?)")
                .bind(name)
                .bind(bytes)
                .run();
    }

    void set(const std::string& name, const std::string& text) {
        set(name, Store::Blob(text.begin(), text.end()));
    }

    /** @throws StoreError */
    void remove(const std::string& name) {
        Store::Statement(mStore, "DELETE FROM settings WHERE name = ?").bind(name).run();
    }

  private:
    Store& mStore;
};

}  // namespace qeltvd
