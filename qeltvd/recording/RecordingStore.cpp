#include "RecordingStore.h"

#include "Text.h"

namespace qeltvd {

namespace {

constexpr char kTables[] =
        "CREATE TABLE IF NOT EXISTS recordings (id INTEGER PRIMARY KEY AUTOINCREMENT,"
        " path TEXT NOT NULL UNIQUE, disk INTEGER NOT NULL, channel INTEGER NOT NULL,"
        " major INTEGER NOT NULL, minor INTEGER NOT NULL, channel_name TEXT NOT NULL,"
        " programme TEXT NOT NULL, start INTEGER NOT NULL, seconds INTEGER NOT NULL,"
        " stop_reason INTEGER NOT NULL, rating INTEGER NOT NULL, retention INTEGER NOT NULL,"
        " bytes INTEGER NOT NULL, rate INTEGER NOT NULL);"
        "CREATE TABLE IF NOT EXISTS bookings (id INTEGER PRIMARY KEY AUTOINCREMENT,"
        " channel INTEGER NOT NULL, start INTEGER NOT NULL, seconds INTEGER NOT NULL,"
        " repeat INTEGER NOT NULL, rate INTEGER NOT NULL, programme TEXT NOT NULL,"
        " state INTEGER NOT NULL, error INTEGER NOT NULL);"
        "CREATE TABLE IF NOT EXISTS recorder_disks (disk INTEGER PRIMARY KEY,"
        " path TEXT NOT NULL, bytes INTEGER NOT NULL, rate INTEGER NOT NULL)";

/** Recordings that have not ended have the stop reason 0. */
constexpr char kItems[] =
        "SELECT id, channel, major, minor, channel_name, programme, start, seconds, stop_reason,"
        " rating, retention, bytes, path FROM recordings WHERE stop_reason != 0 ";

RecordedItem itemIn(const Store::Statement& row) {
    const auto word = [&](int column) { return static_cast<uint32_t>(row.integer(column)); };
    return {row.integer(0), word(1),         word(2),     word(3), row.text(4),
            row.text(5),    row.integer(6),  word(7),     word(8), word(9),
            word(10),       row.integer(11), row.text(12)};
}

constexpr char kBookings[] =
        "SELECT id, channel, start, seconds, repeat, rate, programme, state, error FROM bookings ";

RecordingStore::Booking bookingIn(const Store::Statement& row) {
    const auto word = [&](int column) { return static_cast<uint32_t>(row.integer(column)); };
    RecordingStore::Booking record{};
    record.booking = word(0);
    record.channel = word(1);
    record.start = row.integer(2);
    record.seconds = word(3);
    record.repeat = word(4);
    record.rate = word(5);
    copyText(record.programme, row.text(6));
    record.state = word(7);
    record.error = word(8);
    return record;
}

}  // namespace

RecordingStore::RecordingStore(Store& store) : mStore(store) {
    mStore.execute(kTables);
}

void RecordingStore::moveDisk(const DiskPlace& disk) {
    Store::Transaction transaction(mStore);
    Store::Statement(
            mStore,
            "UPDATE recordings SET path = ?1 || substr(recordings.path, length(old.path) + 1)"
            " FROM (SELECT path FROM recorder_disks WHERE disk = ?2) AS old"
            " WHERE disk = ?2 AND old.path <> ?1"
            " AND substr(recordings.path, 1, length(old.path) + 1) = old.path || '/'")
            .bind(disk.path)
            .bind(int64_t{disk.number})
            .run();
    Store::Statement(mStore,
                     "INSERT INTO recorder_disks VALUES (?, ?, ?, ?)"
                     " ON CONFLICT (disk) DO UPDATE SET path = excluded.path"
                     " WHERE path <> excluded.path")
            .bind(int64_t{disk.number})
            .bind(disk.path)
            .bind(disk.limit)
            .bind(int64_t{disk.rate})
            .run();
    transaction.commit();
}

void RecordingStore::putDisk(const DiskPlace& disk) {
    Store::Statement(mStore, "INSERT OR REPLACE INTO recorder_disks VALUES (?, ?, ?, ?)")
            .bind(int64_t{disk.number})
            .bind(disk.path)
            .bind(disk.limit)
            .bind(int64_t{disk.rate})
            .run();
}

std::vector<RecordingStore::DiskPlace> RecordingStore::disks() const {
    Store::Statement rows(mStore, "SELECT disk, path, bytes, rate FROM recorder_disks");
    std::vector<DiskPlace> disks;
    while (rows.step()) {
        disks.push_back({static_cast<uint32_t>(rows.integer(0)), rows.text(1), rows.integer(2),
                         static_cast<uint32_t>(rows.integer(3))});
    }
    return disks;
}

int64_t RecordingStore::begin(const Beginning& recording) {
    Store::Transaction transaction(mStore);
    Store::Statement(mStore,
                     "INSERT INTO recordings (path, disk, channel, major, minor, channel_name,"
                     " programme, start, seconds, stop_reason, rating, retention, bytes, rate)"
                     " VALUES (?, ?, ?, ?, ?, ?, ?, ?, 0, 0, ?, ?, 0, ?)")
            .bind(recording.path)
            .bind(int64_t{recording.disk})
            .bind(int64_t{recording.channel.id})
            .bind(int64_t{recording.channel.major})
            .bind(int64_t{recording.channel.minor})
            .bind(recording.channel.name)
            .bind(recording.labels.programme)
            .bind(recording.start)
            .bind(int64_t{recording.labels.rating})
            .bind(int64_t{recording.labels.retention})
            .bind(int64_t{recording.rate})
            .run();
    const int64_t id = mStore.lastId();
    transaction.commit();
    return id;
}

void RecordingStore::label(int64_t id, const Labels& labels) {
    Store::Statement(mStore,
                     "UPDATE recordings SET programme = ?, rating = ?, retention = ? WHERE id = ?")
            .bind(labels.programme)
            .bind(int64_t{labels.rating})
            .bind(int64_t{labels.retention})
            .bind(id)
            .run();
}

void RecordingStore::end(int64_t id, const End& end) {
    Store::Statement(mStore,
                     "UPDATE recordings SET stop_reason = ?, bytes = ?, seconds = ? WHERE id = ?")
            .bind(int64_t{end.reason})
            .bind(end.bytes)
            .bind(end.seconds)
            .bind(id)
            .run();
}

void RecordingStore::remove(int64_t id) {
    Store::Statement(mStore, "DELETE FROM recordings WHERE id = ?").bind(id).run();
}

std::vector<RecordingStore::Unfinished> RecordingStore::unfinished() const {
    Store::Statement rows(mStore, "SELECT id, path, rate FROM recordings WHERE stop_reason = 0");
    std::vector<Unfinished> all;
    while (rows.step()) all.push_back({rows.integer(0), rows.text(1), rows.integer(2)});
    return all;
}

bool RecordingStore::has(const std::string& path) const {
    Store::Statement row(mStore, "SELECT id FROM recordings WHERE path = ?");
    return row.bind(path).step();
}

std::vector<RecordedItem> RecordingStore::items() const {
    Store::Statement rows(mStore, (std::string(kItems) + "ORDER BY start, id").c_str());
    std::vector<RecordedItem> items;
    while (rows.step()) items.push_back(itemIn(rows));
    return items;
}

size_t RecordingStore::itemCount() const {
    Store::Statement row(mStore, "SELECT COUNT(*) FROM recordings WHERE stop_reason != 0");
    row.step();
    return static_cast<size_t>(row.integer(0));
}

std::optional<RecordedItem> RecordingStore::itemAt(uint32_t index) const {
    Store::Statement row(mStore,
                         (std::string(kItems) + "ORDER BY start, id LIMIT 1 OFFSET ?").c_str());
    if (!row.bind(int64_t{index}).step()) return std::nullopt;
    return itemIn(row);
}

std::optional<RecordedItem> RecordingStore::itemOf(const std::string& path) const {
    Store::Statement row(mStore, (std::string(kItems) + "AND path = ?").c_str());
    if (!row.bind(path).step()) return std::nullopt;
    return itemIn(row);
}

std::vector<RecordingStore::Booking> RecordingStore::bookings() const {
    Store::Statement rows(mStore, kBookings);
    std::vector<Booking> bookings;
    while (rows.step()) bookings.push_back(bookingIn(rows));
    return bookings;
}

size_t RecordingStore::bookingCount() const {
    Store::Statement row(mStore, "SELECT COUNT(*) FROM bookings");
    row.step();
    return static_cast<size_t>(row.integer(0));
}

std::optional<RecordingStore::Booking> RecordingStore::bookingAt(uint32_t index) const {
    Store::Statement row(mStore,
                         (std::string(kBookings) + "ORDER BY start, id LIMIT 1 OFFSET ?").c_str());
    if (!row.bind(int64_t{index}).step()) return std::nullopt;
    return bookingIn(row);
}

std::optional<RecordingStore::Booking> RecordingStore::booking(uint32_t number) const {
    Store::Statement row(mStore, (std::string(kBookings) + "WHERE id = ?").c_str());
    if (!row.bind(int64_t{number}).step()) return std::nullopt;
    return bookingIn(row);
}

uint32_t RecordingStore::book(const Booking& booking) {
    Store::Transaction transaction(mStore);
    int64_t number = booking.booking;
    if (number == 0) {
        mStore.execute("INSERT INTO bookings VALUES (NULL, 0, 0, 0, 0, 0, '', 0, 0)");
        number = mStore.lastId();
    }
    Store::Statement(mStore,
                     "UPDATE bookings SET channel = ?, start = ?, seconds = ?, repeat = ?,"
                     " rate = ?, programme = ?, state = ?, error = 0 WHERE id = ?")
            .bind(int64_t{booking.channel})
            .bind(booking.start)
            .bind(int64_t{booking.seconds})
            .bind(int64_t{booking.repeat})
            .bind(int64_t{booking.rate})
            .bind(textOf(booking.programme))
            .bind(int64_t{QELTV_BOOKING_WAITS})
            .bind(number)
            .run();
    transaction.commit();
    return static_cast<uint32_t>(number);
}

void RecordingStore::update(const Booking& booking) {
    Store::Statement(mStore, "UPDATE bookings SET start = ?, state = ?, error = ? WHERE id = ?")
            .bind(booking.start)
            .bind(int64_t{booking.state})
            .bind(int64_t{booking.error})
            .bind(int64_t{booking.booking})
            .run();
}

void RecordingStore::removeBooking(uint32_t number) {
    Store::Statement(mStore, "DELETE FROM bookings WHERE id = ?").bind(int64_t{number}).run();
}

void RecordingStore::stopBookings() {
    Store::Statement(mStore, "UPDATE bookings SET state = ? WHERE state = ?")
            .bind(int64_t{QELTV_BOOKING_WAITS})
            .bind(int64_t{QELTV_BOOKING_RUNS})
            .run();
}

}  // namespace qeltvd
