/* Lives through a death of the television: ends when it has been away and is back. */
#include <qeltvapi.h>
#include <stdbool.h>
#include <stdio.h>
#include <time.h>

/* Any call of the main interface has the library watch the television that serves now. A program
   that only calls other interfaces never learns of a death, and keeps calling the dead one. */
static void watch(void) {
    a_qeltvapi_freeze_is_freeze("main");
}

static bool answers(void) {
    int32_t contrast;
    /* -1 both without a television and after a lost reply; a refusal has a code of its own. */
    return a_qeltvapi_config_get_value(0, "picture.contrast", &contrast) != -1;
}

/* Nothing is retried by the library: how often to ask again is the program's choice. */
static void wait_until(bool wanted) {
    const struct timespec pause = {0, 50 * 1000 * 1000};
    while (answers() != wanted) nanosleep(&pause, NULL);
}

int main(void) {
    wait_until(true);
    watch();
    printf("the television answers\n");
    fflush(stdout);

    /* The calls fail at once, they do not wait for it to return. */
    wait_until(false);
    printf("the television is gone\n");
    fflush(stdout);

    /* The library has dropped its proxies; the first call that finds the service takes a new one.
       Callbacks that were registered stay registered: the library sees to that by itself, within
       ten seconds of the return. What the television was asked to watch has to be asked again. */
    wait_until(true);
    watch();
    printf("the television is back\n");
    return 0;
}
