#!/usr/bin/env python3
"""Sets the sleep timer and waits for its reminder, then switches it off: reminder.py [SECONDS]"""

import asyncio
import sys

import qeltvapi
from qeltvapi import constants, functions


async def main(seconds):
    async with qeltvapi.listen("sleep_timer") as events:
        functions.a_qeltvapi_time_set_sleep_timer(seconds)
        async for event in events:
            print(event, flush=True)
            if event.number == constants.QELTV_SLEEP_WARNING:
                functions.a_qeltvapi_time_set_sleep_timer(0)
            elif event.number == constants.QELTV_SLEEP_CANCELLED:
                return


if __name__ == "__main__":
    asyncio.run(main(int(sys.argv[1]) if len(sys.argv) > 1
                     else constants.QELTV_SLEEP_WARNING_TIME + 5))
