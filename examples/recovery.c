/* Lives through a death of the television: ends when it has been away and is back. */
#include <qeltvapi.h>
#include <stdbool.h>
#include <stdio.h>
#include <time.h>

#define ITEM "picture.contrast"

/* Runs on a thread of the HIDL runtime. */
static int on_setting(int32_t type, uintptr_t tag, uintptr_t arg1, const char* name,
                      uintptr_t value, uintptr_t arg3) {
    (void)type, (void)tag, (void)arg1, (void)arg3;
    printf("%s is %d\n", name, (int)value);
    fflush(stdout);
    return 0;
}

/* Has the library notice the next death, and the television that serves at this moment notify
   changes of the item. No notification announces a new television, so a program repeats both. */
static void watch(void) {
    /* Any call of the main interface links the death recipient. */
    a_qeltvapi_freeze_is_freeze("main");
    /* An item that is watched already stays watched once. */
    a_qeltvapi_config_add_value_changed_callback(ITEM);
}

static bool answers(void) {
    int32_t contrast;
    /* -1 both without a television and after a lost reply; a refusal has a code of its own. */
    return a_qeltvapi_config_get_value(0, ITEM, &contrast) != -1;
}

/* The library retries nothing: how often to call again is the program's choice. */
static void wait_until(bool wanted) {
    const struct timespec pause = {0, 50 * 1000 * 1000};
    while (answers() != wanted) {
        watch();
        nanosleep(&pause, NULL);
    }
    watch();
}

int main(void) {
    /* Registered functions stay registered: within ten seconds of the return of a television the
       library registers its callback object there by itself. */
    a_qeltvapi_config_reg_callback(on_setting);
    a_qeltvapi_highlevel_register_callback(NULL);

    wait_until(true);
    printf("the television answers\n");
    fflush(stdout);

    /* The calls fail at once, they do not wait for its return. */
    wait_until(false);
    printf("the television is gone\n");
    fflush(stdout);

    wait_until(true);
    printf("the television is back\n");
    return 0;
}
