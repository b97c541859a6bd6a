/** Limits of the named configuration items of the reference television. */
#ifndef QELTV_LAYOUTS_CONFIG_H
#define QELTV_LAYOUTS_CONFIG_H

/**
 * Bytes of a text item at most; a longer one is refused with QELTV_BAD_VALUE. A buffer of zeros
 * that is larger by one byte takes every text item with its terminator.
 */
#define QELTV_CONFIG_TEXT_MAXIMUM 4095

#endif /* QELTV_LAYOUTS_CONFIG_H */
