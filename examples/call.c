#include <qeltvapi.h>
#include <stdio.h>

int main(void) {
    int32_t contrast = 0;
    const int code = a_qeltvapi_config_get_value(0, "picture.contrast", &contrast);
    if (code == 0) {
        printf("picture.contrast is %d\n", contrast);
    } else {
        fprintf(stderr, "picture.contrast cannot be read: %d\n", code);
    }
    return code != 0;
}
