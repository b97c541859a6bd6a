/* Prints a list of channels, read in batches through shared memory: channel_list [LIST] */
#include <qeltvapi.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

/* The records are opaque to the library: this is how the reference television lays them out. */
#include "layouts/channel_records.h"

#define BATCH 16

static const char* kind(const channel_record_t* channel) {
    switch (channel->service_type) {
        case CHANNEL_SERVICE_TELEVISION:
            return "television";
        case CHANNEL_SERVICE_RADIO:
            return "radio";
        default:
            return "data";
    }
}

static void print(const channel_record_t* channel, const multiplex_record_t* multiplex) {
    const uint64_t hz = (uint64_t)multiplex->frequency_high << 32 | multiplex->frequency_low;
    printf("%5u  %-28s  %-10s  %8.3f MHz\n", channel->number, channel->name, kind(channel),
           (double)hz / 1e6);
}

int main(int argc, char** argv) {
    const uint32_t list = argc > 1 ? (uint32_t)atoi(argv[1]) : CHANNEL_LIST_AIR;
    /* Room for the whole batch: the library copies it out of the shared memory in any case. */
    static channel_record_t channels[BATCH];
    static multiplex_record_t multiplexes[BATCH];

    uint32_t count = 0;
    for (bool more = true; more;) {
        const int code = a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
                list, count, 0, 0, 0, CHANNEL_BROADCAST_ANY, 0, BATCH, 0, channels, multiplexes);
        if (code != 0) {
            fprintf(stderr, "list %u cannot be read: %d\n", list, code);
            return 1;
        }
        /* Behind the last channel the records are zero. They are all zero without a television,
           too: in this family 0 means both "done" and "not reachable". */
        uint32_t i = 0;
        while (i < BATCH && channels[i].record_id != 0) {
            print(&channels[i], &multiplexes[i]);
            ++i;
        }
        count += i;
        more = i == BATCH;
    }
    printf("%u channels\n", count);
    return 0;
}
