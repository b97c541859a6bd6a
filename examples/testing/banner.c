#include "banner.h"

#include <qeltvapi.h>
#include <stdio.h>

void banner_contrast(char* text, size_t size) {
    int32_t contrast = 0;
    const int code = a_qeltvapi_config_get_value(0, "picture.contrast", &contrast);
    if (code == 0) {
        snprintf(text, size, "contrast %d", contrast);
    } else if (code == -1) {
        snprintf(text, size, "no television");
    } else {
        snprintf(text, size, "contrast locked (%d)", code);
    }
}

int banner_contrast_up(void) {
    int32_t contrast = 0;
    const int code = a_qeltvapi_config_get_value(0, "picture.contrast", &contrast);
    if (code != 0 || contrast >= 100) return code;
    return a_qeltvapi_config_set_value(0, "picture.contrast", contrast + 1, 0);
}
