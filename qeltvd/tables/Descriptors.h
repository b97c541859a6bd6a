#pragma once

#include <bitstream/mpeg/psi.h>

#include "Bytes.h"
#include "Tables.h"

namespace qeltvd::stream {

/** One descriptor of a list. The bytes are those of the section. */
class Descriptor {
  public:
    explicit Descriptor(const uint8_t* at) : mAt(at) {}

    uint8_t tag() const { return mAt[0]; }
    Bytes body() const { return {mAt + DESC_HEADER_SIZE, mAt[1]}; }
    /** As the functions of biTStream take it; most of its getters lack a const. */
    uint8_t* raw() const { return const_cast<uint8_t*>(mAt); }

  private:
    const uint8_t* mAt;
};

/**
 * The descriptors of a list, in order; one that reaches beyond the end is left out. By pointer,
 * because biTStream finds the n-th one from the start each time and counts its table entries with
 * 8 bits.
 */
class Descriptors {
  public:
    explicit Descriptors(Bytes list) : mList(list) {}
    /** A list behind its length of 12 bits, as tables have it. */
    static Descriptors of(const uint8_t* descs) {
        return Descriptors({descs + DESCS_HEADER_SIZE, descs_get_length(descs)});
    }

    class Iterator {
      public:
        Iterator(const uint8_t* at, const uint8_t* end) : mAt(at), mEnd(end) { check(); }
        Descriptor operator*() const { return Descriptor(mAt); }
        Iterator& operator++() {
            mAt += DESC_HEADER_SIZE + mAt[1];
            check();
            return *this;
        }
        bool operator!=(const Iterator& other) const { return mAt != other.mAt; }

      private:
        void check() {
            if (mEnd - mAt < DESC_HEADER_SIZE || mEnd - mAt < DESC_HEADER_SIZE + mAt[1]) mAt = mEnd;
        }
        const uint8_t* mAt;
        const uint8_t* mEnd;
    };
    Iterator begin() const { return {mList.data, mList.data + mList.size}; }
    Iterator end() const { return {mList.data + mList.size, mList.data + mList.size}; }

  private:
    Bytes mList;
};

/** The whole section as biTStream takes it, and its end before the checksum. */
inline uint8_t* rawSection(Bytes section) {
    return const_cast<uint8_t*>(section.data);
}
inline const uint8_t* endOfBody(Bytes section) {
    return section.data + section.size - PSI_CRC_SIZE;
}

/** Copies the common header of a section that is whole. */
template <class Table>
void readHeader(Bytes section, Table* table) {
    table->tableId = psi_get_tableid(section.data);
    table->extension = psi_get_tableidext(section.data);
    table->version = psi_get_version(section.data);
    table->current = psi_get_current(section.data);
    table->section = psi_get_section(section.data);
    table->lastSection = psi_get_lastsection(section.data);
}

/** Whether a section is whole, of the long form and at least as long as a table's fixed part. */
inline bool isLongSection(Bytes section, size_t fixed) {
    return isWhole(section) && psi_get_syntax(section.data) && section.size >= fixed + PSI_CRC_SIZE;
}

}  // namespace qeltvd::stream
