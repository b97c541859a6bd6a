/* Prints changes of the picture's contrast as they happen: notifications [COUNT] */
#include <qeltvapi.h>
#include <semaphore.h>
#include <stdio.h>
#include <stdlib.h>

#define ITEM "picture.contrast"

static sem_t changes;

/* Runs on a thread of the HIDL runtime, and the television waits for it: be quick. */
static int on_setting(int32_t type, uintptr_t tag, uintptr_t arg1, const char* name,
                      uintptr_t value, uintptr_t arg3) {
    (void)type, (void)tag, (void)arg1, (void)arg3;
    /* The name is valid during this call only. */
    printf("%s is now %d\n", name, (int)value);
    fflush(stdout);
    sem_post(&changes);
    return 0;
}

int main(int argc, char** argv) {
    int left = argc > 1 ? atoi(argv[1]) : 1;
    sem_init(&changes, 0, 0);

    /* Fills the slot for changed settings. */
    a_qeltvapi_config_reg_callback(on_setting);
    /* That one asks for nothing. Among the functions that also have the library's callback object
       registered with the television, take one whose notifications this program does without. */
    a_qeltvapi_highlevel_register_callback(NULL);
    /* The television notifies changes of the items on its list. */
    const int code = a_qeltvapi_config_add_value_changed_callback(ITEM);
    if (code != 0) {
        fprintf(stderr, ITEM " cannot be watched: %d\n", code);
        return 1;
    }

    printf("watching " ITEM "\n");
    fflush(stdout);
    for (; left > 0; --left) {
        while (sem_wait(&changes) != 0) {
        }
    }
    return 0;
}
