/* The line that a television shows for a moment after each change of a setting. */
#ifndef BANNER_H
#define BANNER_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Writes "contrast 42", or "no television" or "contrast locked (-5)", into `text`. */
void banner_contrast(char* text, size_t size);

/** One step up, to at most 100; 0 if the television took it. */
int banner_contrast_up(void);

#ifdef __cplusplus
}
#endif

#endif /* BANNER_H */
