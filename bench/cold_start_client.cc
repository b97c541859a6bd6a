// The process that cold_start_bench measures: cold_start_client START, in microseconds of the
// monotonic clock.

#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include "hw_qeltvapi_config.h"

static double now() {
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

int main(int argc, char** argv) {
    const double begin = now();
    if (argc != 2) return 2;
    int32_t value = 0;
    const int code = a_qeltvapi_config_get_value(0, "picture.contrast", &value);
    const double first = now();
    a_qeltvapi_config_get_value(0, "picture.contrast", &value);
    const double second = now();
    const double times[] = {begin - atof(argv[1]), first - begin, second - first};
    const bool written = write(STDOUT_FILENO, times, sizeof(times)) == sizeof(times);
    return code == 0 && written ? 0 : 1;
}
