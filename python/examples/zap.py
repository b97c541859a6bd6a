#!/usr/bin/env python3
"""Zaps through all channels of a list and prints how long each takes to play: zap.py [LIST]"""

import sys
import time

import qeltvapi
from qeltvapi import constants, functions, records


def channels(number):
    """The channel records of a list, read in batches."""
    batch, first = 16, 0
    while True:
        read = functions.a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
            number, first, 0, 0, constants.CHANNEL_BROADCAST_ANY, 0, 0, batch, 0,
            svl=(records.channel_record_t, batch), tsl=(records.multiplex_record_t, batch))
        # Behind the last channel the records are zero.
        some = [one for one in read.svl if one.record_id]
        yield from some
        first += len(some)
        if len(some) < batch:
            return


def main(number):
    wanted = (constants.QELTV_BROADCAST_PLAYS, constants.QELTV_BROADCAST_FAILED)
    found = False
    with qeltvapi.listen("broadcast") as events:
        for channel in channels(number):
            found = True
            begun = time.monotonic()
            functions.a_qeltvapi_broadcast_select_channel(number, channel.channel_id, 0, 0)
            end = events.next(5, lambda event: event.number in wanted)
            took = (time.monotonic() - begun) * 1000
            result = "plays" if end.number == wanted[0] else "fails"
            print(f"{channel.number:5}  {channel.name:28}  {result}  {took:5.0f} ms", flush=True)
    if not found:
        sys.exit(f"list {number} has no channels, or no television is there")


if __name__ == "__main__":
    main(int(sys.argv[1]) if len(sys.argv) > 1 else constants.CHANNEL_LIST_AIR)
